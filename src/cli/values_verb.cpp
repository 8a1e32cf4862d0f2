// tweenc values: what every element looks like at given times.

#include "cli/support/animation_choice.h"
#include "cli/support/json_writer.h"
#include "cli/support/packages.h"
#include "cli/verbs.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kAtOption{"at", "MS[,MS...]", "times in whole milliseconds, 0 or later", true};

using Times = std::vector<int32_t>;

ElementValues setupValues(const PCElement& element, const QStringList& children) {
    return {.opacity = static_cast<float>(element.opacity()),
            .rotation = static_cast<float>(element.zRotation()),
            .scale = element.scale(),
            .translation = element.translationXY(),
            .image = &element.imageName(),
            .children = &children};
}

void writeElement(const PCElement& element, const ElementValues& values, JsonWriter& json) {
    const auto single = [&json](const char* key, double value) {
        json.key(key).single(static_cast<float>(value));
    };
    json.beginObject(JsonWriter::Layout::OneLine);
    json.key("identifier").string(element.identifier().toString());
    json.key("name").string(element.name());
    json.key("opacity").single(values.opacity);
    json.key("rotation").single(values.rotation);
    single("scaleX", values.scale.x());
    single("scaleY", values.scale.y());
    single("translationX", values.translation.x());
    single("translationY", values.translation.y());
    json.key("image").string(values.image->isEmpty() ? QString() : *values.image);
    json.key("children").beginArray();
    for (const QString& child : *values.children) {
        json.string(child);
    }
    json.endArray().endObject();
}

std::string valuesJson(const PCProject::Ptr& project, const Times& times) {
    const PCElement::Elements elements = project->canvas()->elementAndAllDescendants();
    JsonWriter json;
    json.beginArray();
    for (const int32_t time : times) {
        json.beginObject().key("time").integer(time).key("elements").beginArray();
        for (const PCElement::Ptr& element : elements) {
            const QStringList children = PCProject::sortedSubelementIdentifiers(*element);
            writeElement(*element,
                         project->isSetupMode() ? setupValues(*element, children)
                                                : element->valuesAtTimeInMS(time),
                         json);
        }
        json.endArray().endObject();
    }
    return json.endArray().take();
}

ExitCode run(const Invocation& invocation, Console& console) {
    const Times times = timesFrom(invocation.value(kAtOption.name));
    const bool animates = invocation.has(kAnimationOption.name);
    const QString name = invocation.value(kAnimationOption.name);
    return runOnPackage(invocation.operands().first(), console, [&](Report& report) {
        const PCProject::Ptr project = openForReading(report);
        if (animates) {
            project->animationsManager().setSelectedAnimation(animationNamed(name, project));
        }
        report.print(valuesJson(project, times));
    });
}

}  // namespace

const Verb& valuesVerb() {
    static const Verb verb{
        "values",
        "PKG",
        1,
        1,
        "Prints the properties of all elements at given times as JSON.",
        {kAnimationOption, kAtOption, {"json", nullptr, "print JSON, the only form", true}},
        run};
    return verb;
}

}  // namespace tweenery

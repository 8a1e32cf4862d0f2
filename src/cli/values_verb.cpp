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
    json.key("children").beginArray();
    for (const QString& child : *values.children) {
        json.string(child);
    }
    json.endArray();
    json.key("identifier").string(element.identifier().toString());
    json.key("image").string(values.image->isEmpty() ? QString() : *values.image);
    json.key("name").string(element.name());
    json.key("opacity").single(values.opacity);
    json.key("rotation").single(values.rotation);
    single("scaleX", values.scale.x());
    single("scaleY", values.scale.y());
    single("translationX", values.translation.x());
    single("translationY", values.translation.y());
    json.endObject();
}

// Calls `visit` with each element and its values at the time.
template <typename Visit>
void forEachElement(const PCProject& project, int32_t time, const Visit& visit) {
    for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
        const QStringList children = PCProject::sortedSubelementIdentifiers(*element);
        visit(*element, project.isSetupMode() ? setupValues(*element, children)
                                              : element->valuesAtTimeInMS(time));
    }
}

void writeJson(const PCProject& project, const Times& times, JsonWriter& json) {
    json.beginArray();
    for (const int32_t time : times) {
        json.beginObject().key("elements").beginArray();
        forEachElement(project, time, [&](const PCElement& element, const ElementValues& values) {
            writeElement(element, values, json);
        });
        json.endArray().key("time").integer(time).endObject();
    }
    json.endArray();
}

QStringList rowOf(const PCElement& element, const ElementValues& values) {
    const auto number = [](double value) { return QString::number(value, 'g', 6); };
    return {element.name(),
            number(values.opacity),
            number(values.rotation),
            number(values.scale.x()),
            number(values.scale.y()),
            number(values.translation.x()),
            number(values.translation.y()),
            values.image->isEmpty() ? u"-"_s : *values.image};
}

// Columns as wide as their widest cell; texts to the left, numbers to the right.
void printTable(const std::vector<QStringList>& rows, Report& report) {
    QList<qsizetype> widths(rows.front().size());
    for (const QStringList& row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    for (const QStringList& row : rows) {
        QStringList cells;
        for (qsizetype i = 0; i < row.size(); ++i) {
            const bool isText = i == 0 || i == row.size() - 1;
            cells << (isText ? row[i].leftJustified(widths[i]) : row[i].rightJustified(widths[i]));
        }
        report.printLine((u"  "_s + cells.join(u"  "_s)).trimmed().prepend(u"  "_s));
    }
}

void printText(const PCProject& project, const Times& times, Report& report) {
    const QStringList head{u"element"_s, u"opacity"_s, u"rotation"_s, u"scale x"_s,
                           u"scale y"_s, u"x"_s,       u"y"_s,        u"image"_s};
    for (const int32_t time : times) {
        report.printLine(u"at %1 ms"_s.arg(time));
        std::vector<QStringList> rows{head};
        forEachElement(project, time, [&](const PCElement& element, const ElementValues& values) {
            rows.push_back(rowOf(element, values));
        });
        printTable(rows, report);
    }
}

ExitCode run(const Invocation& invocation, Console& console) {
    const Times times = timesFrom(invocation.value(kAtOption.name));
    const bool animates = invocation.has(kAnimationOption.name);
    const QString name = invocation.value(kAnimationOption.name);
    return runOnPackage(invocation, console, [&](Report& report) {
        const PCProject::Ptr project = openForReading(report);
        if (animates) {
            project->animationsManager().setSelectedAnimation(animationNamed(name, project));
        }
        if (report.isJson()) {
            report.setResult([&](JsonWriter& json) { writeJson(*project, times, json); });
        } else {
            printText(*project, times, report);
        }
    });
}

}  // namespace

const Verb& valuesVerb() {
    static const Verb verb{"values",
                           "PKG",
                           1,
                           1,
                           "Prints the properties of all elements at given times.",
                           {kAnimationOption, kAtOption, kJsonOption},
                           run};
    return verb;
}

}  // namespace tweenery

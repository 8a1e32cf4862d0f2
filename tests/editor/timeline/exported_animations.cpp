#include "editor/timeline/exported_animations.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <algorithm>
#include <limits>
#include <numeric>

#include "codegen/export_plan.h"
#include "codegen/language/objc_code_provider.h"
#include "codegen/project_code_generator.h"
#include "codegen/standard_animation_code.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

/// The text between `before` and `after` on a line; null when the line has no such form.
QString between(const QString& line, const QString& before, const QString& after) {
    const qsizetype from = line.indexOf(before);
    if (from < 0) { return {}; }
    const qsizetype begin = from + before.size();
    const qsizetype end = line.indexOf(after, begin);
    return end < 0 ? QString() : line.mid(begin, end - begin);
}

std::vector<double> numbers(const QString& list) {
    static const QRegularExpression pattern(u"@\\(([-.\\d]+)\\)"_s);
    std::vector<double> found;
    for (const auto& match : pattern.globalMatch(list)) {
        found.push_back(match.captured(1).toDouble());
    }
    return found;
}

/// "functionWithName:kCA…EaseIn" or "functionWithControlPoints:0.42 :0.00 :1.00 :1.00".
TimingFunction timingFunction(const QString& call) {
    static const QHash<QString, TimingFunction> named = {
        {u"kCAMediaTimingFunctionLinear"_s, {}},
        {u"kCAMediaTimingFunctionEaseIn"_s, {0.42, 0, 1, 1}},
        {u"kCAMediaTimingFunctionEaseOut"_s, {0, 0, 0.58, 1}},
        {u"kCAMediaTimingFunctionEaseInEaseOut"_s, {0.42, 0, 0.58, 1}},
    };
    const QString name = call.section(u':', 1, 1);
    if (call.startsWith(u"functionWithName")) {
        EXPECT_TRUE(named.contains(name)) << qPrintable(call);
        return named.value(name);
    }
    const QStringList points = call.section(u':', 1).split(u':');
    EXPECT_EQ(points.size(), 4) << qPrintable(call);
    return {points.value(0).toDouble(), points.value(1).toDouble(), points.value(2).toDouble(),
            points.value(3).toDouble()};
}

}  // namespace

ExportedAnimations::ExportedAnimations(const PCProject::Ptr& project) : m_project(project) {
    const ExportTarget target{.language = TargetLanguage::ObjectiveC, .generateForMac = true};
    for (const auto& bundle : planExport(*project, target).standardAnimationExportBundles) {
        m_standard << bundle.animation->name();
    }
    PCProjectCodeGenerator generator;
    generator.setProject(project);
    generator.setGenerateForMac(true);
    generator.setLanguageProvider(
        std::make_unique<PCObjCCodeProvider>(GenerationStamp{"1.0", "1/2/20"}));
    generator.loadFileContentsByName();
    m_diagnostics = generator.diagnostics();
    for (const auto& [name, pieces] : generator.fileContentsByName()) {
        if (!name.endsWith(u".m")) { continue; }
        read(QString::fromStdString(std::accumulate(pieces.begin(), pieces.end(), std::string())));
    }
}

void ExportedAnimations::read(const QString& text) {
    QHash<QString, TimingFunction> functions;
    KeyframeAnimation current;
    for (const QString& line : text.split(u'\n')) {
        const QString function = between(line, u"CAMediaTimingFunction *"_s, u" ="_s);
        const QString begins =
            between(line, u"[CAKeyframeAnimation animationWithKeyPath:@\""_s, u"\"]"_s);
        const QString ends = between(line, u" addAnimation:"_s, u" forKey:@\""_s);
        if (!function.isEmpty()) {
            functions[function] =
                timingFunction(between(line, u"[CAMediaTimingFunction "_s, u"]"_s));
        } else if (!begins.isEmpty()) {
            current = {};
            current.property = layerPropertyForKeyPath(begins).value_or(LayerProperty::Opacity);
        } else if (line.contains(u".duration = ")) {
            current.duration =
                between(line, u".duration = "_s, u";"_s).section(u' ', 0, 0).toDouble();
        } else if (line.contains(u".keyTimes = @[")) {
            current.keyTimes = numbers(line);
        } else if (line.contains(u".values = @[")) {
            current.values = numbers(line);
            static const QRegularExpression image(u"imageNamed:@\"([^\"]*)\""_s);
            for (const auto& match : image.globalMatch(line)) {
                current.images.push_back(imageWithStem(match.captured(1)));
            }
        } else if (line.contains(u".timingFunctions = @[")) {
            const QString list = between(line, u"@["_s, u"]"_s);
            for (const QString& name : list.split(u", "_s, Qt::SkipEmptyParts)) {
                EXPECT_TRUE(functions.contains(name)) << qPrintable(line);
                current.timingFunctions.push_back(functions.value(name));
            }
        } else if (line.contains(u".repeatCount = HUGE_VALF")) {
            current.repeatCount = std::numeric_limits<double>::infinity();
        } else if (line.contains(u".autoreverses = YES")) {
            current.autoreverses = true;
        } else if (!ends.isEmpty() && line.contains(u"layersByName[@\"")) {
            const QString element = between(line, u"layersByName[@\""_s, u"\"]"_s);
            m_animations[element + u'/' + between(line, u" forKey:@\""_s, u"\"]"_s)] = current;
        }
    }
}

QImage ExportedAnimations::imageWithStem(const QString& stem) const {
    PCImageSetManager& sets = m_project->imageSetManager();
    for (const auto& set : sets.allImageSets()) {
        const QString name = set->name();
        if (name.left(name.lastIndexOf(u'.')) == stem) {
            return sets.imageWithName(name, m_project->backingScale());
        }
    }
    ADD_FAILURE() << "no image is called " << qPrintable(stem);
    return {};
}

bool ExportedAnimations::saysKeyTimesAreCoarse(const QString& animationName,
                                               const PCElement& element) const {
    return std::any_of(m_diagnostics.begin(), m_diagnostics.end(), [&](const auto& diagnostic) {
        return diagnostic.kind == ExportDiagnostic::Kind::CoarseKeyTimes &&
               diagnostic.name == animationName &&
               diagnostic.sentence.contains(u"'%1'"_s.arg(element.name()));
    });
}

std::optional<KeyframeAnimation> ExportedAnimations::find(const QString& animationName,
                                                          const PCElement& element,
                                                          PCPropertyType propertyType) const {
    const bool isStacking = propertyType == PCPropertyTypeChildrenZPositions;
    const std::string_view qualifier =
        animationQualifierForPropertyType(isStacking ? PCPropertyTypeZPosition : propertyType);
    const QString key = u"%1/%2_%3"_s.arg(
        element.name(), animationName,
        QString::fromLatin1(qualifier.data(), static_cast<qsizetype>(qualifier.size())));
    const auto found = m_animations.constFind(key);
    if (found == m_animations.constEnd()) { return std::nullopt; }
    return *found;
}

}  // namespace tweenery::test

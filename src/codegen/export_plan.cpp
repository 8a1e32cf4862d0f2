#include "codegen/export_plan.h"

#include <algorithm>

#include "base/parallel_for.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

struct TypeTag {
    QString suffix;
    PCCodeGeneratorType type;
};

const std::array<TypeTag, 3>& typeTags() {
    static const std::array<TypeTag, 3> tags{{
        {u"_button"_s, PCCodeGeneratorType::Button},
        {u"_layer"_s, PCCodeGeneratorType::Layer},
        {u"<recordable>"_s, PCCodeGeneratorType::RecordableView},
    }};
    return tags;
}

// The tag at the end of an animation's name, such as "walk_sliced_24".
struct AnimationTag {
    QString word;  // empty: none
    int32_t number = 0;
    QString rest;  // the name without the tag
};

AnimationTag tagOfAnimationName(const QString& name) {
    const QStringList components = name.split(u'_');
    if (components.size() < 3) { return {}; }
    return {components[components.size() - 2], leadingInteger(components.back()),
            components.first(components.size() - 2).join(u'_')};
}

// What one animation stores of one element.
struct ElementJob {
    size_t bundle = 0;
    size_t element = 0;
    const FileWrapper* directory = nullptr;
    PCAnimationExportElementTimelines record;  // has an element if anything is stored
    std::vector<OlderTimeline> older;
};

bool holdsTimelines(const FileWrapper& directory) {
    const auto& files = directory.fileWrappers();
    return std::any_of(files.begin(), files.end(), [](const auto& file) {
        return file.second->isRegularFile() && elementTimelineFileNamed(file.first);
    });
}

// Makes every timeline that does not repeat as long as the animation.
void lengthenTimelines(const PCAnimationExportBundle& bundle, bool tweens) {
    for (const PCAnimationExportElementTimelines& record : bundle.timelinesByElement) {
        for (PCKeyedPropertyTimeline* timeline : record.slicingOrder()) {
            timeline->EXPORT_setDurationInTimeInMS(bundle.durationInMS, tweens);
        }
    }
}

// Puts a name into the entry of a map. What it replaces there is free again.
void replaceName(QString& entry, const QString& name, TakenNames& taken) {
    if (!entry.isNull()) { taken.erase(entry); }
    taken.insert(name);
    entry = name;
}

class Planner {
 public:
    Planner(PCProject& project, ExportPlan& plan) : m_project(project), m_plan(plan) {}

    void run() {
        listElements();
        createElementTypeMap();
        buildElementCodeVariableNamesMap();
        createAnimationsBaseNameMap();
        createAnimationExportBundles();
    }

 private:
    void listElements();
    void createElementTypeMap();
    PCCodeGeneratorType takeTypeTag(PlannedElement& planned, PCCodeGeneratorType parentType);
    void buildElementCodeVariableNamesMap();
    void giveEachElementItsVariable();
    void createAnimationsBaseNameMap();
    void createAnimationExportBundles();
    void listElementsOfBundle(size_t bundle);
    void readTimelines(ElementJob& job) const;
    void takeTimelines(ElementJob& job);
    void classify(PCAnimationExportBundle& bundle);
    void enterBaseName(const QString& animationName, const QString& name);
    QString baseNameFromSpecialNameComponents(const QString& rest) const;
    QString tellApart(TakenNames& stems, const QString& name) const;
    void file(PCAnimationExportBundle&& bundle);

    PCProject& m_project;
    ExportPlan& m_plan;
    std::unordered_map<Identifier, size_t> m_elementByIdentifier;
    std::unordered_map<QString, QString> m_baseNameByAnimationName;  // with a lower first letter
    TakenNames m_baseNames;                                          // those in the map
    TakenNames m_slicedStems;
    TakenNames m_pngStems;
    std::unordered_set<std::string> m_completionNames;
    std::vector<PCAnimationExportBundle> m_bundles;
    std::vector<ElementJob> m_jobs;
};

void Planner::listElements() {
    const PCElement::Elements elements = m_project.canvas()->elementAndAllDescendants();
    m_plan.elements.reserve(elements.size());
    for (const PCElement::Ptr& element : elements) {
        const size_t index = m_plan.elements.size();
        m_plan.indexOfElement.emplace(element.get(), index);
        PlannedElement planned;
        planned.element = element;
        planned.name = element->name();
        if (index > 0) { planned.parent = m_plan.indexOfElement.at(element->parentElement()); }
        m_plan.elements.push_back(std::move(planned));
    }
    for (const auto& [identifier, element] :
         m_project.canvas()->EXPORT_elementAndDescendantsByIdentifier()) {
        m_elementByIdentifier.emplace(identifier, m_plan.indexOfElement.at(element.get()));
    }
}

void Planner::createElementTypeMap() {
    std::unordered_map<QString, PCCodeGeneratorType> typeByName;
    for (PlannedElement& planned : m_plan.elements) {
        const bool isCanvas = &planned == &m_plan.elements.front();
        PCCodeGeneratorType type = PCCodeGeneratorType::View;
        if (isCanvas) {
            if (m_plan.target.generateForMac) { type = PCCodeGeneratorType::Layer; }
        } else {
            type = takeTypeTag(planned, typeByName.at(m_plan.elements[planned.parent].name));
            if (type == PCCodeGeneratorType::Layer) { m_plan.hasAtLeastOneLayer = true; }
        }
        typeByName[planned.name] = type;
    }
    for (PlannedElement& planned : m_plan.elements) {
        planned.type = typeByName.at(planned.name);
        planned.userName = planned.name.toStdString();
    }
}

// Below a layer there are only layers, and tags stay in the name.
PCCodeGeneratorType Planner::takeTypeTag(PlannedElement& planned, PCCodeGeneratorType parentType) {
    if (parentType == PCCodeGeneratorType::Layer) { return PCCodeGeneratorType::Layer; }
    for (const TypeTag& tag : typeTags()) {
        if (!planned.name.endsWith(tag.suffix)) { continue; }
        planned.name.chop(tag.suffix.size());
        return tag.type;
    }
    return PCCodeGeneratorType::View;
}

void Planner::buildElementCodeVariableNamesMap() {
    if (m_plan.target.language == TargetLanguage::CurrentSwift) {
        giveEachElementItsVariable();
        return;
    }
    std::unordered_map<QString, QString> variableByName;
    for (const PlannedElement& planned : m_plan.elements) {
        replaceName(variableByName[planned.name],
                    codeFriendlyNameFromName(planned.name, &m_plan.elementVariables),
                    m_plan.elementVariables);
    }
    for (PlannedElement& planned : m_plan.elements) {
        planned.variable = variableByName.at(planned.name).toStdString();
    }
}

// Elements of one name have a variable each.
void Planner::giveEachElementItsVariable() {
    for (PlannedElement& planned : m_plan.elements) {
        const QString variable = codeFriendlyNameFromName(planned.name, &m_plan.elementVariables);
        m_plan.elementVariables.insert(variable);
        planned.variable = usableSwiftVariable(variable).toStdString();
    }
}

void Planner::createAnimationsBaseNameMap() {
    for (const PCAnimation::Ptr& animation : m_project.animationsManager().animations()) {
        enterBaseName(animation->name(), codeFriendlyNameFromName(animation->name(), &m_baseNames));
    }
}

void Planner::enterBaseName(const QString& animationName, const QString& name) {
    replaceName(m_baseNameByAnimationName[animationName], name, m_baseNames);
    m_plan.baseMethodNameByAnimationName[animationName] = pc_stringByUppercasingFirstLetter(name);
}

void Planner::createAnimationExportBundles() {
    for (const PCAnimation::Ptr& animation : m_project.animationsManager().animations()) {
        if (animation->name().startsWith(u"_ignore_")) { continue; }
        m_bundles.emplace_back().animation = animation;
        listElementsOfBundle(m_bundles.size() - 1);
    }
    parallelFor(m_jobs.size(), [this](size_t i) { readTimelines(m_jobs[i]); });
    for (ElementJob& job : m_jobs) {
        takeTimelines(job);
    }
    const bool tweens = m_project.tweenOn();
    parallelFor(m_bundles.size(), [&](size_t i) { lengthenTimelines(m_bundles[i], tweens); });
    for (PCAnimationExportBundle& bundle : m_bundles) {
        classify(bundle);
        file(std::move(bundle));
    }
}

// Notes every element of which the animation stores something, in tree order.
void Planner::listElementsOfBundle(size_t bundle) {
    const PCAnimation::Ptr& animation = m_bundles[bundle].animation;
    std::vector<std::pair<size_t, const FileWrapper*>> directories;  // by place in the tree
    for (const auto& [name, directory] : animation->fileWrapper()->fileWrappers()) {
        if (name == kAnimationNameFile || name == kAnimationKeyAllFile) { continue; }
        const auto element = m_elementByIdentifier.find(Identifier(name));
        if (element != m_elementByIdentifier.end()) {
            directories.emplace_back(element->second, directory.get());
        } else if (holdsTimelines(*directory)) {
            m_plan.leftOutTimelines.push_back({animation, name});
        }
    }
    std::sort(directories.begin(), directories.end());
    for (const auto& [element, directory] : directories) {
        m_jobs.push_back({bundle, element, directory, {}, {}});
    }
}

// Copies what is in memory and decodes what is not. Called on several threads.
void Planner::readTimelines(ElementJob& job) const {
    const PCAnimation::Ptr& animation = m_bundles[job.bundle].animation;
    const PCElement::Ptr& element = m_plan.elements[job.element].element;
    const auto group = animation->timelineGroup(element->identifier());
    const QString path = animation->path() + u'/' + element->identifier().toString() + u'/';
    bool hasTimelines = false;
    for (const auto& [fileName, stored] : job.directory->fileWrappers()) {
        const ElementTimelineFile* file = elementTimelineFileNamed(fileName);
        if (!file || !stored->isRegularFile()) { continue; }
        hasTimelines = true;
        const auto loaded = group ? group->timelineIfLoaded(file->slot) : nullptr;
        auto timeline = loaded && loaded->isAsStored() ? loaded->copy()
                                                       : PCKeyedPropertyTimeline::EXPORT_unarchive(
                                                             stored->contents(), path + fileName);
        timeline->takeTypeOfFile(file->slot);
        if (timeline->isOfOlderVersion()) {
            job.older.push_back({animation, element, timeline->propertyType()});
        }
        job.record.*file->field = std::move(timeline);
    }
    if (hasTimelines) { job.record.setElement(element); }
}

// Gives the timelines that have been read to their bundle.
void Planner::takeTimelines(ElementJob& job) {
    m_plan.olderTimelines.insert(m_plan.olderTimelines.end(), job.older.begin(), job.older.end());
    if (!job.record.element) { return; }
    PCAnimationExportBundle& bundle = m_bundles[job.bundle];
    bundle.durationInMS = std::max(bundle.durationInMS, job.record.maxDurationInMS());
    bundle.hasLooping = bundle.hasLooping || job.record.hasLooping();
    bundle.timelinesByElement.push_back(std::move(job.record));
}

void Planner::classify(PCAnimationExportBundle& bundle) {
    const QString name = bundle.animation->name();
    const AnimationTag tag = tagOfAnimationName(name);
    QString baseMethodName;
    if (tag.word == u"sliced" && tag.number > 0) {
        bundle.type = AnimationExportType::frameSlicedAnimation;
        bundle.numberOfFrameSlices = tag.number;
        baseMethodName = tellApart(m_slicedStems, baseNameFromSpecialNameComponents(tag.rest));
    } else if (tag.word == u"pngs" && tag.number > 0) {
        bundle.type = AnimationExportType::pngGeneratorAnimation;
        bundle.generatePNGsDeltaTimeInMS = static_cast<float>(tag.number);
        baseMethodName = tellApart(m_pngStems, baseNameFromSpecialNameComponents(tag.rest));
    } else {
        if (tag.word == u"speed" && tag.number > 0) {
            bundle.timeScalar = static_cast<float>(tag.number) / 100.0F;
            // Into the map, because standard animations are named from there.
            enterBaseName(name, baseNameFromSpecialNameComponents(tag.rest));
        }
        baseMethodName = m_plan.baseMethodNameByAnimationName.at(name);
    }
    bundle.baseMethodName = baseMethodName.toStdString();
}

QString Planner::baseNameFromSpecialNameComponents(const QString& rest) const {
    return codeFriendlyNameFromName(rest, &m_baseNames);
}

// The stem of a name, numbered until no other animation of its kind and no base name has it.
QString Planner::tellApart(TakenNames& stems, const QString& name) const {
    QString candidate = name;
    while (stems.contains(candidate) || m_baseNames.contains(candidate)) {
        candidate = stems.firstFree(candidate);
        candidate = m_baseNames.firstFree(candidate);
    }
    stems.insert(candidate);
    return pc_stringByUppercasingFirstLetter(candidate);
}

void Planner::file(PCAnimationExportBundle&& bundle) {
    switch (bundle.type) {
        case AnimationExportType::frameSlicedAnimation:
            m_plan.frameSlicedAnimationExportBundles.push_back(std::move(bundle));
            break;
        case AnimationExportType::pngGeneratorAnimation:
            m_plan.pngGeneratorAnimationExportBundles.push_back(std::move(bundle));
            break;
        default:
            if (!bundle.hasLooping && m_completionNames.insert(bundle.baseMethodName).second) {
                m_plan.animationBaseMethodNamesUsingCompletionBlock.push_back(
                    bundle.baseMethodName);
            }
            m_plan.standardAnimationExportBundles.push_back(std::move(bundle));
    }
}

}  // namespace

ExportPlan planExport(PCProject& project, const ExportTarget& target, bool isLFTPuppetView) {
    static const QString marker = u"_LFT_"_s;
    ExportPlan plan;
    plan.target = target;
    plan.isLFTPuppetView = isLFTPuppetView;
    QString projectName = project.projectName();
    if (projectName.startsWith(marker)) {
        projectName.remove(0, marker.size());
        plan.isLFTPuppetView = true;
    }
    plan.generatedClassName =
        pc_stringByUppercasingFirstLetter(codeFriendlyNameFromName(projectName)) + u"View"_s;
    Planner(project, plan).run();
    return plan;
}

std::string methodStem(const std::string& baseMethodName) {
    return baseMethodName.ends_with("Animation") ? baseMethodName : baseMethodName + "Animation";
}

}  // namespace tweenery

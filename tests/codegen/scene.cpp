#include "codegen/scene.h"

#include <numeric>

#include "codegen/project_exporter.h"
#include "model/images/image.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {

std::string joined(const SourcePieces& pieces) {
    return std::accumulate(pieces.begin(), pieces.end(), std::string());
}

Scene::Scene(const QString& projectName) : m_project(PCProject::init()) {
    m_project->setProjectName(projectName);
}

PCElement::Ptr Scene::add(const QString& name, const PCElement::Ptr& parent) {
    auto element = PCElement::init();
    element->setName(name);
    const auto& target = parent ? parent : m_project->canvas();
    target->insertSubelement(element, target->children().size());
    return element;
}

void Scene::addImage(const QString& filename) const {
    QImage bitmap(12, 6, QImage::Format_ARGB32_Premultiplied);
    bitmap.fill(Qt::red);
    m_project->imageSetManager().addImageSetWithPCImage(
        std::make_shared<const PCImage>(bitmap, filename));
}

PCAnimation::Ptr Scene::addAnimation(const QString& name) {
    PCAnimationsManager& manager = m_project->animationsManager();
    const auto directory = manager.fileWrapper()->pc_ensureSubfileWrapperDirectoryExistsWithName(
        Identifier::generate().toString());
    directory->pc_replaceSubFileWrapperNamed(kAnimationNameFile, name.toUtf8());
    auto animation = PCAnimation::initWithAnimationFileWrapper(directory, m_project);
    manager.addAnimation(animation);
    return animation;
}

void Scene::store(const PCAnimation::Ptr& animation, const QString& elementIdentifier,
                  PCPropertyType type, const std::vector<Key>& keys,
                  PCRepeatBehavior repeatBehavior, const QString& fileName) {
    const auto timeline = PCKeyedPropertyTimeline::initForElement(nullptr, type);
    timeline->setRepeatBehavior(repeatBehavior);
    for (const Key& key : keys) {
        const auto keyframe = timeline->setStoredPropertyValue(key.value, key.timeInMS);
        keyframe->setEasingMode(static_cast<PCEasingMode>(key.easing));
        keyframe->setInstantTransition(key.instant);
    }
    animation->fileWrapper()
        ->pc_ensureSubfileWrapperDirectoryExistsWithName(elementIdentifier)
        ->pc_replaceSubFileWrapperNamed(fileName.isNull() ? filenameOfTimelineType(type) : fileName,
                                        KeyedArchiver::archivedDataWithRootObject(*timeline));
}

ExportPlan Scene::plan(const RunTarget& target) const {
    return planExport(*m_project, {target.language, target.mac, false, target.addAnimationSuffix});
}

PCProjectCodeGenerator Scene::generator(const RunTarget& target) const {
    const GenerationStamp stamp{"1.0", "1/2/20"};
    PCProjectCodeGenerator generator;
    generator.setProject(m_project);
    generator.setGenerateForMac(target.mac);
    generator.setAddAnimationSuffix(target.addAnimationSuffix);
    generator.setLanguageProvider(makeLanguageProvider(target.language, stamp));
    return generator;
}

std::string Scene::source(const QString& extension, const RunTarget& target) const {
    PCProjectCodeGenerator run = generator(target);
    run.loadFileContentsByName();
    for (const auto& [name, pieces] : run.fileContentsByName()) {
        if (name.endsWith(extension)) { return joined(pieces); }
    }
    return {};
}

std::vector<ExportDiagnostic> Scene::diagnostics(const RunTarget& target) const {
    return exportDiagnostics(*m_project, plan(target));
}

}  // namespace tweenery::test

#include "bench/big_project.h"

#include <QDir>
#include <QTemporaryDir>
#include <array>
#include <map>
#include <random>

#include "storage/package_store.h"

using namespace Qt::StringLiterals;

namespace tweenery::bench {
namespace {

constexpr std::array kAnimatedTypes{PCPropertyTypeTranslationX, PCPropertyTypeTranslationY,
                                    PCPropertyTypeOpacity,      PCPropertyTypeZRotation,
                                    PCPropertyTypeScaleX,       PCPropertyTypeScaleY};

class Generator {
 public:
    float value(PCPropertyType type) {
        const bool isTranslation =
            type == PCPropertyTypeTranslationX || type == PCPropertyTypeTranslationY;
        std::uniform_real_distribution<float> range(isTranslation ? -400.0F : 0.1F,
                                                    isTranslation ? 400.0F : 1.0F);
        return range(m_random);
    }
    PCEasingMode easing() {
        return easingModes()[std::uniform_int_distribution<size_t>(0, 6)(m_random)].mode;
    }
    int timeStep() { return std::uniform_int_distribution<int>(20, 600)(m_random); }
    double coordinate(double limit) {
        return std::uniform_real_distribution<double>(0, limit)(m_random);
    }

 private:
    std::mt19937 m_random{20260101};
};

void fillTimeline(PCKeyedPropertyTimeline& timeline, int count, Generator& generator) {
    PCKeyedPropertyTimeline::Keyframes keyframes;
    int32_t time = 0;
    for (int i = 0; i < count; ++i) {
        KeyframeRecord record;
        record.timeInMS = time;
        record.easingMode = generator.easing();
        record.identifier = Identifier::generate();
        record.value = generator.value(static_cast<PCPropertyType>(timeline.propertyType()));
        keyframes.push_back(PCPropertyKeyframe::initWithRecord(nullptr, record));
        time += generator.timeStep();
    }
    timeline.setKeyframes(keyframes);
    timeline.setHasUnsavedChanges(true);
}

PCElement::Ptr makeElement(int number, Generator& generator) {
    PCElement::Ptr element = PCElement::init();
    element->setName(u"Element %1"_s.arg(number));
    element->setSize(QSizeF(64, 48));
    element->setPosition(QPointF(generator.coordinate(1136), generator.coordinate(768)));
    element->setZRotation(generator.coordinate(6));
    element->setOpacity(0.8);
    return element;
}

PCElement::Elements addElements(PCProject& project, const BigProjectShape& shape,
                                Generator& generator) {
    PCElement::Elements elements;
    PCElement::Ptr group;
    for (int i = 0; i < shape.elements; ++i) {
        if (i % shape.elementsPerGroup == 0) {
            group = PCElement::makeGroup();
            group->setName(u"Group %1"_s.arg(i / shape.elementsPerGroup));
            project.canvas()->insertSubelement(group, project.canvas()->children().size());
        }
        elements.push_back(makeElement(i, generator));
        group->insertSubelement(elements.back(), group->children().size());
    }
    return elements;
}

}  // namespace

PCProject::Ptr makeBigProject(const BigProjectShape& shape) {
    Generator generator;
    PCProject::Ptr project = PCProject::init();
    const UndoRegistrationPause pause(project->undoManager());
    const PCElement::Elements elements = addElements(*project, shape, generator);
    PCAnimationsManager& manager = project->animationsManager();
    int place = 0;
    for (int number = 0; number < shape.animations; ++number) {
        const PCAnimation::Ptr animation = manager.addNewEmptyAnimation();
        manager.renameAnimation(animation, u"Animation %1"_s.arg(number));
        manager.setSelectedAnimation(animation);
        int rest = shape.keyframes / shape.animations;
        while (rest > 0) {
            PCElement& element = *elements[static_cast<size_t>(place++) % elements.size()];
            for (int slot = 0; slot < shape.timelinesPerElement && rest > 0; ++slot) {
                const int count = std::min(rest, shape.keyframesPerTimeline);
                fillTimeline(*element.timeline(kAnimatedTypes[static_cast<size_t>(slot)]), count,
                             generator);
                rest -= count;
            }
        }
    }
    manager.setSelectedAnimation(nullptr);
    project->setProjectName(u"Big"_s);
    return project;
}

PCProject::Ptr makeAnimatedElements(int count, int keyframesPerTimeline) {
    Generator generator;
    PCProject::Ptr project = PCProject::init();
    const UndoRegistrationPause pause(project->undoManager());
    BigProjectShape shape;
    shape.elements = count;
    const PCElement::Elements elements = addElements(*project, shape, generator);
    PCAnimationsManager& manager = project->animationsManager();
    manager.setSelectedAnimation(manager.addNewEmptyAnimation());
    QStringList images;
    for (int i = 0; i < keyframesPerTimeline; ++i) {
        images += u"image %1.png"_s.arg(i);
    }
    for (const PCElement::Ptr& element : elements) {
        for (const PCPropertyType type : kAnimatedTypes) {
            fillTimeline(*element->timeline(type), keyframesPerTimeline, generator);
        }
        const QStringList order = PCProject::sortedSubelementIdentifiers(*element->parentElement());
        for (int i = 0; i < keyframesPerTimeline; ++i) {
            element->imageContentsTimeline()->setStringPropertyValue(images[i], i * 400);
            element->childrenZPositionsTimeline()->setArrayPropertyValue(order, i * 400);
        }
    }
    return project;
}

ScratchDirectory::ScratchDirectory() {
    QTemporaryDir directory;
    directory.setAutoRemove(false);
    m_path = directory.path();
}

ScratchDirectory::~ScratchDirectory() {
    QDir(m_path).removeRecursively();
}

QString bigPackage(const BigProjectShape& shape) {
    static ScratchDirectory scratch;
    static std::map<int, QString> written;
    QString& path = written[shape.keyframes];
    if (path.isEmpty()) {
        path = scratch.path(u"Big%1.tweenery"_s.arg(shape.keyframes));
        savePackage(*makeBigProject(shape)->fileWrapper(), path);
    }
    return path;
}

BigProjectShape scaled(int factor) {
    BigProjectShape shape;
    shape.keyframes *= factor;
    return shape;
}

}  // namespace tweenery::bench

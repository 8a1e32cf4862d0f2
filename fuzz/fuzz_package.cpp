// Reads packages from disk: opens them, decodes everything, selects each animation, evaluates,
// describes, saves a copy and reads that back.

#include <QDir>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

#include "base/errors.h"
#include "model/project.h"
#include "storage/package_store.h"
#include "structured_package.h"

using namespace tweenery;
using namespace Qt::StringLiterals;

namespace {

const QString& scratch() {
    static const QTemporaryDir directory(u"/dev/shm/tweenery-fuzz-XXXXXX"_s);
    static const QString path = directory.path();
    return path;
}

void exerciseAnimations(PCProject& project) {
    PCAnimationsManager& manager = project.animationsManager();
    const PCAnimationsManager::Animations animations = manager.animations();
    for (const PCAnimation::Ptr& animation : animations) {
        try {
            animation->storedSummary();
            manager.setSelectedAnimation(animation);
        } catch (const InputError&) { continue; }
        for (const PCElement::Ptr& element : project.canvas()->elementAndAllDescendants()) {
            for (const int32_t time : {0, 1, 500, 123456, INT32_MAX}) {
                element->positionAtTimeInMS(time);
                element->opacityAtTimeInMS(time);
                element->imageContentsAtTimeInMS(time);
                element->childrenZPositionsAtTimeInMS(time);
            }
        }
        project.canvas()->debugDescriptionWithTimelines();
    }
}

void require(bool holds) {
    if (!holds) { std::abort(); }
}

void exercise(const QString& path) {
    const FileWrapper::Ptr root = readPackage(path);
    const PCProject::Ptr project = PCProject::projectForReadingWithFileWrapper(root);
    exerciseAnimations(*project);
    project->debugDescription();
    const QString copy = scratch() + u"/Copy.tweenery"_s;
    QDir(copy).removeRecursively();
    writePackageCopy(*project->fileWrapper(), copy);
    const PCProject::Ptr again = PCProject::projectForReadingWithFileWrapper(readPackage(copy));
    require(again->canvas()->debugDescription() == project->canvas()->debugDescription());
    require(again->animationsManager().animations().size() ==
            project->animationsManager().animations().size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::FuzzInput input({data, size});
    const QString path = scratch() + u"/Fuzz.tweenery"_s;
    try {
        QDir(path).removeRecursively();
        writePackageCopy(*fuzz::structuredPackage(input), path);
        exercise(path);
    } catch (const InputError&) {
        // What a package with faults deserves.
    }
    return 0;
}

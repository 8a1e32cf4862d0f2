#include "editor/layers/screen_image.h"

#include <algorithm>

#include "base/errors.h"
#include "model/edit_context.h"
#include "model/images/image_set_manager.h"

namespace tweenery {
namespace {

double greaterSide(QSize size) {
    return std::max(size.width(), size.height());
}

}  // namespace

ScreenImage screenImageWithName(EditContext& project, const QString& name) {
    const PCImageSetManager& sets = project.imageSetManager();
    try {
        const auto set = sets.imageSetWithName(name);
        if (!set) { return {}; }
        const QImage image = sets.imageWithName(name, project.backingScale());
        const double points = greaterSide(set->size());
        const double pixels = greaterSide(image.size());
        return {image, points > 0 && pixels > 0 ? pixels / points : 1};
    } catch (const InputError&) { return {}; }
}

}  // namespace tweenery

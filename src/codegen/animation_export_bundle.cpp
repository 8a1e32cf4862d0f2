#include "codegen/animation_export_bundle.h"

#include "base/number_text.h"

using namespace Qt::StringLiterals;

namespace tweenery {

QString PCAnimationExportBundle::description() const {
    static const QString typeNames[] = {u"singleFrameState"_s, u"standardAnimation"_s,
                                        u"frameSlicedAnimation"_s, u"pngGeneratorAnimation"_s};
    const double seconds = static_cast<double>(static_cast<float>(durationInMS) / 1000);
    return u"<AniExpBundle %1 duration:%2s(%3)>"_s.arg(
        animation->name(), QString::fromStdString(fixedText(seconds, 2)),
        typeNames[static_cast<size_t>(type)]);
}

}  // namespace tweenery

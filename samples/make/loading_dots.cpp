// Three ways to wait: dots that bounce forever, dots that change places, a dot that winks.

#include "sample_scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::samples {
namespace {

constexpr double kRadius = 26;

QRectF placeOf(QPointF centre, double radius) {
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

QByteArray circle(QPointF centre, double radius, const QByteArray& color) {
    return "<circle cx=\"" + QByteArray::number(centre.x()) + "\" cy=\"" +
           QByteArray::number(centre.y()) + "\" r=\"" + QByteArray::number(radius - 1) +
           "\" fill=\"" + color + "\"/>";
}

}  // namespace

void makeLoadingDots(const QString& folder) {
    SampleScene scene(u"Loading Dots"_s, {360, 240});
    scene.add(u"night"_s, {0, 0, 360, 240},
              "<rect width=\"360\" height=\"240\" fill=\"#2E2A4A\"/>");
    struct Dot {
        const char* name;
        QPointF centre;
        QByteArray color;
    };
    PCElement::Elements dots;
    PCElement::Elements shadows;
    const std::vector<Dot> all{{"coral", {90, 120}, "#F7868B"},
                               {"sand", {180, 120}, "#FFD873"},
                               {"sky", {270, 120}, "#79BFEA"}};
    for (const Dot& dot : all) {
        const QRectF place(dot.centre.x() - 24, 186, 48, 12);
        shadows.push_back(scene.add(QString::fromLatin1(dot.name) + u" shadow"_s, place,
                                    "<ellipse cx=\"" + QByteArray::number(dot.centre.x()) +
                                        "\" cy=\"192\" rx=\"22\" ry=\"5\" fill=\"#1D1A33\"/>"));
    }
    for (const Dot& dot : all) {
        dots.push_back(scene.add(QString::fromLatin1(dot.name), placeOf(dot.centre, kRadius),
                                 circle(dot.centre, kRadius, dot.color)));
    }
    const QPointF sand = all[1].centre;
    const QString wink = scene.addPicture(
        u"sand wink"_s, placeOf(sand, kRadius),
        circle(sand, kRadius, "#FFD873") +
            "<path d=\"M166 120q6 8 12 0M186 116v8M168 132q12 10 24 0\" stroke=\"#2E2A4A\" "
            "stroke-width=\"3\" stroke-linecap=\"round\"/>");
    const SampleScene::Element row = scene.group(u"dots"_s, dots, {180, 120});

    scene.animation(u"Bounce"_s);
    for (size_t i = 0; i < dots.size(); ++i) {
        const auto delay = static_cast<int32_t>(i) * 140;
        const auto up = std::vector<SampleScene::Key>{{0, 0},
                                                      {delay, 0},
                                                      {delay + 280, -56, PCEasingModeEaseOut},
                                                      {delay + 560, 0, PCEasingModeEaseIn},
                                                      {1100, 0}};
        scene.key(dots[i], PCPropertyTypeTranslationY, up, PCRepeatBehaviorForever);
        scene.keyScale(shadows[i],
                       {{0, 1}, {delay, 1}, {delay + 280, 0.55}, {delay + 560, 1}, {1100, 1}},
                       PCRepeatBehaviorForever);
    }
    scene.animation(u"Change Places"_s);
    scene.key(dots[0], PCPropertyTypeTranslationX, {{0, 0}, {900, 180, PCEasingModeAnticOver}},
              PCRepeatBehaviorForeverAutoreverse);
    scene.key(dots[2], PCPropertyTypeTranslationX, {{0, 0}, {900, -180, PCEasingModeAnticOver}},
              PCRepeatBehaviorForeverAutoreverse);
    scene.keyScale(dots[0], {{0, 1}, {450, 1.35}, {900, 1}}, PCRepeatBehaviorForeverAutoreverse);
    scene.keyScale(dots[2], {{0, 1}, {450, 0.7}, {900, 1}}, PCRepeatBehaviorForeverAutoreverse);
    scene.keyOrder(row,
                   {{0, {dots[2], dots[1], dots[0]}},
                    {900, {dots[0], dots[1], dots[2]}},
                    {1800, {dots[2], dots[1], dots[0]}}},
                   PCRepeatBehaviorForever);
    scene.animation(u"Done"_s);
    scene.key(dots[0], PCPropertyTypeTranslationX, {{0, 0}, {400, 90, PCEasingModeAnticipate}});
    scene.key(dots[2], PCPropertyTypeTranslationX, {{0, 0}, {400, -90, PCEasingModeAnticipate}});
    scene.key(dots[0], PCPropertyTypeOpacity, {{0, 1}, {400, 1}, {420, 0, PCEasingModeLinear}});
    scene.key(dots[2], PCPropertyTypeOpacity, {{0, 1}, {400, 1}, {420, 0, PCEasingModeLinear}});
    scene.keyScale(dots[1], {{0, 1}, {400, 1}, {800, 1.8, PCEasingModeOvershoot}});
    scene.keyPictures(dots[1], {{0, u"sand.png"_s}, {900, wink}, {1300, u"sand.png"_s}});
    scene.keyAll({0, 400, 800});
    scene.save(folder);
}

}  // namespace tweenery::samples

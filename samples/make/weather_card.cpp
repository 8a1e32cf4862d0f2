// A card with the weather: it appears, a breeze moves it, rain starts, and its button turns.

#include "sample_scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::samples {
namespace {

constexpr QRectF kCard(96, 52, 448, 376);
const QByteArray kClip =
    "<defs><clipPath id=\"card\"><rect x=\"96\" y=\"52\" width=\"448\" height=\"376\" "
    "rx=\"28\"/></clipPath></defs>";

QByteArray at(double x, double y, const QByteArray& svg) {
    return "<g transform=\"translate(" + QByteArray::number(x) + ' ' + QByteArray::number(y) +
           ")\">" + svg + "</g>";
}

QByteArray cloud(double x, double y, const QByteArray& color) {
    return at(x, y,
              "<path d=\"M34 78a26 26 0 0 1-2-52 40 40 0 0 1 76-8 30 30 0 0 1 34 30 15 15 0 0 1-2 "
              "30z\" fill=\"" +
                  color + "\"/>");
}

QByteArray rays(double x, double y) {
    QByteArray all;
    for (int angle = 0; angle < 360; angle += 45) {
        all +=
            "<rect x=\"-5\" y=\"-74\" width=\"10\" height=\"24\" rx=\"5\" fill=\"#FFC94A\" "
            "transform=\"rotate(" +
            QByteArray::number(angle) + ")\"/>";
    }
    return at(x, y, all);
}

}  // namespace

void makeWeatherCard(const QString& folder) {
    SampleScene scene(u"Weather Card"_s, {640, 480});
    scene.project().preferences().setGeneratedCodeIsIOS(true);  // so that what is sliced compiles
    const auto card =
        scene.add(u"card"_s, kCard,
                  verticalGradient("sky", "#79BFEA", "#D8EEF9") +
                      "<rect x=\"96\" y=\"52\" width=\"448\" height=\"376\" rx=\"28\" "
                      "fill=\"url(#sky)\"/>");
    // The corners of the card are drawn into the hills: Qt's SVG has no clips.
    const auto back = scene.add(
        u"hill back"_s, {96, 308, 448, 120},
        "<path d=\"M96 360c70-60 150-60 224-14s150 40 224-20v74a28 28 0 0 1-28 28H124a28 28 0 0 "
        "1-28-28z\" fill=\"#8CC07A\"/>");
    const auto front = scene.add(
        u"hill front"_s, {96, 352, 448, 76},
        "<path d=\"M96 392c90-46 170-22 250 2s140 8 198-24v30a28 28 0 0 1-28 28H124a28 28 0 0 "
        "1-28-28z\" fill=\"#5E9E63\"/>");
    const auto sunRays = scene.add(u"sun rays"_s, {108, 68, 156, 156}, rays(186, 146));
    const auto sunDisc = scene.add(u"sun disc"_s, {144, 104, 84, 84},
                                   "<circle cx=\"186\" cy=\"146\" r=\"40\" fill=\"#FFD873\"/>");
    const auto cloudBack =
        scene.add(u"cloud back"_s, {228, 54, 172, 108}, cloud(236, 74, "#EEF7FC"));
    std::vector<SampleScene::Element> drops;
    const std::vector<QPointF> places{{404, 266}, {438, 282}, {472, 266}};
    for (const QPointF& place : places) {
        drops.push_back(
            scene.add(u"drop %1"_s.arg(drops.size() + 1), {place.x() - 14, place.y() - 2, 28, 42},
                      at(place.x(), place.y(),
                         "<path d=\"M0 0c8 12 12 18 12 25a12 12 0 0 1-24 0c0-7 4-13 12-25z\" "
                         "fill=\"#3E8FC7\"/>")));
    }
    const auto cloudFront =
        scene.add(u"cloud front"_s, {360, 156, 172, 104}, cloud(368, 176, "#FFFFFF"));
    const auto refresh = scene.add(
        u"refresh_button"_s, {460, 352, 56, 56},
        "<circle cx=\"488\" cy=\"380\" r=\"26\" fill=\"#FFFFFF\"/>"
        "<path d=\"M498 372a14 14 0 1 0 4 10M503 364v9h-9\" stroke=\"#2F6F9F\" stroke-width=\"4\" "
        "stroke-linecap=\"round\" stroke-linejoin=\"round\"/>");
    const auto kite =
        scene.add(u"kite"_s, {266, 86, 124, 154},
                  at(268, 88,
                     "<path d=\"M60 0 120 56 60 150 0 56z\" fill=\"#F2545B\"/>"
                     "<path d=\"M60 0 120 56H60z\" fill=\"#F7868B\"/>"
                     "<path d=\"M60 150 0 56h60z\" fill=\"#C93A44\"/>"
                     "<path d=\"M60 0v150M0 56h120\" stroke=\"#7A1F27\" stroke-width=\"2\"/>"));
    kite->setZRotation(0.41887902);
    const auto hills = scene.group(u"hills"_s, {back, front}, {320, 428});
    const auto sun = scene.group(u"sun"_s, {sunRays, sunDisc}, {186, 146});
    const auto rain = scene.group(u"rain"_s, {drops[0], drops[1], drops[2]}, {438, 290});
    constexpr auto loop = PCRepeatBehaviorForever;
    constexpr auto swing = PCRepeatBehaviorForeverAutoreverse;

    scene.animation(u"Appear"_s);
    scene.key(card, PCPropertyTypeOpacity, {{0, 0}, {300, 1}});
    scene.key(hills, PCPropertyTypeTranslationY, {{0, 60}, {500, 0, PCEasingModeEaseOut}});
    scene.key(hills, PCPropertyTypeOpacity, {{0, 0}, {300, 1}});
    scene.keyScale(sun, {{0, 0.01}, {300, 0.01}, {900, 1, PCEasingModeOvershoot}});
    scene.key(cloudFront, PCPropertyTypeTranslationX, {{0, 120}, {200, 120}, {1000, 0}});
    scene.key(cloudFront, PCPropertyTypeOpacity, {{0, 0}, {200, 0}, {700, 1}});
    scene.key(cloudBack, PCPropertyTypeOpacity, {{0, 0}, {500, 0}, {1000, 1}});
    scene.key(rain, PCPropertyTypeOpacity, {{0, 0}, {900, 0}, {1200, 1}});
    scene.key(kite, PCPropertyTypeTranslationY,
              {{0, 200}, {400, 200}, {1200, 0, PCEasingModeOvershoot}});
    scene.key(kite, PCPropertyTypeOpacity, {{0, 0}, {400, 0}, {700, 1}});
    scene.keyScale(refresh, {{0, 0.01}, {800, 0.01}, {1200, 1, PCEasingModeOvershoot}});
    scene.keyAll({0, 1200});

    scene.animation(u"Breeze"_s);
    scene.key(kite, PCPropertyTypeZRotation, {{0, 24}, {900, 34}, {1600, 18}}, swing);
    scene.key(kite, PCPropertyTypeTranslationX, {{0, 0}, {1600, 26}}, swing);
    scene.key(kite, PCPropertyTypeTranslationY, {{0, 0}, {800, -14}}, swing);
    scene.key(cloudFront, PCPropertyTypeTranslationX, {{0, 0}, {2400, -26}}, swing);
    scene.key(cloudBack, PCPropertyTypeTranslationX, {{0, -10}, {3200, 30}}, swing);
    scene.key(sunRays, PCPropertyTypeZRotation, {{0, 0}, {3200, 45, PCEasingModeLinear}}, loop);

    scene.animation(u"Rain starts"_s);
    for (size_t i = 0; i < drops.size(); ++i) {
        const auto delay = static_cast<int32_t>(i) * 150;
        scene.key(drops[i], PCPropertyTypeTranslationY,
                  {{0, -24}, {delay, -24}, {delay + 600, 70, PCEasingModeEaseIn}, {900, 70}}, loop);
        scene.key(
            drops[i], PCPropertyTypeOpacity,
            {{0, 0}, {delay, 0}, {delay + 120, 1}, {delay + 450, 1}, {delay + 600, 0}, {900, 0}},
            loop);
    }
    scene.key(cloudFront, PCPropertyTypeTranslationY, {{0, 0}, {450, 3}}, swing);

    scene.animation(u"Refresh"_s);
    scene.key(refresh, PCPropertyTypeZRotation, {{0, 0}, {800, 360, PCEasingModeAnticipate}});

    scene.animation(u"Sunrise_sliced_24"_s);
    scene.key(sun, PCPropertyTypeTranslationY, {{0, 160}, {2000, 0, PCEasingModeEaseOut}});
    scene.key(sunRays, PCPropertyTypeZRotation, {{0, -90}, {2000, 0}});
    scene.key(sun, PCPropertyTypeOpacity, {{0, 0}, {500, 1}, {2000, 1}});
    scene.save(folder);
}

}  // namespace tweenery::samples

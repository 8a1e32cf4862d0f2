// A boat on two rows of waves, a gull that beats its wings and changes to the front, and a sunset.

#include "sample_scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::samples {
namespace {

QByteArray wave(double left, double top, const QByteArray& color) {
    QByteArray path = "<path d=\"M" + QByteArray::number(left) + ' ' + QByteArray::number(top + 8);
    for (int i = 0; i < 8; ++i) {
        path += "q20 -16 40 0t40 0";
    }
    return path + "v120H" + QByteArray::number(left) + "z\" fill=\"" + color + "\"/>";
}

}  // namespace

void makePaperBoat(const QString& folder) {
    SampleScene scene(u"Paper Boat"_s, {480, 320});
    const auto day = scene.add(u"day"_s, {0, 0, 480, 320},
                               verticalGradient("day", "#8FD0EE", "#E4F4FA") +
                                   "<rect width=\"480\" height=\"320\" fill=\"url(#day)\"/>");
    const auto evening =
        scene.add(u"evening"_s, {0, 0, 480, 320},
                  verticalGradient("evening", "#4B3B78", "#FF9E6B") +
                      "<rect width=\"480\" height=\"320\" fill=\"url(#evening)\"/>");
    const auto sun = scene.add(u"sun"_s, {360, 34, 68, 68},
                               "<circle cx=\"394\" cy=\"68\" r=\"33\" fill=\"#FFD873\"/>");
    const auto far = scene.add(u"far waves"_s, {-80, 208, 640, 112}, wave(-80, 208, "#5BA7D6"));
    const auto hull = scene.add(u"hull"_s, {146, 208, 160, 48},
                                "<path d=\"M148 210h156l-34 44h-88z\" fill=\"#7A4A2E\"/>"
                                "<path d=\"M148 210h156l-6 8H154z\" fill=\"#93603F\"/>");
    const auto mainsail = scene.add(u"mainsail"_s, {150, 64, 72, 142},
                                    "<path d=\"M220 66v138h-68z\" fill=\"#FFFFFF\"/>"
                                    "<path d=\"M220 204h-68l68-40z\" fill=\"#E3EDF3\"/>");
    const auto jib =
        scene.add(u"jib"_s, {230, 84, 56, 122}, "<path d=\"M231 86v118h52z\" fill=\"#F2545B\"/>");
    const auto pennant = scene.add(u"pennant"_s, {222, 40, 44, 26},
                                   "<path d=\"M223 42l40 10-40 12z\" fill=\"#FFC94A\"/>");
    const auto mast =
        scene.add(u"mast"_s, {221, 40, 8, 172},
                  "<rect x=\"222.500\" y=\"41\" width=\"5\" height=\"170\" rx=\"2.500\" "
                  "fill=\"#5C3520\"/>");
    const QRectF wings(40, 60, 76, 44);
    const auto gull =
        scene.add(u"gull up"_s, wings,
                  "<path d=\"M44 64q22 4 34 28 12-24 34-28\" stroke=\"#FFFFFF\" "
                  "stroke-width=\"6\" stroke-linecap=\"round\" stroke-linejoin=\"round\"/>");
    gull->setName(u"gull"_s);
    const QString down =
        scene.addPicture(u"gull down"_s, wings,
                         "<path d=\"M44 100q16-30 34-10 18-20 34 10\" stroke=\"#FFFFFF\" "
                         "stroke-width=\"6\" stroke-linecap=\"round\" stroke-linejoin=\"round\"/>");
    const auto near = scene.add(u"near waves"_s, {-80, 238, 640, 82}, wave(-80, 238, "#3E8FC7"));
    const auto boat = scene.group(u"boat"_s, {hull, mainsail, jib, pennant, mast}, {226, 240});
    scene.setAnchor(pennant, {223, 53});
    evening->setOpacity(0);
    constexpr auto loop = PCRepeatBehaviorForever;
    constexpr auto swing = PCRepeatBehaviorForeverAutoreverse;

    scene.animation(u"Sail"_s);
    scene.key(boat, PCPropertyTypeZRotation, {{0, -5}, {1300, 5}}, swing);
    scene.key(boat, PCPropertyTypeTranslationY, {{0, 5}, {650, -5}}, swing);
    scene.key(pennant, PCPropertyTypeZRotation, {{0, -10}, {325, 12}}, swing);
    scene.key(far, PCPropertyTypeTranslationX, {{0, 0}, {2600, 80, PCEasingModeLinear}}, loop);
    scene.key(near, PCPropertyTypeTranslationX, {{0, 0}, {2600, -80, PCEasingModeLinear}}, loop);
    scene.keyPictures(gull, {{0, u"gull up.png"_s}, {325, down}, {650, u"gull up.png"_s}}, loop);
    scene.key(gull, PCPropertyTypeTranslationY, {{0, 0}, {650, -16}}, swing);
    scene.key(gull, PCPropertyTypeTranslationX, {{0, 0}, {2600, 40}}, swing);

    scene.animation(u"Leave_speed_150"_s);
    scene.key(boat, PCPropertyTypeTranslationX,
              {{0, 0}, {1200, -24, PCEasingModeEaseOut}, {3600, 420, PCEasingModeEaseIn}});
    scene.key(boat, PCPropertyTypeZRotation, {{0, 0}, {1200, -6}, {2000, 7}, {3600, 3}});
    scene.key(gull, PCPropertyTypeTranslationX, {{0, 0}, {3600, 380}});
    scene.key(gull, PCPropertyTypeTranslationY, {{0, 0}, {1800, 60}, {3600, -40}});
    scene.keyOrder(nullptr, {{0, {day, evening, sun, gull, far, boat, near}},
                             {1800, {day, evening, sun, far, boat, near, gull}},
                             {3600, {day, evening, sun, far, boat, near, gull}}});

    scene.animation(u"Sunset"_s);
    scene.key(sun, PCPropertyTypeTranslationY, {{0, 0}, {4000, 190, PCEasingModeEaseIn}});
    scene.keyScale(sun, {{0, 1}, {4000, 1.5}});
    scene.key(evening, PCPropertyTypeOpacity, {{0, 0}, {1000, 0}, {4000, 1}});
    scene.key(boat, PCPropertyTypeTranslationX, {{0, 0}, {4000, 40}});
    scene.save(folder);
}

}  // namespace tweenery::samples

// The title of the start window: the logo drops into its sky, and springs up again when pressed.

#include <QFile>

#include "base/errors.h"
#include "sample_scene.h"

using namespace Qt::StringLiterals;

namespace tweenery::samples {
namespace {

constexpr QRectF kPicture(0, 0, 804, 472);
constexpr QSizeF kCanvas(803.8, 472.4);
constexpr double kDrop = 122.762;

// The inside of the SVG document.
QByteArray artwork(const QString& path) {
    QFile file(path);
    assertContract(file.open(QIODevice::ReadOnly), path + u" cannot be read"_s);
    const QByteArray text = file.readAll();
    const qsizetype start = text.indexOf('>') + 1;
    return text.mid(start, text.lastIndexOf("</svg>") - start);
}

}  // namespace

void makeTitle(const QString& icons, const QString& folder) {
    SampleScene scene(u"Onboard"_s, kCanvas);
    PCProjectPreferences& preferences = scene.project().preferences();
    preferences.setGeneratedCodeIsIOS(false);
    preferences.setGeneratedCodeUsesSwift(false);
    preferences.setGeneratedCodeClipsToBounds(true);
    std::map<QString, SampleScene::Element> layers;
    for (const char* layer : {"sky", "hill_back", "path", "key_1", "key_2", "key_3", "key_4",
                              "key_5", "key_first", "logo", "mask", "word", "line"}) {
        const QString name = QString::fromLatin1(layer);
        layers[name] =
            scene.add(u"start_"_s + name, kPicture, artwork(u"%1/start_%2.svg"_s.arg(icons, name)));
        layers[name]->setPosition({kCanvas.width() / 2, kCanvas.height() / 2});
    }
    const SampleScene::Element& logo = layers[u"logo"_s];
    const SampleScene::Element& mask = layers[u"mask"_s];
    // At rest after its fall it stands where the artwork has it.
    logo->setPosition(logo->position() - QPointF(0, kDrop));

    scene.animation(u"LogoDown"_s);
    scene.key(logo, PCPropertyTypeTranslationY, {{0, 0}, {2000, kDrop}, {5000, kDrop}});
    for (const PCPropertyType type : {PCPropertyTypeTranslationX, PCPropertyTypeTranslationY}) {
        scene.key(mask, type, {{0, 0, PCEasingModeLinear}, {5000, 0, PCEasingModeLinear}});
    }
    scene.animation(u"LogoPopUp"_s);
    scene.key(logo, PCPropertyTypeTranslationY,
              {{0, kDrop, PCEasingModeEaseOut}, {500, -0.238, PCEasingModeEaseOut}});
    scene.save(folder);
}

}  // namespace tweenery::samples

#include "model/preferences/app_preferences.h"

#include "base/point_text.h"
#include "base/user_defaults.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

struct BoolSetting {
    const char16_t* key;
    bool byDefault;

    QString keyText() const { return QString::fromUtf16(key); }
};

constexpr BoolSetting kTweenOnSetting = {u"tweenon", true};
constexpr BoolSetting kGuidelinesSetting = {u"showsguidelines", true};
constexpr BoolSetting kSkimbarSetting = {u"showstimelineskimbar", true};
constexpr BoolSetting kOnboardWindowSetting = {u"showsOnboardWindowAtLaunch", true};
constexpr BoolSetting kRetinaArtworkAlertSetting = {u"showsretinaartworkalert", true};
constexpr BoolSetting kSetupFirstAlertSetting = {u"showssetupfirstalert", true};
constexpr BoolSetting kChangeOtherAnimationsAlertSetting = {u"showschangeotheranimationsstatealert",
                                                            true};
constexpr BoolSetting kUsesViewsSetting = {u"generatedCodeUsesViews", true};
constexpr BoolSetting kIsIOSSetting = {u"generatedCodeIsIOS", true};
constexpr BoolSetting kUsesSwiftSetting = {u"generatedCodeUsesSwift", true};
constexpr BoolSetting kIncludesImagesSetting = {u"generatedCodeIncludesImages", true};
constexpr BoolSetting kClipsToBoundsSetting = {u"generatedCodeClipsToBounds", false};
constexpr BoolSetting kCleansImageDirectorySetting = {u"generatedCodeCleansImageDirectory", false};
constexpr BoolSetting kTakesParametersSetting = {u"generatedCodeTakesParameters", false};
constexpr BoolSetting kIncreasesContrastSetting = {u"increasesContrast", false};
constexpr BoolSetting kReducesMotionSetting = {u"reducesMotion", false};

constexpr BoolSetting kBoolSettings[] = {
    kTweenOnSetting,
    kGuidelinesSetting,
    kSkimbarSetting,
    kOnboardWindowSetting,
    kRetinaArtworkAlertSetting,
    kSetupFirstAlertSetting,
    kUsesViewsSetting,
    kIsIOSSetting,
    kUsesSwiftSetting,
    kIncludesImagesSetting,
    kClipsToBoundsSetting,
    kCleansImageDirectorySetting,
    kTakesParametersSetting,
    kChangeOtherAnimationsAlertSetting,
    kIncreasesContrastSetting,
    kReducesMotionSetting,
};

const QString kLinkFXFactorKey = u"linkfxfactor"_s;
const QString kLastWindowSizeKey = u"lastWindowSize"_s;
const QString kThemeKey = u"appearance"_s;
const QStringList kThemeNames = {u"system"_s, u"light"_s, u"dark"_s};  // by PCAppTheme
const QString kPlaybackEndKey = u"playbackEnd"_s;
const QStringList kPlaybackEndNames = {u"playOn"_s, u"stop"_s, u"loop"_s};  // by PCPlaybackEnd
constexpr float kFixedLinkFXFactor = 1;
constexpr QSizeF kDefaultWindowSize(1000, 600);

bool read(const BoolSetting& setting) {
    const QVariant value = UserDefaults::standard().value(setting.keyText());
    return value.isValid() ? value.toBool() : setting.byDefault;
}

void write(const QString& key, const QVariant& value) {
    UserDefaults::standard().setValue(key, value);
    UserDefaults::standard().synchronize();
}

void write(const BoolSetting& setting, bool value) {
    write(setting.keyText(), value);
}

QString textFromSize(QSizeF size) {
    return QString::fromStdString(textFromPoint({size.width(), size.height()}));
}

}  // namespace

void PCAppPreferences::registerDefaults() {
    UserDefaults& defaults = UserDefaults::standard();
    for (const BoolSetting& setting : kBoolSettings) {
        defaults.registerDefault(setting.keyText(), setting.byDefault);
    }
    defaults.registerDefault(kLinkFXFactorKey, kFixedLinkFXFactor);
    defaults.registerDefault(kLastWindowSizeKey, textFromSize(kDefaultWindowSize));
    defaults.registerDefault(kThemeKey, kThemeNames.first());
    defaults.registerDefault(kPlaybackEndKey, kPlaybackEndNames.first());
}

float PCAppPreferences::linkFXFactor() {
    return kFixedLinkFXFactor;
}

void PCAppPreferences::setLinkFXFactor(float factor) {
    write(kLinkFXFactorKey, factor);
}

float PCAppPreferences::storedLinkFXFactor() {
    const QVariant value = UserDefaults::standard().value(kLinkFXFactorKey);
    return value.isValid() ? std::clamp(value.toFloat(), 0.0F, 5.0F) : kFixedLinkFXFactor;
}

QSizeF PCAppPreferences::lastWindowSize() {
    const QString text = UserDefaults::standard().value(kLastWindowSizeKey).toString();
    const auto size = pointFromText(text.toStdString());
    return size && size->x() > 0 && size->y() > 0 ? QSizeF(size->x(), size->y())
                                                  : kDefaultWindowSize;
}

void PCAppPreferences::setlastWindowSize(QSizeF size) {
    UserDefaults::standard().setValue(kLastWindowSizeKey, textFromSize(size));
}

bool PCAppPreferences::tweenOn() {
    return read(kTweenOnSetting);
}

void PCAppPreferences::setTweenOn(bool on) {
    write(kTweenOnSetting, on);
}

bool PCAppPreferences::showsGuidelines() {
    return read(kGuidelinesSetting);
}

void PCAppPreferences::setShowsGuidelines(bool shows) {
    write(kGuidelinesSetting, shows);
}

bool PCAppPreferences::showsTimelineSkimbar() {
    return read(kSkimbarSetting);
}

void PCAppPreferences::setShowsTimelineSkimbar(bool shows) {
    write(kSkimbarSetting, shows);
}

bool PCAppPreferences::showsOnboardWindowAtLaunch() {
    return read(kOnboardWindowSetting);
}

void PCAppPreferences::setShowsOnnboardWindowAtLaunch(bool shows) {
    write(kOnboardWindowSetting, shows);
}

PCAppTheme PCAppPreferences::theme() {
    const QString name = UserDefaults::standard().value(kThemeKey).toString();
    return static_cast<PCAppTheme>(std::max<qsizetype>(0, kThemeNames.indexOf(name)));
}

void PCAppPreferences::setTheme(PCAppTheme theme) {
    write(kThemeKey, kThemeNames[static_cast<int>(theme)]);
}

PCPlaybackEnd PCAppPreferences::playbackEnd() {
    const QString name = UserDefaults::standard().value(kPlaybackEndKey).toString();
    return static_cast<PCPlaybackEnd>(std::max<qsizetype>(0, kPlaybackEndNames.indexOf(name)));
}

void PCAppPreferences::setPlaybackEnd(PCPlaybackEnd end) {
    write(kPlaybackEndKey, kPlaybackEndNames[static_cast<int>(end)]);
}

bool PCAppPreferences::increasesContrast() {
    return read(kIncreasesContrastSetting);
}

void PCAppPreferences::setIncreasesContrast(bool increases) {
    write(kIncreasesContrastSetting, increases);
}

bool PCAppPreferences::reducesMotion() {
    return read(kReducesMotionSetting);
}

void PCAppPreferences::setReducesMotion(bool reduces) {
    write(kReducesMotionSetting, reduces);
}

bool PCAppPreferences::showsRetinaArtworkAlert() {
    return read(kRetinaArtworkAlertSetting);
}

void PCAppPreferences::setShowsRetinaArtworkAlert(bool shows) {
    write(kRetinaArtworkAlertSetting, shows);
}

bool PCAppPreferences::showsSetupFirstAlert() {
    return read(kSetupFirstAlertSetting);
}

void PCAppPreferences::setShowsSetupFirstAlert(bool shows) {
    write(kSetupFirstAlertSetting, shows);
}

bool PCAppPreferences::showsChangeOtherAnimationsStateAlert() {
    return read(kChangeOtherAnimationsAlertSetting);
}

void PCAppPreferences::setShowsChangeOtherAnimationsStateAlert(bool shows) {
    write(kChangeOtherAnimationsAlertSetting, shows);
}

bool PCAppPreferences::generatedCodeUsesViews() {
    return read(kUsesViewsSetting);
}

void PCAppPreferences::setGeneratedCodeUsesViews(bool value) {
    write(kUsesViewsSetting, value);
}

bool PCAppPreferences::generatedCodeIsIOS() {
    return read(kIsIOSSetting);
}

void PCAppPreferences::setGeneratedCodeIsIOS(bool value) {
    write(kIsIOSSetting, value);
}

bool PCAppPreferences::generatedCodeUsesSwift() {
    return read(kUsesSwiftSetting);
}

void PCAppPreferences::setGeneratedCodeUsesSwift(bool value) {
    write(kUsesSwiftSetting, value);
}

bool PCAppPreferences::generatedCodeIncludesImages() {
    return read(kIncludesImagesSetting);
}

void PCAppPreferences::setGeneratedCodeIncludesImages(bool value) {
    write(kIncludesImagesSetting, value);
}

bool PCAppPreferences::generatedCodeClipsToBounds() {
    return read(kClipsToBoundsSetting);
}

void PCAppPreferences::setGeneratedCodeClipsToBounds(bool value) {
    write(kClipsToBoundsSetting, value);
}

bool PCAppPreferences::generatedCodeCleansImageDirectory() {
    return read(kCleansImageDirectorySetting);
}

void PCAppPreferences::setGeneratedCodeCleansImageDirectory(bool value) {
    write(kCleansImageDirectorySetting, value);
}

bool PCAppPreferences::generatedCodeTakesParameters() {
    return read(kTakesParametersSetting);
}

void PCAppPreferences::setGeneratedCodeTakesParameters(bool value) {
    write(kTakesParametersSetting, value);
}

}  // namespace tweenery

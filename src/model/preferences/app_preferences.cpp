#include "model/preferences/app_preferences.h"

#include "base/point_text.h"
#include "base/user_defaults.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

struct BoolSetting {
    const char16_t* key;
    bool byDefault;

    QString keyText() const { return QString::fromUtf16(key); }
};

constexpr BoolSetting tweenOnSetting = {u"tweenon", true};
constexpr BoolSetting guidelinesSetting = {u"showsguidelines", true};
constexpr BoolSetting skimbarSetting = {u"showstimelineskimbar", true};
constexpr BoolSetting onboardWindowSetting = {u"showsOnboardWindowAtLaunch", true};
constexpr BoolSetting retinaArtworkAlertSetting = {u"showsretinaartworkalert", true};
constexpr BoolSetting setupFirstAlertSetting = {u"showssetupfirstalert", true};
constexpr BoolSetting changeOtherAnimationsAlertSetting = {u"showschangeotheranimationsstatealert",
                                                           true};
constexpr BoolSetting usesViewsSetting = {u"generatedCodeUsesViews", true};
constexpr BoolSetting isIOSSetting = {u"generatedCodeIsIOS", true};
constexpr BoolSetting usesSwiftSetting = {u"generatedCodeUsesSwift", true};
constexpr BoolSetting includesImagesSetting = {u"generatedCodeIncludesImages", true};
constexpr BoolSetting clipsToBoundsSetting = {u"generatedCodeClipsToBounds", false};
constexpr BoolSetting cleansImageDirectorySetting = {u"generatedCodeCleansImageDirectory", false};
constexpr BoolSetting takesParametersSetting = {u"generatedCodeTakesParameters", false};
constexpr BoolSetting increasesContrastSetting = {u"increasesContrast", false};
constexpr BoolSetting reducesMotionSetting = {u"reducesMotion", false};

constexpr BoolSetting boolSettings[] = {
    tweenOnSetting,
    guidelinesSetting,
    skimbarSetting,
    onboardWindowSetting,
    retinaArtworkAlertSetting,
    setupFirstAlertSetting,
    usesViewsSetting,
    isIOSSetting,
    usesSwiftSetting,
    includesImagesSetting,
    clipsToBoundsSetting,
    cleansImageDirectorySetting,
    takesParametersSetting,
    changeOtherAnimationsAlertSetting,
    increasesContrastSetting,
    reducesMotionSetting,
};

const QString linkFXFactorKey = u"linkfxfactor"_s;
const QString lastWindowSizeKey = u"lastWindowSize"_s;
const QString themeKey = u"appearance"_s;
const QStringList themeNames = {u"system"_s, u"light"_s, u"dark"_s};  // by PCAppTheme
constexpr float fixedLinkFXFactor = 1;
constexpr QSizeF defaultWindowSize(1000, 600);

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
    for (const BoolSetting& setting : boolSettings) {
        defaults.registerDefault(setting.keyText(), setting.byDefault);
    }
    defaults.registerDefault(linkFXFactorKey, fixedLinkFXFactor);
    defaults.registerDefault(lastWindowSizeKey, textFromSize(defaultWindowSize));
    defaults.registerDefault(themeKey, themeNames.first());
}

float PCAppPreferences::linkFXFactor() {
    return fixedLinkFXFactor;
}

void PCAppPreferences::setLinkFXFactor(float factor) {
    write(linkFXFactorKey, factor);
}

float PCAppPreferences::storedLinkFXFactor() {
    const QVariant value = UserDefaults::standard().value(linkFXFactorKey);
    return value.isValid() ? std::clamp(value.toFloat(), 0.0F, 5.0F) : fixedLinkFXFactor;
}

QSizeF PCAppPreferences::lastWindowSize() {
    const QString text = UserDefaults::standard().value(lastWindowSizeKey).toString();
    const auto size = pointFromText(text.toStdString());
    return size && size->x() > 0 && size->y() > 0 ? QSizeF(size->x(), size->y())
                                                  : defaultWindowSize;
}

void PCAppPreferences::setlastWindowSize(QSizeF size) {
    UserDefaults::standard().setValue(lastWindowSizeKey, textFromSize(size));
}

bool PCAppPreferences::tweenOn() {
    return read(tweenOnSetting);
}

void PCAppPreferences::setTweenOn(bool on) {
    write(tweenOnSetting, on);
}

bool PCAppPreferences::showsGuidelines() {
    return read(guidelinesSetting);
}

void PCAppPreferences::setShowsGuidelines(bool shows) {
    write(guidelinesSetting, shows);
}

bool PCAppPreferences::showsTimelineSkimbar() {
    return read(skimbarSetting);
}

void PCAppPreferences::setShowsTimelineSkimbar(bool shows) {
    write(skimbarSetting, shows);
}

bool PCAppPreferences::showsOnboardWindowAtLaunch() {
    return read(onboardWindowSetting);
}

void PCAppPreferences::setShowsOnnboardWindowAtLaunch(bool shows) {
    write(onboardWindowSetting, shows);
}

PCAppTheme PCAppPreferences::theme() {
    const QString name = UserDefaults::standard().value(themeKey).toString();
    return static_cast<PCAppTheme>(std::max<qsizetype>(0, themeNames.indexOf(name)));
}

void PCAppPreferences::setTheme(PCAppTheme theme) {
    write(themeKey, themeNames[static_cast<int>(theme)]);
}

bool PCAppPreferences::increasesContrast() {
    return read(increasesContrastSetting);
}

void PCAppPreferences::setIncreasesContrast(bool increases) {
    write(increasesContrastSetting, increases);
}

bool PCAppPreferences::reducesMotion() {
    return read(reducesMotionSetting);
}

void PCAppPreferences::setReducesMotion(bool reduces) {
    write(reducesMotionSetting, reduces);
}

bool PCAppPreferences::showsRetinaArtworkAlert() {
    return read(retinaArtworkAlertSetting);
}

void PCAppPreferences::setShowsRetinaArtworkAlert(bool shows) {
    write(retinaArtworkAlertSetting, shows);
}

bool PCAppPreferences::showsSetupFirstAlert() {
    return read(setupFirstAlertSetting);
}

void PCAppPreferences::setShowsSetupFirstAlert(bool shows) {
    write(setupFirstAlertSetting, shows);
}

bool PCAppPreferences::showsChangeOtherAnimationsStateAlert() {
    return read(changeOtherAnimationsAlertSetting);
}

void PCAppPreferences::setShowsChangeOtherAnimationsStateAlert(bool shows) {
    write(changeOtherAnimationsAlertSetting, shows);
}

bool PCAppPreferences::generatedCodeUsesViews() {
    return read(usesViewsSetting);
}

void PCAppPreferences::setGeneratedCodeUsesViews(bool value) {
    write(usesViewsSetting, value);
}

bool PCAppPreferences::generatedCodeIsIOS() {
    return read(isIOSSetting);
}

void PCAppPreferences::setGeneratedCodeIsIOS(bool value) {
    write(isIOSSetting, value);
}

bool PCAppPreferences::generatedCodeUsesSwift() {
    return read(usesSwiftSetting);
}

void PCAppPreferences::setGeneratedCodeUsesSwift(bool value) {
    write(usesSwiftSetting, value);
}

bool PCAppPreferences::generatedCodeIncludesImages() {
    return read(includesImagesSetting);
}

void PCAppPreferences::setGeneratedCodeIncludesImages(bool value) {
    write(includesImagesSetting, value);
}

bool PCAppPreferences::generatedCodeClipsToBounds() {
    return read(clipsToBoundsSetting);
}

void PCAppPreferences::setGeneratedCodeClipsToBounds(bool value) {
    write(clipsToBoundsSetting, value);
}

bool PCAppPreferences::generatedCodeCleansImageDirectory() {
    return read(cleansImageDirectorySetting);
}

void PCAppPreferences::setGeneratedCodeCleansImageDirectory(bool value) {
    write(cleansImageDirectorySetting, value);
}

bool PCAppPreferences::generatedCodeTakesParameters() {
    return read(takesParametersSetting);
}

void PCAppPreferences::setGeneratedCodeTakesParameters(bool value) {
    write(takesParametersSetting, value);
}

}  // namespace tweenery

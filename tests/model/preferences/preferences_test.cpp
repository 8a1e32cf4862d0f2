#include <gtest/gtest.h>

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <limits>

#include "base/errors.h"
#include "base/user_defaults.h"
#include "model/preferences/app_preferences.h"
#include "model/preferences/project_preferences.h"
#include "model/preferences/project_version.h"
#include "model/properties/easing.h"
#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

template <typename T>
std::shared_ptr<T> decoded(const QByteArray& archive) {
    const KeyedUnarchiver unarchiver(archive, u"entry"_s);
    return T::decode(unarchiver.root());
}

template <typename T>
std::shared_ptr<T> reread(const T& object) {
    return decoded<T>(KeyedArchiver::archivedDataWithRootObject(object));
}

/// An archive of the class with the keys that a function writes.
template <typename T>
QByteArray archiveWith(const std::function<void(KeyedEncoder&)>& encode) {
    struct Stored : T {
        std::function<void(KeyedEncoder&)> encode;
        void encodeWithCoder(KeyedEncoder& coder) const override { encode(coder); }
    } stored;
    stored.encode = encode;
    return KeyedArchiver::archivedDataWithRootObject(stored);
}

class PreferencesTest : public testing::Test {
 protected:
    PreferencesTest() { UserDefaults::useMemory(); }
    ~PreferencesTest() override { UserDefaults::useMemory(); }
};

TEST_F(PreferencesTest, TheUsersChoicesHaveDefaultsAndReachTheFile) {
    struct Case {
        const char16_t* key;
        bool byDefault;
        bool (*get)();
        void (*set)(bool);
    };
    using P = PCAppPreferences;
    const std::vector<Case> cases = {
        {u"tweenon", true, P::tweenOn, P::setTweenOn},
        {u"showsguidelines", true, P::showsGuidelines, P::setShowsGuidelines},
        {u"showsretinaartworkalert", true, P::showsRetinaArtworkAlert,
         P::setShowsRetinaArtworkAlert},
        {u"showstimelineskimbar", true, P::showsTimelineSkimbar, P::setShowsTimelineSkimbar},
        {u"showssetupfirstalert", true, P::showsSetupFirstAlert, P::setShowsSetupFirstAlert},
        {u"showschangeotheranimationsstatealert", true, P::showsChangeOtherAnimationsStateAlert,
         P::setShowsChangeOtherAnimationsStateAlert},
        {u"showsOnboardWindowAtLaunch", true, P::showsOnboardWindowAtLaunch,
         P::setShowsOnnboardWindowAtLaunch},
        {u"generatedCodeUsesViews", true, P::generatedCodeUsesViews, P::setGeneratedCodeUsesViews},
        {u"generatedCodeIsIOS", true, P::generatedCodeIsIOS, P::setGeneratedCodeIsIOS},
        {u"generatedCodeIncludesImages", true, P::generatedCodeIncludesImages,
         P::setGeneratedCodeIncludesImages},
        {u"generatedCodeCleansImageDirectory", false, P::generatedCodeCleansImageDirectory,
         P::setGeneratedCodeCleansImageDirectory},
        {u"generatedCodeTakesParameters", false, P::generatedCodeTakesParameters,
         P::setGeneratedCodeTakesParameters},
        {u"generatedCodeUsesSwift", true, P::generatedCodeUsesSwift, P::setGeneratedCodeUsesSwift},
        {u"generatedCodeClipsToBounds", false, P::generatedCodeClipsToBounds,
         P::setGeneratedCodeClipsToBounds},
    };
    const QTemporaryDir directory;
    const QString path = directory.filePath(u"defaults.ini"_s);
    for (const Case& c : cases) {
        const QString key = QString::fromUtf16(c.key);
        SCOPED_TRACE(qPrintable(key));
        UserDefaults::useMemory();
        EXPECT_EQ(c.get(), c.byDefault);
        PCAppPreferences::registerDefaults();
        EXPECT_EQ(UserDefaults::standard().value(key), QVariant(c.byDefault));
        UserDefaults::useSettingsFile(path);
        c.set(!c.byDefault);
        EXPECT_EQ(c.get(), !c.byDefault);
        EXPECT_EQ(QSettings(path, QSettings::IniFormat).value(key).toBool(), !c.byDefault);
    }
}

TEST_F(PreferencesTest, TheWindowSizeIsTextAndIsNotWrittenAtOnce) {
    struct Case {
        QString text;
        QSizeF size;
    };
    const std::vector<Case> cases = {
        {u"{1000, 600}"_s, {1000, 600}}, {u"{812.5, 401}"_s, {812.5, 401}},
        {u"large"_s, {1000, 600}},       {u"{0, 600}"_s, {1000, 600}},
        {u"{-5, -5}"_s, {1000, 600}},    {u"{nan, inf}"_s, {1000, 600}},
    };
    for (const Case& c : cases) {
        UserDefaults::standard().setValue(u"lastWindowSize"_s, c.text);
        EXPECT_EQ(PCAppPreferences::lastWindowSize(), c.size) << qPrintable(c.text);
    }

    const QTemporaryDir directory;
    const QString path = directory.filePath(u"defaults.ini"_s);
    UserDefaults::useSettingsFile(path);
    PCAppPreferences::setlastWindowSize({640, 480});
    EXPECT_FALSE(QFile::exists(path));
    PCAppPreferences::setLinkFXFactor(0.25F);
    EXPECT_EQ(PCAppPreferences::linkFXFactor(), 1);
    EXPECT_EQ(QSettings(path, QSettings::IniFormat).value(u"lastWindowSize"_s), u"{640, 480}"_s);
}

/// One row for each stored field: how to change it, and how to compare it.
struct Field {
    const char* name;
    std::function<void(PCProjectPreferences&)> change;
    std::function<bool(const PCProjectPreferences&, const PCProjectPreferences&)> isSame;
};

#define FIELD(getter, setter, value)                                                        \
    Field {                                                                                 \
#getter, [](PCProjectPreferences &                                                  \
                    p) { p.setter(value); }, [](const PCProjectPreferences& a,              \
                                                const PCProjectPreferences&                 \
                                                    b) { return a.getter() == b.getter(); } \
    }

const std::vector<Field>& fields() {
    static const std::vector<Field> all = {
        FIELD(timelineZoomLevel, setTimelineZoomLevel, 3.5F),
        FIELD(canvasZoomLevel, setCanvasZoomLevel, 0.05F),
        FIELD(canvasScrollOffset, setCanvasScrollOffset, QPointF(-12, 8.5)),
        FIELD(navigatorPaneVisible, setNavigatorPaneVisible, false),
        FIELD(navigatorPaneWidth, setNavigatorPaneWidth, 220),
        FIELD(utilitiesPaneVisible, setUtilitiesPaneVisible, false),
        FIELD(timelinePaneHeight, setTimelinePaneHeight, 0),
        FIELD(windowSize, setWindowSize, QSizeF(1180, 720)),
        FIELD(windowPosition, setWindowPosition, QPointF(-1900, 80)),
        FIELD(timelinePlayheadPosition, setTimelinePlayheadPosition, 400),
        FIELD(selectedAnimationIdentifier, setSelectedAnimationIdentifier,
              u"6E5DD218-3E41-4086-8EB9-22670A476421"_s),
        FIELD(timelineScrollOffset, setTimelineScrollOffset, QPointF(30, 0)),
        FIELD(newProject, setNewProject, false),
        FIELD(generatedCodeUsesViews, setGeneratedCodeUsesViews, false),
        FIELD(generatedCodeIsIOS, setGeneratedCodeIsIOS, false),
        FIELD(generatedCodeUsesSwift, setGeneratedCodeUsesSwift, false),
        FIELD(generatedCodeSwiftDialect, setGeneratedCodeSwiftDialect, SwiftDialect::First),
        FIELD(generatedCodeIncludesImages, setGeneratedCodeIncludesImages, false),
        FIELD(generatedCodeClipsToBounds, setGeneratedCodeClipsToBounds, true),
        FIELD(generatedCodeCleansImageDirectory, setGeneratedCodeCleansImageDirectory, true),
        FIELD(generatedCodeTakesParameters, setGeneratedCodeTakesParameters, true),
        FIELD(defaultEasingMode, setDefaultEasingMode, PCEasingModeEaseInOut),
    };
    return all;
}
#undef FIELD

TEST_F(PreferencesTest, EachSetterMarksARealChangeAndTheFieldSurvivesStorage) {
    const PCProjectPreferences untouched;
    for (const Field& field : fields()) {
        SCOPED_TRACE(field.name);
        UserDefaults::useMemory();
        PCProjectPreferences preferences;
        EXPECT_FALSE(preferences.modified());
        field.change(preferences);
        EXPECT_TRUE(preferences.modified());
        preferences.setModified(false);
        field.change(preferences);
        EXPECT_FALSE(preferences.modified()) << "the value was the same";
        EXPECT_FALSE(field.isSame(preferences, untouched));

        const auto stored = reread(preferences);
        EXPECT_TRUE(stored->modified());
        for (const Field& other : fields()) {
            EXPECT_TRUE(other.isSame(*stored, preferences)) << other.name;
        }
    }
}

TEST_F(PreferencesTest, AMoveTooSmallForQtsComparisonIsAChange) {
    PCProjectPreferences preferences;
    preferences.setWindowPosition({1000, 1000});
    preferences.setModified(false);
    preferences.setWindowPosition({1000, std::nextafter(1000, 2000)});
    EXPECT_TRUE(preferences.modified());
}

// No file could hold them: a save would fail by what a window computed badly.
TEST_F(PreferencesTest, WhatIsNotFiniteIsIgnored) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    PCProjectPreferences preferences;
    preferences.setTimelineZoomLevel(static_cast<float>(nan));
    preferences.setCanvasZoomLevel(static_cast<float>(infinity));
    preferences.setCanvasScrollOffset({nan, 0});
    preferences.setTimelineScrollOffset({0, -infinity});
    preferences.setNavigatorPaneWidth(static_cast<float>(-infinity));
    preferences.setTimelinePaneHeight(static_cast<float>(nan));
    preferences.setWindowSize({infinity, 5});
    preferences.setWindowPosition({5, nan});
    EXPECT_FALSE(preferences.modified());
    EXPECT_NO_THROW(KeyedArchiver::archivedDataWithRootObject(preferences));
}

TEST_F(PreferencesTest, ExportOptionsAreTheStartOfTheNextProjectButNotOfOldOnes) {
    PCProjectPreferences first;
    const QByteArray storedSwift = KeyedArchiver::archivedDataWithRootObject(first);
    first.setGeneratedCodeUsesSwift(false);
    first.setGeneratedCodeTakesParameters(true);
    first.setWindowSize({900, 500});

    const PCProjectPreferences next;
    EXPECT_FALSE(next.generatedCodeUsesSwift());
    EXPECT_TRUE(next.generatedCodeTakesParameters());
    EXPECT_EQ(next.windowSize(), QSizeF(900, 500));

    const auto old = decoded<PCProjectPreferences>(storedSwift);
    EXPECT_TRUE(old->generatedCodeUsesSwift());
    EXPECT_FALSE(PCAppPreferences::generatedCodeUsesSwift()) << "reading writes nothing";
    EXPECT_EQ(PCAppPreferences::lastWindowSize(), QSizeF(900, 500));
}

TEST_F(PreferencesTest, MissingKeysReadAsZeroExceptForThoseThatCameLater) {
    const auto p =
        decoded<PCProjectPreferences>(archiveWith<PCProjectPreferences>([](KeyedEncoder&) {}));
    EXPECT_EQ(p->canvasZoomLevel(), 1);
    EXPECT_EQ(p->generatedCodeSwiftDialect(), SwiftDialect::First);
    EXPECT_FALSE(KeyedArchiver::archivedDataWithRootObject(*p).contains("SwiftDialect"))
        << "what others wrote stays as it is";
    EXPECT_EQ(p->windowSize(), QSizeF(800, 400));
    EXPECT_EQ(p->windowPosition(), QPointF(800, 400));
    EXPECT_EQ(p->timelineZoomLevel(), 0);
    EXPECT_EQ(p->navigatorPaneWidth(), 0);
    EXPECT_FALSE(p->navigatorPaneVisible());
    EXPECT_FALSE(p->newProject());
    EXPECT_FALSE(p->generatedCodeIsIOS());
    EXPECT_TRUE(p->selectedAnimationIdentifier().isNull());
    EXPECT_EQ(p->defaultEasingMode(), PCEasingModeLinear);
}

TEST_F(PreferencesTest, AFileCannotHarmTheWindow) {
    const auto p =
        decoded<PCProjectPreferences>(archiveWith<PCProjectPreferences>([](KeyedEncoder& coder) {
            coder.encodeFloat("timelineZoomLevel", 1e30F);
            coder.encodeFloat("canvasZoomLevel", -3);
            coder.encodeFloat("navigatorPaneWidth", -1);
            coder.encodeFloat("timelinePaneHeight", 1e9F);
            coder.encodeSize("windowSize", {1e300, -5});
            coder.encodePoint("windowPosition", {-1e300, 1e300});
            coder.encodePoint("canvasScrollOffset", {1e300, 0});
            coder.encodeInt("timelinePlayheadPosition", -400);
        }));
    EXPECT_EQ(p->timelineZoomLevel(), 16);
    EXPECT_EQ(p->canvasZoomLevel(), 0);
    EXPECT_EQ(p->navigatorPaneWidth(), 0);
    EXPECT_EQ(p->timelinePaneHeight(), 32767);
    EXPECT_EQ(p->windowSize(), QSizeF(32767, 0));
    EXPECT_EQ(p->windowPosition(), QPointF(-32767, 32767));
    EXPECT_EQ(p->canvasScrollOffset(), QPointF(1e9, 0));
    EXPECT_EQ(p->timelinePlayheadPosition(), 0);
}

TEST_F(PreferencesTest, WrongTypesAndClassesAreRefused) {
    using P = PCProjectPreferences;
    const auto refuses = [](const QByteArray& archive) {
        EXPECT_THROW(decoded<P>(archive), InputError);
    };
    refuses(archiveWith<P>([](KeyedEncoder& c) { c.encodeString("newProject", u"yes"_s); }));
    refuses(archiveWith<P>([](KeyedEncoder& c) { c.encodeString("windowSize", u"wide"_s); }));
    refuses(archiveWith<P>([](KeyedEncoder& c) { c.encodeInt("defaultEasingMode", 3); }));
    refuses(archiveWith<P>([](KeyedEncoder& c) { c.encodeStrings("timelineZoomLevel", {}); }));
    refuses(KeyedArchiver::archivedDataWithRootObject(PCProjectVersion()));
    EXPECT_THROW(decoded<PCProjectVersion>(KeyedArchiver::archivedDataWithRootObject(P())),
                 InputError);
}

TEST_F(PreferencesTest, InstantDoesNotSurviveStorageAndUnknownModesAreLinear) {
    for (int64_t number = -2; number <= 8; ++number) {
        SCOPED_TRACE(number);
        const PCEasingMode mode{number};
        PCProjectPreferences preferences;
        preferences.setDefaultEasingMode(mode);
        EXPECT_EQ(preferences.defaultEasingMode(), mode);
        EXPECT_EQ(reread(preferences)->defaultEasingMode(),
                  mode >= 0 && mode <= 6 ? mode : PCEasingModeLinear);
    }
    EXPECT_EQ(stringFromEasingMode(PCEasingModeAnticOver), u"anticOver"_s);
    EXPECT_EQ(stringFromEasingMode(PCEasingMode{7}), u"linear"_s);
    EXPECT_EQ(easingModeFromString({}), PCEasingModeLinear);
    for (size_t i = 0; i < easingModes().size(); ++i) {
        EXPECT_EQ(easingModes()[i].mode, static_cast<int64_t>(i)) << "rows stand by number";
    }
}

TEST_F(PreferencesTest, ReadsThoseOfAStoredPackage) {
    QFile file(packagePath(u"Bounce"_s) + u"/preferences"_s);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const auto p = decoded<PCProjectPreferences>(file.readAll());
    EXPECT_EQ(p->timelineZoomLevel(), 3);
    EXPECT_EQ(p->canvasZoomLevel(), 1.25F);
    EXPECT_EQ(p->canvasScrollOffset(), QPointF(-12, 8.5));
    EXPECT_EQ(p->windowSize(), QSizeF(1180, 720));
    EXPECT_EQ(p->windowPosition(), QPointF(120, 80));
    EXPECT_EQ(p->timelinePlayheadPosition(), 400);
    EXPECT_EQ(p->selectedAnimationIdentifier(), u"6E5DD218-3E41-4086-8EB9-22670A476421"_s);
    EXPECT_EQ(p->defaultEasingMode(), PCEasingModeEaseInOut);
    EXPECT_TRUE(p->utilitiesPaneVisible());
    EXPECT_FALSE(p->newProject());
}

}  // namespace
}  // namespace tweenery::test

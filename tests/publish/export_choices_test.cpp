#include <gtest/gtest.h>

#include "publish/export_scene.h"
#include "publish/export_words.h"
#include "support/printers.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;

// "Objective-C Mac …": what is on; a comma where one is not available.
QString shown(const PCProjectPreferences& preferences) {
    QStringList words;
    for (const ExportToggle& toggle : exportToggles()) {
        const QString label = QString::fromLatin1(toggle.label);
        if (toggle.isOn(preferences)) { words << label; }
        if (!toggle.isAvailable(preferences)) { words << u"no "_s + label; }
    }
    return words.join(u", "_s);
}

TEST(ExportToggles, APressShowsAndStores) {
    ExportScene scene;
    PCProjectPreferences& preferences = scene.project->preferences();
    preferences.setGeneratedCodeUsesSwift(false);
    preferences.setGeneratedCodeIsIOS(false);
    preferences.setGeneratedCodeClipsToBounds(false);
    preferences.setGeneratedCodeIncludesImages(true);
    preferences.setGeneratedCodeCleansImageDirectory(false);
    const int64_t edits = scene.project->undoManager().changeCount();
    struct Step {
        const char* press;
        QString shown;
    };
    const std::vector<Step> steps{
        {"Swift", u"Swift, Mac, Unbounded, Include Images"_s},
        {"Swift", u"Swift, Mac, Unbounded, Include Images"_s},
        {"iOS", u"Swift, iOS, Unbounded, Include Images"_s},
        {"Clips To Bounds", u"Swift, iOS, Clips To Bounds, Include Images"_s},
        {"Delete Old Images", u"Swift, iOS, Clips To Bounds, Include Images, Delete Old Images"_s},
        {"Include Images", u"Swift, iOS, Clips To Bounds, no Delete Old Images"_s},
        {"Delete Old Images", u"Swift, iOS, Clips To Bounds, no Delete Old Images"_s},
        {"Include Images", u"Swift, iOS, Clips To Bounds, Include Images"_s},
        {"Delete Old Images", u"Swift, iOS, Clips To Bounds, Include Images, Delete Old Images"_s},
        {"Delete Old Images", u"Swift, iOS, Clips To Bounds, Include Images"_s},
        {"Unbounded", u"Swift, iOS, Unbounded, Include Images"_s},
        {"Mac", u"Swift, Mac, Unbounded, Include Images"_s},
        {"Objective-C", u"Objective-C, Mac, Unbounded, Include Images"_s},
    };
    for (const Step& step : steps) {
        scene.toggle(step.press).press(preferences);
        EXPECT_EQ(shown(preferences), step.shown) << step.press;
    }
    const ExportChoices choices = ExportChoices::fromPreferences(*scene.project);
    EXPECT_TRUE(!choices.usingSwift && choices.options.generateForMac &&
                !choices.options.clipsToBounds && choices.options.includesImages);
    EXPECT_EQ(scene.project->undoManager().changeCount(), edits);
}

TEST(ExportWords, SayWhatIsWrittenAndDeleted) {
    ExportForecast forecast;
    forecast.sources = {u"CardView.h"_s, u"CardView.m"_s};
    forecast.imagesCount = 9;
    EXPECT_EQ(wordsOfForecast(forecast),
              u"Writes CardView.h, CardView.m and 9 images into the folder you choose.");
    forecast.sources = {u"CardView.swift"_s};
    forecast.imagesCount = 1;
    forecast.lastDirectory = u"/app"_s;
    EXPECT_EQ(wordsOfForecast(forecast),
              u"Writes CardView.swift and 1 image into /app, or the folder you choose.");
    forecast.imagesCount = 0;
    EXPECT_EQ(wordsOfForecast(forecast),
              u"Writes CardView.swift into /app, or the folder you choose.");

    ExportChoices choices;
    choices.options.cleansImageDirectory = true;
    forecast.oldImagesCount = 12;
    EXPECT_EQ(wordsOfDeletion(forecast, choices),
              u"Deletes what is in /app/images first: 12 files.");
    choices.options.includesImages = false;
    EXPECT_EQ(wordsOfDeletion(forecast, choices), QString());

    ExportOutcome outcome;
    outcome.directory = u"/app"_s;
    outcome.files.paths = {u"CardView.swift"_s, u"images/a.png"_s};
    EXPECT_EQ(wordsOfResult(outcome), u"Exported 1 class and 1 image");
    for (int i = 0; i < 12; ++i) {
        outcome.files.failures.push_back({u"images/%1.png"_s.arg(i), u"is full"_s});
    }
    const Alert alert = alertOfFailures(outcome, u"Card"_s);
    EXPECT_EQ(alert.message, u"12 Files Could Not Be Written"_s.replace(u'F', u'f'));
    EXPECT_EQ(alert.informativeText.count(u'\n'), 8) << "eight names, and how many more";
}

TEST(AnimationLength, HasOneDecimalUpToAHundredSeconds) {
    const std::vector<std::pair<AnimationLength, QString>> cases{
        {{0, false}, u"0.0 s"_s},      {{1200, false}, u"1.2 s"_s}, {{10250, false}, u"10.2 s"_s},
        {{99000, false}, u"99.0 s"_s}, {{99040, false}, u"99 s"_s}, {{123999, false}, u"123 s"_s},
        {{1000, true}, u"∞"_s},
    };
    for (const auto& [length, text] : cases) {
        EXPECT_EQ(length.text(), text);
    }
}

TEST(ScaleToFit, NeverEnlargesAndLeavesRoom) {
    EXPECT_DOUBLE_EQ(scaleToFit({50, 50}, {500, 400}), 1);
    EXPECT_DOUBLE_EQ(scaleToFit({950, 100}, {500, 400}), 0.5);
    EXPECT_DOUBLE_EQ(scaleToFit({100, 1550}, {500, 400}), 0.25);
    EXPECT_DOUBLE_EQ(scaleToFit({450, 350}, {500, 400}), 1);
    EXPECT_DOUBLE_EQ(scaleToFit({450, 350}, {0, 0}), 0);
}

TEST(ExportHistory, NamesWhatAnEarlierExportLeft) {
    const QTemporaryDir folder(templateOfFastPlaces());
    const QString target = folder.filePath(u"out"_s);
    const QString other = folder.filePath(u"other"_s);
    const QString project = folder.filePath(u"Card.tweenery"_s);
    QDir().mkpath(target + u"/images"_s);
    for (const char* name : {"Old.h", "New.h", "mine.txt", "images/a.png"}) {
        QFile file(target + u'/' + QString::fromLatin1(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    ExportHistory history(folder.filePath(u"state"_s));
    EXPECT_EQ(history.lastDirectory(project), QString());
    history.note(target, project, {u"Old.h"_s, u"images/a.png"_s, u"images/gone.png"_s});
    EXPECT_EQ(history.lastDirectory(project), target);
    EXPECT_EQ(history.leftBehind(target, project, {u"New.h"_s}),
              QStringList({u"Old.h"_s, u"images/a.png"_s}));
    history.note(target, project, {u"New.h"_s});
    EXPECT_EQ(history.leftBehind(target, project, {u"New.h"_s, u"images/a.png"_s}),
              QStringList({u"Old.h"_s}))
        << "still known after another export";
    EXPECT_EQ(history.filesIn(other, project), QStringList());
    EXPECT_EQ(history.filesIn(target, folder.filePath(u"Other.tweenery"_s)), QStringList());

    for (const QString& name : QDir(folder.filePath(u"state"_s)).entryList(QDir::Files)) {
        QFile file(folder.filePath(u"state/"_s + name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{\"last\": [");
    }
    EXPECT_EQ(history.lastDirectory(project), QString()) << "damaged counts as not known";
}

}  // namespace
}  // namespace tweenery::test

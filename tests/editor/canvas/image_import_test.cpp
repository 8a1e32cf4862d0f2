#include "editor/canvas/image_import.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include "editor/canvas/setup_switch.h"
#include "model/preferences/app_preferences.h"
#include "support/model_builder.h"
#include "support/scripted_ports.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

enum Answer { Cancel = 0, Is1x = 1, Is2x = 2, Replace = 0, Rename = 1 };

class ImageImports : public testing::Test {
 protected:
    QTemporaryDir directory;
    PCProject::Ptr project = PCProject::init();
    ScriptedAlerts alerts;

    void SetUp() override { setPreferences(true); }
    void TearDown() override { setPreferences(true); }
    static void setPreferences(bool asks) {
        PCAppPreferences::setShowsRetinaArtworkAlert(asks);
        PCAppPreferences::setShowsSetupFirstAlert(asks);
    }
    /// Writes a picture of that many pixels a side.
    QString file(const QString& name, int side = 12, QColor color = Qt::red) {
        const QString path = directory.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(color);
        image.save(path, name.endsWith(u"png"_s, Qt::CaseInsensitive) ? "PNG" : "JPG");
        return path;
    }
    QStringList files(const QString& names) {
        QStringList paths;
        for (const QString& name : names.split(u' ')) {
            paths.append(file(name));
        }
        return paths;
    }
    PCElement::Elements drop(const QStringList& paths) {
        ImageImport import(*project, alerts);
        return import.receivedDroppedImages(paths, {30, 40}, nullptr, 0);
    }
    /// The files that make up a set with its artwork sizes, "logo.png 12", "hero.png 6 12".
    std::string sets() {
        QStringList texts;
        for (const auto& set : project->imageSetManager().allImageSets()) {
            QString text = set->name();
            for (const auto& image :
                 {set->originalImage(), set->original2xImage(), set->original3xImage()}) {
                if (image) { text += u' ' + QString::number(image->size().width()); }
            }
            texts.append(text);
        }
        return texts.join(u", "_s).toStdString();
    }
    std::string tree() { return treeText(*project->canvas()); }
};

TEST_F(ImageImports, AskWhatTheyHaveToKnow) {
    struct Case {
        const char* files;
        std::deque<int> answers;
        std::set<size_t> ticked;
        const char* sets;
        const char* elements;
        size_t alerts;
    };
    // "logo.png" is there already.
    const Case cases[] = {
        {"hero@2x.png", {}, {}, "hero.png 6 12, logo.png 4", "hero", 0},
        {"hero@3X.PNG", {}, {}, "hero.png 4 8 12, logo.png 4", "hero", 0},
        {"hero.jpeg", {Is1x}, {}, "hero.jpg 12, logo.png 4", "hero", 1},
        {"hero.png", {Is2x}, {}, "hero.png 6 12, logo.png 4", "hero", 1},
        {"hero.png b@2x.png", {Cancel}, {}, "b.png 6 12, logo.png 4", "b", 1},
        // An answer that is ticked holds for the rest.
        {"a.png b.png c@2x.png d.png",
         {Is2x},
         {0},
         "a.png 6 12, b.png 6 12, c.png 6 12, d.png 6 12, logo.png 4",
         "d c b a",
         1},
        {"a.png b.png c@2x.png", {Cancel}, {0}, "c.png 6 12, logo.png 4", "c", 1},
        // Files of one density each make one set, and are not asked about.
        {"a.png a@3x.png b@2x.png a@2x.png",
         {},
         {},
         "a.png 12 12 12, b.png 6 12, logo.png 4",
         "b a",
         0},
        {"x/a@2x.png y/a@2x.png", {Rename}, {}, "a 1.png 6 12, a.png 6 12, logo.png 4", "a_1 a", 1},
        {"a@2x.png a@2x.jpg", {}, {}, "a.jpg 6 12, a.png 6 12, logo.png 4", "a_1 a", 0},
        // A name that is taken.
        {"logo@2x.png", {Rename}, {}, "logo 1.png 6 12, logo.png 4", "logo_1", 1},
        {"logo@2x.png", {Replace}, {}, "logo.png 6 12", "logo", 1},
        {"logo@2x.png x/logo@2x.png b@2x.png",
         {Replace},
         {0},
         "b.png 6 12, logo.png 6 12",
         "b logo_1 logo",
         1},
        {"logo@2x.png x/logo@2x.png",
         {Rename},
         {0},
         "logo 1.png 6 12, logo 2.png 6 12, logo.png 4",
         "logo_2 logo_1",
         1},
        {"logo.png", {Is2x, Replace}, {}, "logo.png 6 12", "logo", 2},
    };
    for (const Case& testCase : cases) {
        SCOPED_TRACE(testCase.files);
        setPreferences(true);
        project = PCProject::init();
        project->imageSetManager().addImageSetWithPCImage(
            std::make_shared<PCImage>(QImage(4, 4, QImage::Format_RGB32), u"logo.png"_s));
        alerts = {};
        alerts.answers = testCase.answers;
        alerts.ticked = testCase.ticked;
        const auto elements = drop(files(QString::fromLatin1(testCase.files)));
        EXPECT_EQ(sets(), testCase.sets);
        EXPECT_EQ(tree(), testCase.elements);
        EXPECT_EQ(alerts.shown.size(), testCase.alerts);
        for (const PCElement::Ptr& element : elements) {
            EXPECT_TRUE(project->imageSetManager().imageSetExistsWithName(element->imageName()));
            EXPECT_EQ(element->position(), QPointF(30, 40));
        }
        project->undoManager().undo();
        EXPECT_EQ(tree(), "");
        EXPECT_FALSE(project->undoManager().canUndo());
    }
}

TEST_F(ImageImports, RememberWhichQuestionsWereSilenced) {
    alerts.answers = {Is1x};
    drop(files(u"a.png"_s));
    EXPECT_TRUE(PCAppPreferences::showsRetinaArtworkAlert());
    alerts.answers = {Is2x};
    alerts.ticked = {1};
    drop(files(u"b.png"_s));
    EXPECT_FALSE(PCAppPreferences::showsRetinaArtworkAlert());
    drop(files(u"c.png"_s));  // the next import asks no more, and takes it as it is
    EXPECT_EQ(sets(), "a.png 12, b.png 6 12, c.png 12");
    ASSERT_EQ(alerts.shown.size(), 2U);
    EXPECT_EQ(alerts.shown[0].message, u"This image does not have an @2x suffix"_s);
    EXPECT_EQ(alerts.shown[0].suppressionText, u"Don't show again."_s);
    EXPECT_EQ(alerts.shown[0].buttons,
              QStringList({u"Cancel"_s, u"This is 1x Version"_s, u"This is 2x Version"_s}));
}

TEST_F(ImageImports, AreUndoneBytesAndAll) {
    const auto bytes = [this](const QString& set) {
        return project->imageSetManager().imageSetWithName(set)->originalData();
    };
    drop({file(u"logo@2x.png"_s, 20, Qt::blue)});
    const QByteArray before = bytes(u"logo.png"_s);
    project->undoManager().endEvent();
    alerts.answers = {Replace};
    drop({file(u"x/logo@2x.png"_s, 20, Qt::green), file(u"new@2x.png"_s)});
    const QByteArray after = bytes(u"logo.png"_s);
    EXPECT_NE(after, before);
    EXPECT_EQ(project->undoManager().undoActionName(), u"Import Images"_s);
    for (int i = 0; i < 2; ++i) {
        project->undoManager().undo();
        EXPECT_EQ(tree(), "logo");
        EXPECT_EQ(bytes(u"logo.png"_s), before);
        EXPECT_EQ(sets(), "logo.png 10 20, new.png 6 12");
        const auto stored = project->packageRoot()->child(u"images"_s)->child(u"logo.png"_s);
        EXPECT_EQ(stored->child(u"Original.png"_s)->contents(), before);
        project->undoManager().redo();
        EXPECT_EQ(bytes(u"logo.png"_s), after);
        EXPECT_EQ(tree(), "new logo_1 logo");
    }
}

TEST_F(ImageImports, NameWhatCannotBeRead) {
    QStringList paths{directory.filePath(u"gone@2x.png"_s), directory.path(),
                      file(u"good@2x.png"_s)};
    QFile damaged(directory.filePath(u"bad@2x.png"_s));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    paths.append(damaged.fileName());
    alerts.answers = {Is1x, 0};
    EXPECT_EQ(drop(paths).size(), 1U);
    EXPECT_EQ(sets(), "good.png 6 12");
    ASSERT_EQ(alerts.shown.size(), 2U);
    EXPECT_EQ(alerts.shown[1].message, u"3 Images Could Not Be Imported"_s);
    for (const char* name : {"gone@2x.png", "bad@2x.png", "is not a regular file"}) {
        EXPECT_THAT(alerts.shown[1].informativeText.toStdString(), HasSubstr(name));
    }

    // A set is not lost to a file that cannot take its place.
    const QString bad = directory.filePath(u"y/good@2x.png"_s);
    ASSERT_TRUE(QDir().mkpath(QFileInfo(bad).path()) && QFile::copy(damaged.fileName(), bad));
    alerts.answers = {Replace, 0};
    EXPECT_THAT(drop({bad}), IsEmpty());
    EXPECT_EQ(sets(), "good.png 6 12");
}

TEST_F(ImageImports, StopWhenTheUserHasEnough) {
    ImageImport import(*project, alerts);
    std::vector<size_t> told;
    import.setProgress([&](size_t done, size_t count) {
        EXPECT_EQ(count, 3U);
    told.push_back(done);
    return done < 2;
});
EXPECT_EQ(import.addImagesToProject(files(u"a@2x.png b@2x.png c@2x.png"_s)).size(), 2U);
EXPECT_THAT(told, ElementsAre(0, 1, 2, 3));
EXPECT_EQ(sets(), "a.png 6 12, b.png 6 12");
}  // namespace

TEST_F(ImageImports, BelongToTheSetupState) {
    buildTree(*project, "A");
    ScriptedOpenPanel panel;
    panel.files = files(u"a@2x.png b@2x.png"_s);
    alerts.answers = {0, 0};
    alerts.ticked = {1};
    for (int i = 0; i < 3; ++i) {
        selectNewAnimation(*project, u"Bounce"_s);
        ImageImport import(*project, alerts);
        if (i > 0) { panel.files.clear(); }
        import.importImages(panel);
        EXPECT_TRUE(project->isSetupMode());
    }
    ASSERT_EQ(alerts.shown.size(), 2U);  // the third time it was silenced
    EXPECT_EQ(alerts.shown[0].message, u"Switched to Setup Mode"_s);
    EXPECT_EQ(tree(), "A b a");
    const QSizeF canvas = project->canvas()->size();
    EXPECT_EQ(named(*project, u"a"_s)->position(),
              QPointF(canvas.width() / 2, canvas.height() / 2));
    EXPECT_EQ(named(*project, u"a"_s)->size(), QSizeF(6, 6));
    ASSERT_EQ(panel.shown.size(), 3U);
    EXPECT_TRUE(panel.shown[0].allowsSeveral);
    EXPECT_EQ(panel.shown[0].fileTypes, QStringList({u"png"_s, u"jpg"_s, u"jpeg"_s}));
}

TEST_F(ImageImports, TakePicturesWithoutAName) {
    for (int i = 0; i < 2; ++i) {
        ImageImport import(*project, alerts);
        import.receivedPastedImage(QImage(7, 5, QImage::Format_RGB32), {1, 2}, nullptr, 0);
    }
    EXPECT_EQ(sets(), "Pasted Image 1.png 7, Pasted Image.png 7");
    EXPECT_EQ(tree(), "Pasted_Image_1 Pasted_Image");
}

}  // namespace tweenery::test
}  // namespace tweenery::test

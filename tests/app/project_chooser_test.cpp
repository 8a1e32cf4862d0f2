#include "app/project_chooser.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include "base/user_defaults.h"
#include "support/scripted_ports.h"
#include "support/test_paths.h"

namespace tweenery::test {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;

template <class Child>
Child* childNamed(QWidget& parent, const QString& accessibleName) {
    for (Child* child : parent.findChildren<Child*>()) {
        if (child->accessibleName() == accessibleName) { return child; }
    }
    return nullptr;
}

/// A folder with projects, folders and other files, and a chooser that shows it.
class ProjectChooserTest : public testing::Test {
 protected:
    const QTemporaryDir m_directory;
    const QString m_root = QDir(m_directory.path()).canonicalPath();
    ScriptedAlerts m_alerts;
    std::unique_ptr<ProjectChooser> m_chooser;
    FolderView* m_view = nullptr;

    void SetUp() override {
        UserDefaults::useMemory();
        makeProject(u"Kite.tweenery"_s);
        makeProject(u"Sub/Boat.tweenery"_s);
        makeProject(u"Sub/Card 10.tweenery"_s);
        makeProject(u"Sub/Card 9.tweenery"_s);
        QDir(m_root).mkpath(u"Plain.tweenery"_s);
        QDir(m_root).mkpath(u".hidden"_s);
        QFile::link(m_root + u"/Sub"_s, m_root + u"/Link"_s);
        QFile::link(m_root + u"/gone"_s, m_root + u"/Broken"_s);
        for (const QString& name : {u"notes.txt"_s, u"File.tweenery"_s}) {
            QFile file(m_root + u'/' + name);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    void TearDown() override { UserDefaults::useMemory(); }

    void makeProject(const QString& name) const {
        QDir(m_root).mkpath(name);
        QFile::copy(packagePath(u"Minimal"_s) + u"/version"_s,
                    m_root + u'/' + name + u"/version"_s);
    }

    void show(ProjectChooser::Purpose purpose) {
        m_chooser = std::make_unique<ProjectChooser>(purpose, u"Test"_s, m_alerts, nullptr);
        m_view = m_chooser->findChild<FolderView*>();
        m_chooser->setFolder(m_root);
        m_chooser->show();
        m_chooser->activateWindow();
        waitForRow(u"Kite"_s);
    }
    QStringList rows() const {
        QStringList names;
        for (int row = 0; row < m_view->model()->rowCount(); ++row) {
            names << m_view->model()->index(row, 0).data().toString();
        }
        return names;
    }
    QModelIndex indexOf(const QString& name) const {
        return m_view->model()->index(static_cast<int>(rows().indexOf(name)), 0);
    }
    void waitForRow(const QString& name) const {
        ASSERT_TRUE(QTest::qWaitFor([&] { return rows().contains(name); })) << qPrintable(name);
    }
    void waitForFolder(const QString& folder) const {
        ASSERT_TRUE(QTest::qWaitFor([&] { return m_chooser->folder() == folder; }))
            << qPrintable(m_chooser->folder());
    }
    QLabel* messageLabel() const {
        for (QLabel* label : m_chooser->findChildren<QLabel*>()) {
            if (!label->buddy() && label->wordWrap()) { return label; }
        }
        return nullptr;
    }
    std::string waitForMessage() const {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !messageLabel()->text().isEmpty(); }));
        return messageLabel()->text().toStdString();
    }
    QStringList waitForChoice() const {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !m_chooser->isVisible(); }));
        return m_chooser->paths();
    }
    // All input goes to the window, which hands it on as on a screen.
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(m_chooser->windowHandle(), key, modifiers);
    }
    void typeInto(const QString& field, const QString& text) const {
        auto* edit = childNamed<QLineEdit>(*m_chooser, field);
        edit->setFocus();
        edit->selectAll();
        key(Qt::Key_Delete);
        for (const QChar letter : text) {
            QTest::sendKeyEvent(QTest::Click, m_chooser->windowHandle(), Qt::Key_unknown, letter,
                                {});
        }
        ASSERT_EQ(edit->text(), text);
    }
    QPoint middleOf(const QString& name) const {
        return m_view->viewport()->mapTo(m_chooser.get(),
                                         m_view->visualRect(indexOf(name)).center());
    }
    void click(const QString& name, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::mouseClick(m_chooser->windowHandle(), Qt::LeftButton, modifiers, middleOf(name));
    }
    void doubleClick(const QString& name) const {
        click(name);
        QTest::mouseDClick(m_chooser->windowHandle(), Qt::LeftButton, {}, middleOf(name));
    }
};

TEST_F(ProjectChooserTest, AProjectIsADocumentAndAFolderIsWalkedInto) {
    show(ProjectChooser::Purpose::Open);
    EXPECT_EQ(rows(), (QStringList{u"Link"_s, u"Sub"_s, u"Kite"_s, u"Plain"_s}));
    doubleClick(u"Sub"_s);
    waitForRow(u"Boat"_s);
    EXPECT_EQ(rows(), (QStringList{u"Boat"_s, u"Card 9"_s, u"Card 10"_s}));
    key(Qt::Key_Up, Qt::AltModifier);
    waitForRow(u"Kite"_s);
    EXPECT_EQ(m_chooser->folder(), m_root);
    doubleClick(u"Kite"_s);
    EXPECT_EQ(waitForChoice(), QStringList{m_root + u"/Kite.tweenery"_s});
}

TEST_F(ProjectChooserTest, TheKeyboardAloneOpensSeveral) {
    show(ProjectChooser::Purpose::Open);
    click(u"Sub"_s);
    key(Qt::Key_Return);
    waitForRow(u"Boat"_s);
    EXPECT_TRUE(m_view->hasFocus());
    key(Qt::Key_Down, Qt::ShiftModifier);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Return);
    EXPECT_THAT(waitForChoice(),
                testing::UnorderedElementsAre(m_root + u"/Sub/Boat.tweenery"_s,
                                              m_root + u"/Sub/Card 9.tweenery"_s,
                                              m_root + u"/Sub/Card 10.tweenery"_s));
    EXPECT_TRUE(m_alerts.shown.empty());
}

TEST_F(ProjectChooserTest, EscapeChoosesNothing) {
    show(ProjectChooser::Purpose::Open);
    click(u"Kite"_s);
    key(Qt::Key_Escape);
    EXPECT_EQ(waitForChoice(), QStringList());
}

TEST_F(ProjectChooserTest, ATypedPathMeansAProjectOrAFolderOrIsRefused) {
    struct Case {
        QString text;     // %1: the folder
        QString project;  // relative to the folder
        QString folder;
        QString refusal;
    };
    const std::vector<Case> cases = {
        {u"%1/Kite.tweenery"_s, u"Kite.tweenery"_s, {}, {}},
        {u"Kite.tweenery/"_s, u"Kite.tweenery"_s, {}, {}},
        {u"Sub/../Kite.tweenery/version"_s, u"Kite.tweenery"_s, {}, {}},
        {u"  %1/Sub "_s, {}, u"/Sub"_s, {}},
        {u"Sub/.."_s, {}, u""_s, {}},
        {u"%1/none"_s, {}, {}, u"“%1/none” does not exist."_s},
        {u"notes.txt"_s, {}, {}, u"“%1/notes.txt” is no project."_s},
        {u"File.tweenery"_s, {}, {}, u"“%1/File.tweenery” is no project."_s},
        {u"Broken"_s, {}, {}, u"“%1/Broken” is no project."_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.toStdString());
        show(ProjectChooser::Purpose::Open);
        typeInto(u"Path"_s, c.text.contains(u'%') ? c.text.arg(m_root) : c.text);
        key(Qt::Key_Return);
        if (!c.refusal.isNull()) {
            EXPECT_EQ(waitForMessage(), c.refusal.arg(m_root).toStdString());
            EXPECT_TRUE(m_chooser->isVisible());
        } else if (!c.project.isNull()) {
            EXPECT_EQ(waitForChoice(), QStringList{m_root + u'/' + c.project});
        } else {
            waitForRow(c.folder.isEmpty() ? u"Kite"_s : u"Boat"_s);
            waitForFolder(m_root + c.folder);
        }
    }
    show(ProjectChooser::Purpose::Open);
    typeInto(u"Path"_s, u"~"_s);
    key(Qt::Key_Return);
    waitForFolder(QDir::homePath());
}

TEST_F(ProjectChooserTest, SavingAddsTheSuffixAsksAndRefuses) {
    struct Case {
        QString name;
        QString place;    // relative to the folder
        int answer;       // to the question; -1: none is asked
        QString refusal;  // part of the message
    };
    const std::vector<Case> cases = {
        {u"New"_s, u"New.tweenery"_s, -1, {}},
        {u"New.tweenery"_s, u"New.tweenery"_s, -1, {}},
        {u"v1.2 ünï"_s, u"v1.2 ünï.tweenery"_s, -1, {}},
        {u"Sub/New"_s, u"Sub/New.tweenery"_s, -1, {}},
        {u"Sub"_s, u"Sub.tweenery"_s, -1, {}},
        {u"Kite"_s, u"Kite.tweenery"_s, 1, {}},
        {u"Kite"_s, {}, 0, {}},
        {u"Plain"_s, {}, -1, u"is no project, so it is not replaced"_s},
        {u"File"_s, {}, -1, u"is no project, so it is not replaced"_s},
        {u"none/New"_s, {}, -1, u"lies in a folder that does not exist"_s},
        {u"Kite.tweenery/New"_s, {}, -1, u"lies inside a project"_s},
        {QString(260, u'x'), {}, -1, u"is no name for a file"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        m_alerts.shown.clear();
        if (c.answer >= 0) { m_alerts.answers.push_back(c.answer); }
        show(ProjectChooser::Purpose::Save);
        typeInto(u"Name"_s, c.name);
        key(Qt::Key_Return);
        if (!c.refusal.isNull()) {
            EXPECT_THAT(waitForMessage(), HasSubstr(c.refusal.toStdString()));
            EXPECT_THAT(waitForMessage(), HasSubstr(m_root.toStdString()));
        } else if (!c.place.isNull()) {
            EXPECT_EQ(waitForChoice(), QStringList{m_root + u'/' + c.place});
        } else {
            EXPECT_TRUE(QTest::qWaitFor([&] { return !m_alerts.shown.empty(); }));
            QTest::qWait(50);
            EXPECT_TRUE(m_chooser->isVisible());
        }
        EXPECT_EQ(m_alerts.shown.size(), c.answer >= 0 ? 1U : 0U);
    }
}

TEST_F(ProjectChooserTest, TheSaveNameFollowsAChosenProjectAndWalksIntoATypedFolder) {
    show(ProjectChooser::Purpose::Save);
    m_chooser->setName(u"Untitled"_s);
    auto* name = childNamed<QLineEdit>(*m_chooser, u"Name"_s);
    EXPECT_TRUE(name->hasFocus());
    click(u"Kite"_s);
    EXPECT_EQ(name->text(), u"Kite");
    typeInto(u"Name"_s, m_root + u"/Sub"_s);
    key(Qt::Key_Return);
    waitForFolder(m_root + u"/Sub"_s);
    EXPECT_TRUE(m_chooser->isVisible());
}

TEST_F(ProjectChooserTest, NewFoldersAreMadeAndEntered) {
    show(ProjectChooser::Purpose::Save);
    const auto create = [this](const QString& name) {
        key(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
        typeInto(u"Name of the new folder"_s, name);
        key(Qt::Key_Return);
    };
    create(u"a/b"_s);
    EXPECT_THAT(waitForMessage(), HasSubstr("is no name for a folder"));
    create(u"Sub"_s);
    EXPECT_THAT(waitForMessage(), HasSubstr("File exists"));
    key(Qt::Key_Escape);
    EXPECT_TRUE(m_chooser->isVisible()) << "Escape closes the row first";
    create(u"Nested"_s);
    waitForFolder(m_root + u"/Nested"_s);
    EXPECT_TRUE(QFileInfo(m_root + u"/Nested"_s).isDir());
}

TEST_F(ProjectChooserTest, EachPurposeRemembersItsFolder) {
    show(ProjectChooser::Purpose::Open);
    doubleClick(u"Sub"_s);
    waitForRow(u"Boat"_s);
    doubleClick(u"Boat"_s);
    waitForChoice();
    show(ProjectChooser::Purpose::Save);
    typeInto(u"Name"_s, u"New"_s);
    key(Qt::Key_Return);
    waitForChoice();
    const auto startOf = [this](ProjectChooser::Purpose purpose) {
        return ProjectChooser(purpose, {}, m_alerts, nullptr).folder();
    };
    EXPECT_EQ(startOf(ProjectChooser::Purpose::Open), m_root + u"/Sub"_s);
    EXPECT_EQ(startOf(ProjectChooser::Purpose::Save), m_root);

    QDir(m_root + u"/Sub"_s).removeRecursively();
    m_chooser = std::make_unique<ProjectChooser>(ProjectChooser::Purpose::Open, QString(), m_alerts,
                                                 nullptr);
    waitForFolder(QDir::homePath());
}

TEST_F(ProjectChooserTest, AFolderThatCannotBeReadSaysWhy) {
    show(ProjectChooser::Purpose::Open);
    const QString gone = m_root + u"/gone"_s;
    m_chooser->setFolder(gone);
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_view->accessibleDescription().contains(gone); }));
    EXPECT_THAT(m_view->accessibleDescription().toStdString(), HasSubstr("No such file"));
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(ProjectChooserTest, EveryControlHasAName) {
    for (const auto purpose : {ProjectChooser::Purpose::Open, ProjectChooser::Purpose::Save}) {
        show(purpose);
        std::set<QString> names;
        for (QWidget* widget : m_chooser->findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisibleTo(m_chooser.get())) {
                continue;
            }
            QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(widget);
            const QString name = seen->text(QAccessible::Name);
            EXPECT_FALSE(name.isEmpty()) << widget->metaObject()->className();
            EXPECT_TRUE(names.insert(name).second) << qPrintable(name) << " stands twice";
        }
    }
}

TEST(LooseThread, IsLeftBehindWithWhatItStillTells) {
    QSemaphore goOn;
    QSemaphore isDone;
    bool wasHeard = true;
    bool arrived = false;
    {
        const LooseThread thread([&](const LooseThread::Tell& tell) {
            tell([&arrived] { arrived = true; });
            goOn.acquire();
            wasHeard = tell([&arrived] { arrived = true; });
            isDone.release();
        });
    }
    goOn.release();
    isDone.acquire();
    QCoreApplication::processEvents();
    EXPECT_FALSE(wasHeard);
    EXPECT_FALSE(arrived);
}

}  // namespace
}  // namespace tweenery::test

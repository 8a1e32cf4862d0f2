// Usage: window_pictures FOLDER
//
// Grabs the whole window in its states into PNG files, light, dark and with increased contrast, at
// the scale of QT_SCALE_FACTOR.

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <filesystem>
#include <functional>

#include "editor/controller_scene.h"
#include "support/test_paths.h"
#include "ui/canvas/canvas_view.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/frame_style.h"
#include "ui/window/document_window.h"

using namespace Qt::StringLiterals;

namespace tweenery::test {
namespace {

constexpr QSize kUsualSize(1280, 800);
constexpr int kSettling = 400;  // ms, longer than any animation of a pane

// A document window on a copy of a package, or on a project without a place.
class Window : public DocumentWindowOwner {
 public:
    explicit Window(const QString& package = {}) {
        auto document = std::make_unique<OpenDocument>(m_services);
        if (package.isEmpty()) {
            document->openUntitled(u"Untitled"_s);
        } else {
            m_place = m_folder.filePath(package + u".tweenery"_s);
            std::filesystem::copy(
                sourcePath(u"tests/packages/%1.tweenery"_s.arg(package)).toStdString(),
                m_place.toStdString(), std::filesystem::copy_options::recursive);
            document->open(m_place);
        }
        m_window = std::make_unique<DocumentWindow>(
            std::move(document),
            DesktopPorts{m_alerts, m_panel, m_clipboard, m_workspace, m_clock, m_log}, *this);
        m_window->showAsRemembered();
        controller().selectAnimation(nullptr);
        setSize(kUsualSize);
    }

    DocumentWindow& widget() { return *m_window; }
    PCDocumentWindowController& controller() { return m_window->controller(); }
    PCProject& project() { return *controller().project(); }
    const QString& place() const { return m_place; }
    void setSize(QSize size) {
        m_window->resize(size);
        QTest::qWait(kSettling);
        controller().viewport().zoomCanvasToFill();
    }
    void select(size_t child) {
        controller().selectionManager().selectElements({project().canvas()->children()[child]});
    }
    void showFirstAnimation(int timeInMS) {
        controller().selectAnimation(project().animationsManager().animations().front());
        controller().timeManager().setPlayheadPositionInMS(timeInMS);
        QTest::qWait(kSettling);
        controller().viewport().zoomCanvasToFill();
    }

    void addCommands(CommandSet&, DocumentWindow&) override {}
    void windowWantsToClose(DocumentWindow&) override {}
    void fillRecentDocuments(QMenu&) override {}
    void openProjects(const QStringList&) override {}
    void askForPlace(DocumentWindow&) override {}

 private:
    QTemporaryDir m_folder;
    QString m_place;
    ScriptedAlerts m_alerts;
    ScriptedOpenPanel m_panel;
    MemoryClipboard m_clipboard;
    RecordingWorkspace m_workspace;
    ScriptedClock m_clock;
    RecordingLog m_log;
    DocumentServices m_services{m_alerts,
                                m_log,
                                m_clock,
                                [] {
                                    return QDateTime(QDate(2030, 1, 2), {14, 5});
                                },
                                RecoveryStore(m_folder.filePath(u"recovery"_s)),
                                m_folder.filePath(u"locks"_s)};
    std::unique_ptr<DocumentWindow> m_window;
};

void addPlainElements(PCProject& project, const QStringList& names) {
    const UndoRegistrationPause pause(project.undoManager());
    for (const QString& name : names) {
        const PCElement::Ptr element = PCElement::init();
        element->setName(name);
        project.canvas()->insertSubelement(element, project.canvas()->children().size());
    }
}

struct Picture {
    QString name;
    std::function<void(Window&)> arrange;
    QString package = u"Card"_s;
};

std::vector<Picture> pictures() {
    return {
        {u"empty"_s, [](Window&) {}, {}},
        {u"setup"_s, [](Window& window) { window.select(1); }},
        {u"animation"_s,
         [](Window& window) {
             window.select(1);
             window.showFirstAnimation(400);
         }},
        {u"everything-selected"_s, [](Window& window) { window.controller().selectAll(); }},
        {u"small"_s, [](Window& window) { window.setSize(DocumentWindow::leastSize()); }},
        {u"small-animation"_s,
         [](Window& window) {
             window.setSize(DocumentWindow::leastSize());
             window.showFirstAnimation(400);
         }},
        {u"elements-5000"_s,
         [](Window& window) {
             QStringList names;
             for (int i = 0; i < 5000; ++i) {
                 names << u"element %1"_s.arg(i);
             }
             addPlainElements(window.project(), names);
         }},
        {u"names"_s,
         [](Window& window) {
             addPlainElements(
                 window.project(),
                 {u"a name that is far too long for the list in which it stands, as some are"_s,
                  u"עפיפון מעל הים"_s, u"طائرة ورقية تحلق فوق البحر الأزرق الكبير جدا"_s, u"凧"_s,
                  u"mixed עברית 12"_s});
             window.select(window.project().canvas()->children().size() - 2);
         }},
        {u"renaming"_s,
         [](Window& window) {
             window.select(1);
             window.controller().commands().perform(u"renameElement"_s);
         }},
        {u"changed-on-disk"_s,
         [](Window& window) {
             QFile canvas(window.place() + u"/canvas"_s);
             if (canvas.open(QIODevice::Append)) { canvas.write(" "); }
             canvas.close();
             window.widget().document().checkDisk();
             QTest::qWait(kSettling);
         }},
    };
}

void grab(const QString& folder, const QString& look) {
    for (const Picture& picture : pictures()) {
        Window window(picture.package);
        picture.arrange(window);
        QTest::qWait(kSettling);
        const QString file = u"%1/%2-%3-%4.png"_s.arg(folder, picture.name, look)
                                 .arg(window.widget().devicePixelRatioF());
        if (!window.widget().grab().save(file)) {
            QTextStream(stderr) << "could not write " << file << '\n';
        }
    }
}

}  // namespace
}  // namespace tweenery::test

int main(int argc, char** argv) {
    using namespace tweenery;
    QApplication application(argc, argv);
    if (argc != 2 || !QDir().mkpath(QFile::decodeName(argv[1]))) {
        QTextStream(stderr) << "Usage: window_pictures FOLDER\n";
        return 2;
    }
    QStandardPaths::setTestModeEnabled(true);
    PCAppPreferences::registerDefaults();
    setUpFrame(application);
    const QString folder = QFile::decodeName(argv[1]);
    Appearance& appearance = Appearance::current();
    const struct {
        const char* name;
        PCAppTheme theme;
        bool increasesContrast;
    } looks[] = {{"light", PCAppTheme::Light, false},
                 {"dark", PCAppTheme::Dark, false},
                 {"dark-contrast", PCAppTheme::Dark, true},
                 {"light-contrast", PCAppTheme::Light, true}};
    for (const auto& look : looks) {
        appearance.setTheme(look.theme);
        appearance.setIncreasesContrast(look.increasesContrast);
        test::grab(folder, QString::fromLatin1(look.name));
    }
}

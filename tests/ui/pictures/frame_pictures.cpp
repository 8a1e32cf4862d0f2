// Usage: frame_pictures FOLDER
//
// Grabs the frame's controls, dialogs and toolbar into PNG files, light, dark and with increased
// contrast, at the scale of QT_SCALE_FACTOR.

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTextStream>

#include "ui/widgets/alert_dialog.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/frame_style.h"
#include "ui/widgets/header_view.h"
#include "ui/widgets/notice_bar.h"
#include "ui/widgets/progress_panel.h"
#include "ui/widgets/status_plate.h"
#include "ui/widgets/toggle_icon_button.h"
#include "ui/window/preferences_window.h"
#include "ui/window/split_view.h"
#include "ui/window/toolbar.h"
#include "ui/window/toolbar_dialog.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

class Pictures {
 public:
    Pictures(const QString& folder, const QString& look) : m_folder(folder), m_look(look) {}

    void save(QWidget& widget, const QString& name) const {
        widget.show();
        QTest::qWait(1);
        const QString file =
            u"%1/%2-%3-%4.png"_s.arg(m_folder, name, m_look).arg(widget.devicePixelRatioF());
        if (!widget.grab().save(file)) {
            QTextStream(stderr) << "could not write " << file << '\n';
        }
    }

 private:
    QString m_folder;
    QString m_look;
};

void grabControls(const Pictures& pictures) {
    QWidget page;
    auto* column = new QVBoxLayout(&page);
    for (const bool isDefault : {false, true}) {
        auto* row = new QHBoxLayout;
        for (const QString& state : {u"rest"_s, u"pressed"_s, u"disabled"_s}) {
            auto* button = new QPushButton(isDefault ? u"Export"_s : u"Cancel"_s);
            button->setDefault(isDefault);
            button->setDown(state == u"pressed");
            button->setEnabled(state != u"disabled");
            row->addWidget(button);
        }
        column->addLayout(row);
    }
    auto* boxes = new QHBoxLayout;
    for (const bool isOn : {true, false}) {
        auto* box = new QCheckBox(isOn ? u"on"_s : u"off"_s);
        box->setChecked(isOn);
        boxes->addWidget(box);
        auto* radio = new QRadioButton(u"radio"_s);
        radio->setAutoExclusive(false);
        radio->setChecked(isOn);
        boxes->addWidget(radio);
        auto* disabled = new QCheckBox(u"disabled"_s);
        disabled->setChecked(isOn);
        disabled->setEnabled(false);
        boxes->addWidget(disabled);
    }
    column->addLayout(boxes);
    auto* fields = new QHBoxLayout;
    fields->addWidget(new QLineEdit(u"Weather Card"_s));
    auto* combo = new QComboBox;
    combo->addItems({u"Objective-C"_s, u"Swift"_s});
    fields->addWidget(combo);
    auto* toggle = new ToggleIconButton;
    toggle->setOnIcon(u"swift"_s);
    toggle->setState(true);
    fields->addWidget(toggle);
    column->addLayout(fields);
    page.show();
    page.activateWindow();
    QTest::qWait(1);
    QTest::keyClick(&page, Qt::Key_Tab);
    pictures.save(page, u"controls"_s);
    pictures.save(page, u"controls"_s);
}

void grabMenu(const Pictures& pictures) {
    QMenu menu;
    menu.addAction(u"Duplicate\tCtrl+D"_s);
    menu.addAction(u"Delete\tDel"_s);
    QAction* group = menu.addAction(u"Group\tCtrl+G"_s);
    menu.addAction(u"Ungroup\tCtrl+Shift+G"_s)->setEnabled(false);
    menu.addSeparator();
    QAction* checked = menu.addAction(u"Show Guidelines"_s);
    checked->setCheckable(true);
    checked->setChecked(true);
    menu.addMenu(u"Open Recent"_s)->addAction(u"Bounce"_s);
    menu.popup({20, 20});
    menu.setActiveAction(group);
    pictures.save(menu, u"menu"_s);
    menu.close();
}

void grabAlerts(const Pictures& pictures) {
    const Alert alerts[] = {
        {u"Switched to Setup Mode"_s,
         u"You need to define this element's initial setup values before using it in an "
         u"animation."_s,
         {u"Ok"_s},
         u"Don't show again."_s},
        {u"This image does not have an @2x suffix"_s,
         u"Should Tweenery treat this as a 1x or 2x artwork?"_s,
         {u"Cancel"_s, u"This is 1x Version"_s, u"This is 2x Version"_s},
         u"Don't show again."_s},
        {u"About to Perform Destructive Operation"_s,
         u"Other animations in your project have keyed values for this element which will be "
         u"lost, do you still wish to delete?"_s,
         {u"Yes"_s, u"No"_s},
         {}},
    };
    int number = 0;
    for (const Alert& alert : alerts) {
        AlertDialog dialog(alert, nullptr);
        pictures.save(dialog, u"alert%1"_s.arg(++number));
    }
}

void grabNotices(const Pictures& pictures) {
    QWidget page;
    page.resize(660, 180);
    int top = 0;
    const auto add = [&](NoticeKind kind, const QString& text, const QStringList& buttons) {
        auto* bar = new NoticeBar(&page);
        bar->setGeometry(0, top, 660, 40);
        top += 48;
        std::vector<NoticeBar::Answer> answers;
        for (const QString& button : buttons) {
            answers.push_back({button, {}});
        }
        bar->showNotice(kind, text, std::move(answers));
    };
    add(NoticeKind::Notice, u"Tweenery was closed unexpectedly. Your work of 14:02 is back."_s,
        {u"Go Back to Saved"_s, u"Keep"_s});
    add(NoticeKind::Warning, u"This project was changed on disk by another program."_s,
        {u"Reload"_s, u"Keep Mine"_s});
    add(NoticeKind::Failure, u"Not saved: the disk is full. A recovery copy is safe."_s,
        {u"Save Elsewhere…"_s, u"Try Again"_s});
    StatusPlate plate(&page);
    page.show();
    plate.showMessage(u"Saved at 14:05"_s);
    QTest::qWait(200);
    pictures.save(page, u"notices"_s);
}

void grabProgress(const Pictures& pictures) {
    ProgressPanel panel;
    panel.start(u"Exporting “Weather Card”"_s);
    panel.setProgress(u"Writing images"_s, 20, 36);
    panel.adjustSize();
    pictures.save(panel, u"progress"_s);
    panel.showResult(u"Exported 1 class and 36 images"_s, u"to /home/ada/Projects/app"_s,
                     u"Show in Files"_s, {});
    pictures.save(panel, u"result"_s);
}

void grabWindow(const Pictures& pictures, QSize size) {
    QWidget window;
    QMap<QString, QAction*> actions;
    const auto action = [&](const QString& command) {
        QAction*& made = actions[command];
        if (!made) { made = new QAction(command, &window); }
        return made;
    };
    action(u"togglePlayPause"_s)->setEnabled(false);
    auto* menus = new QMenuBar;
    for (const QString& title :
         {u"File"_s, u"Edit"_s, u"Element"_s, u"Animation"_s, u"View"_s, u"Window"_s, u"Help"_s}) {
        menus->addMenu(title);
    }
    auto* toolbar = new Toolbar(action, &window);
    toolbar->setSelectCursorItemActive(true);
    toolbar->setBottomPaneItemActive(true);
    toolbar->setBottomPaneEnabled(false);
    auto* split = new SplitView(&window);
    const auto pane = [](const QString& title, const QString& image) {
        auto* widget = new QWidget;
        widget->setAutoFillBackground(true);
        widget->setBackgroundRole(QPalette::AlternateBase);
        auto* column = new QVBoxLayout(widget);
        column->setContentsMargins(0, 0, 0, 0);
        auto* header = new HeaderView;
        header->setTitle(title);
        header->setTitleImage(image);
        header->setAction(u"Add Element"_s);
        column->addWidget(header);
        column->addStretch();
        return widget;
    };
    split->setLeftPane(pane(u"Elements"_s, u"element_icon"_s));
    split->setRightPane(
        pane(u"a name too long for its strip, as some are"_s, u"property_element_icon"_s));
    split->setBottomPane(new QWidget);
    auto* canvas = new QWidget;
    canvas->setAutoFillBackground(true);
    QPalette palette;
    palette.setColor(QPalette::Window, Appearance::current().workbench().surround);
    canvas->setPalette(palette);
    split->setMainPane(canvas);
    auto* column = new QVBoxLayout(&window);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(menus);
    column->addWidget(toolbar);
    column->addWidget(split, 1);
    window.resize(size);
    pictures.save(window, u"window%1"_s.arg(size.width()));
}

void grabAll(const Pictures& pictures) {
    grabControls(pictures);
    grabMenu(pictures);
    grabAlerts(pictures);
    grabNotices(pictures);
    grabProgress(pictures);
    PreferencesWindow preferences;
    pictures.save(preferences, u"preferences"_s);
    ToolbarDialog dialog(toolbarItems::byDefault(), nullptr);
    pictures.save(dialog, u"customize"_s);
    grabWindow(pictures, {1440, 400});
    grabWindow(pictures, {800, 300});
    grabWindow(pictures, {420, 200});
    Toolbar toolbar([](const QString&) { return nullptr; }, nullptr);
    auto* groupFx = static_cast<GroupFxView*>(toolbar.item(toolbarItems::additive));
    groupFx->setParent(nullptr);
    groupFx->findChild<IconButton*>()->click();
    pictures.save(*groupFx, u"groupfx"_s);
    QTest::qWait(2100);
    pictures.save(*groupFx, u"groupfx"_s);
    delete groupFx;
}

}  // namespace
}  // namespace tweenery

int main(int argc, char** argv) {
    using namespace tweenery;
    QApplication application(argc, argv);
    if (argc != 2 || !QDir().mkpath(QFile::decodeName(argv[1]))) {
        QTextStream(stderr) << "Usage: frame_pictures FOLDER\n";
        return 2;
    }
    setUpFrame(application);
    const QString folder = QFile::decodeName(argv[1]);
    Appearance& appearance = Appearance::current();
    appearance.setTheme(PCAppTheme::Light);
    grabAll({folder, u"light"_s});
    appearance.setTheme(PCAppTheme::Dark);
    grabAll({folder, u"dark"_s});
    appearance.setIncreasesContrast(true);
    grabAll({folder, u"dark-contrast"_s});
    appearance.setTheme(PCAppTheme::Light);
    grabAll({folder, u"light-contrast"_s});
}

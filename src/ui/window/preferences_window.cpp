#include "ui/window/preferences_window.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>

#include "model/preferences/app_preferences.h"
#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr int kWindowWidth = 464;
constexpr int kBandHeight = 60;
constexpr QRect kGeneralItem(12, 4, 64, 52);
constexpr int kHeadingWidth = 108;
constexpr int kRowHeight = 28;
constexpr int kGroupSpace = 8;

// The band with the one group of preferences that there is.
class GroupBand : public QWidget {
 public:
    GroupBand() {
        setFixedSize(kWindowWidth, kBandHeight);
        setAccessibleName(u"General"_s);
        setAccessibleRole(*this, QAccessible::PageTab);
    }

 protected:
    void paintEvent(QPaintEvent*) override {
        const FrameColors& colors = Appearance::current().frame();
        QPainter painter(this);
        paintLowerLine(painter, rect(), colors.line);
        paintRounded(painter, kGeneralItem, sizes::buttonRadius,
                     blended(colors.hover, colors.frame), {});
        QRectF picture(0, kGeneralItem.top() + 6, sizes::toolbarPicture, sizes::toolbarPicture);
        picture.moveLeft(kGeneralItem.left() + (kGeneralItem.width() - picture.width()) / 2);
        paintIcon(painter, picture, u"general"_s, colors.icon);
        painter.setFont(mediumFont(sizes::smallCaptionTextSize));
        painter.setPen(colors.ink);
        painter.drawText(kGeneralItem.adjusted(0, 30, 0, -3), Qt::AlignCenter, u"General"_s);
    }
};

void addHeading(QGridLayout* grid, const QString& text) {
    if (text.isEmpty()) { return; }
    const int row = grid->rowCount();
    if (row > 1) { grid->setRowMinimumHeight(row, kGroupSpace); }
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(label, row > 1 ? row + 1 : row, 0);
}

}  // namespace

PreferencesWindow::PreferencesWindow(QWidget* parent) : QDialog(parent) {
    setWindowTitle(u"General"_s);
    auto* grid = new QGridLayout;
    grid->setContentsMargins(sizes::dialogMargin, sizes::dialogMargin - 2, sizes::dialogMargin,
                             sizes::dialogMargin + 2);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(0);
    grid->setColumnMinimumWidth(0, kHeadingWidth);
    grid->setColumnStretch(1, 1);

    using P = PCAppPreferences;
    addChoice(grid, u"Canvas:"_s, u"Show guidelines and snap to them"_s, &P::showsGuidelines,
              &P::setShowsGuidelines);
    addChoice(grid, u"Timeline:"_s, u"Show the skim bar under the pointer"_s,
              &P::showsTimelineSkimbar, &P::setShowsTimelineSkimbar);
    addChoice(grid, u"At launch:"_s, u"Show the start window"_s, &P::showsOnboardWindowAtLaunch,
              &P::setShowsOnnboardWindowAtLaunch);
    addThemes(grid);
    addChoice(grid, {}, u"Increase contrast"_s, &P::increasesContrast,
              [](bool on) { Appearance::current().setIncreasesContrast(on); });
    addChoice(grid, {}, u"Reduce motion"_s, &P::reducesMotion,
              [](bool on) { Appearance::current().setReducesMotion(on); });
    addChoice(grid, u"Ask me:"_s, u"when a change needs setup mode"_s, &P::showsSetupFirstAlert,
              &P::setShowsSetupFirstAlert);
    addChoice(grid, {}, u"whether artwork is 1x or 2x"_s, &P::showsRetinaArtworkAlert,
              &P::setShowsRetinaArtworkAlert);
    addChoice(grid, {}, u"before other animations lose values"_s,
              &P::showsChangeOtherAnimationsStateAlert,
              &P::setShowsChangeOtherAnimationsStateAlert);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(new GroupBand);
    column->addLayout(grid);
    readValues();
}

void PreferencesWindow::addChoice(QGridLayout* grid, const QString& heading, const QString& text,
                                  std::function<bool()> value, std::function<void(bool)> setValue) {
    addHeading(grid, heading);
    auto* box = new QCheckBox(text);
    box->setFixedHeight(kRowHeight);
    grid->addWidget(box, heading.isEmpty() ? grid->rowCount() : grid->rowCount() - 1, 1,
                    Qt::AlignLeft);
    connect(box, &QAbstractButton::clicked, this, [this, setValue = std::move(setValue)](bool on) {
        setValue(on);
        Q_EMIT preferencesDidChange();
    });
    m_choices.push_back({box, std::move(value)});
}

void PreferencesWindow::addThemes(QGridLayout* grid) {
    addHeading(grid, u"Appearance:"_s);
    auto* row = new QHBoxLayout;
    row->setSpacing(sizes::dialogMargin);
    const QString texts[] = {u"As the system"_s, u"Light"_s, u"Dark"_s};  // by PCAppTheme
    for (int theme = 0; theme < 3; ++theme) {
        auto* button = new QRadioButton(texts[theme]);
        button->setFixedHeight(kRowHeight);
        m_themes.addButton(button, theme);
        row->addWidget(button);
    }
    row->addStretch();
    grid->addLayout(row, grid->rowCount() - 1, 1);
    connect(&m_themes, &QButtonGroup::idClicked, this, [this](int theme) {
        Appearance::current().setTheme(static_cast<PCAppTheme>(theme));
        Q_EMIT preferencesDidChange();
    });
}

void PreferencesWindow::readValues() {
    for (const Choice& choice : m_choices) {
        choice.box->setChecked(choice.value());
    }
    m_themes.button(static_cast<int>(PCAppPreferences::theme()))->setChecked(true);
}

void PreferencesWindow::showEvent(QShowEvent* event) {
    readValues();
    QDialog::showEvent(event);
}

}  // namespace tweenery

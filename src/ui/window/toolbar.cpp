#include "ui/window/toolbar.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>

#include "model/preferences/app_preferences.h"
#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"
#include "ui/window/toolbar_dialog.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr int kItem = sizes::toolbarItem;
constexpr QRect kGroupFxSlider(30, 7, 120, 23);
constexpr QRect kGroupFxLabel(70, 1, 40, 15);
constexpr int kGroupFxLabelSize = 10;
constexpr int kGroupFxSteps = 20;  // of a quarter each, from 0 to 5
constexpr float kGroupFxStep = 0.25F;

struct PaneButton {
    QString command;
    QString name;
    QString openPicture;
    QString hiddenPicture;
};

const PaneButton& paneButton(int pane) {
    static const PaneButton buttons[] = {
        {u"toggleLeftPane"_s, u"Left Pane"_s, u"left_pane_on"_s, u"left_pane_off"_s},
        {u"toggleBottomPane"_s, u"Bottom Pane"_s, u"center_pane_on"_s, u"center_pane_off"_s},
        {u"toggleRightPane"_s, u"Right Pane"_s, u"right_pane_on"_s, u"right_pane_off"_s},
    };
    return buttons[pane];
}

}  // namespace

ToolbarButton::ToolbarButton(const QString& picture, QAction* action, QWidget* parent)
    : IconButton(picture, sizes::toolbarPicture, parent) {
    resize(kItem, kItem);
    setEnabled(action && action->isEnabled());
    if (!action) { return; }
    connect(this, &QAbstractButton::clicked, action, &QAction::trigger);
    connect(action, &QAction::enabledChanged, this, &QWidget::setEnabled);
}

QSize ToolbarButton::sizeHint() const {
    return {kItem, kItem};
}

PanelsButtonView::PanelsButtonView(const std::function<QAction*(const QString&)>& actions,
                                   QWidget* parent)
    : QWidget(parent) {
    resize(sizes::panelsItemWidth, kItem);
    for (int pane = 0; pane < PaneCount; ++pane) {
        const PaneButton& look = paneButton(pane);
        auto* button = new ToolbarButton(look.openPicture, actions(look.command), this);
        button->setGeometry(pane * kItem + 3, 3, sizes::toolbarPicture, sizes::toolbarPicture);
        button->setAccessibleName(look.name);
        button->setCheckable(true);
        m_buttons[pane] = button;
    }
}

void PanelsButtonView::setPaneHidden(Pane pane, bool isHidden) {
    const PaneButton& look = paneButton(pane);
    m_buttons[pane]->setPicture(isHidden ? look.hiddenPicture : look.openPicture);
    m_buttons[pane]->setChecked(!isHidden);
}

void PanelsButtonView::setPaneEnabled(Pane pane, bool isEnabled) {
    m_buttons[pane]->setEnabled(isEnabled);
}

GroupFxView::GroupFxView(QWidget* parent)
    : QWidget(parent),
      m_toggle(u"additive_button"_s, sizes::toolbarPicture, this),
      m_slider(Qt::Horizontal, this) {
    resize(kItem, kItem);
    m_toggle.setGeometry(0, 0, kItem, kItem);
    m_toggle.setCheckable(true);
    m_toggle.setAlternatePicture(u"additive_button_active"_s);
    m_toggle.setAccessibleName(u"GroupFX"_s);
    m_slider.setGeometry(kGroupFxSlider);
    m_slider.setRange(0, kGroupFxSteps);
    m_slider.setPageStep(4);
    m_slider.setTickInterval(1);
    m_slider.setTickPosition(QSlider::TicksBelow);
    m_slider.setValue(qRound(PCAppPreferences::storedLinkFXFactor() / kGroupFxStep));
    m_slider.setAccessibleName(u"GroupFX Strength"_s);
    m_slider.hide();
    connect(&m_slider, &QSlider::valueChanged, this, [this](int step) {
        PCAppPreferences::setLinkFXFactor(static_cast<float>(step) * kGroupFxStep);
        update();
    });
    connect(&m_growth, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& value) { grow(value.toInt()); });
    connect(&m_toggle, &QAbstractButton::toggled, this, [this](bool isOn) {
        m_growth.stop();
        const auto duration = Appearance::current().duration(motion::groupFx);
        m_growth.setDuration(static_cast<int>(duration.count()));
        m_growth.setStartValue(width());
        m_growth.setEndValue(isOn ? sizes::groupFxOpenWidth : kItem);
        m_growth.start();
        Q_EMIT toggled();
    });
}

void GroupFxView::grow(int newWidth) {
    resize(newWidth, kItem);
    m_slider.setVisible(newWidth > kItem);
    Q_EMIT widthChanged();
}

void GroupFxView::paintEvent(QPaintEvent*) {
    if (width() <= kItem) { return; }
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    paintRounded(painter, QRectF(kGroupFxLabel).adjusted(1, 1, -1, -1), 6, colors.groupFxFill,
                 colors.groupFxInk, 2);
    painter.setFont(regularFont(kGroupFxLabelSize));
    painter.setPen(colors.groupFxInk);
    const int percent = m_slider.value() * qRound(kGroupFxStep * 100);
    drawTabularText(painter, kGroupFxLabel, Qt::AlignCenter, u"%1%"_s.arg(percent));
}

Toolbar::Toolbar(ActionFinder actions, QWidget* parent)
    : QWidget(parent),
      m_actions(std::move(actions)),
      m_overflow(u"chev_down"_s, sizes::toolbarPicture, this) {
    setFixedHeight(sizes::toolbarHeight);
    setAccessibleName(u"Toolbar"_s);
    setAccessibleRole(*this, QAccessible::ToolBar);
    m_overflow.resize(kItem, kItem);
    m_overflow.setAccessibleName(u"More"_s);
    m_overflow.setToolTip(u"More"_s);
    m_overflow.hide();
    connect(&m_overflow, &QAbstractButton::clicked, this, &Toolbar::showOverflowMenu);
    reload();
}

QWidget* Toolbar::item(const QString& identifier) {
    if (QWidget* made = m_items.value(identifier)) { return made; }
    const ToolbarItem* known = toolbarItem(identifier);
    QWidget* made = known ? makeItem(*known) : nullptr;
    if (!made) { return nullptr; }
    made->setToolTip(known->toolTip);
    made->hide();
    m_items.insert(identifier, made);
    return made;
}

QWidget* Toolbar::makeItem(const ToolbarItem& item) {
    switch (item.kind) {
        case ToolbarItemKind::Button:
        case ToolbarItemKind::Toggle: {
            auto* button = new ToolbarButton(item.picture, m_actions(item.command), this);
            button->setAlternatePicture(item.picture + u"_active"_s);
            button->setAccessibleName(item.accessibleName);
            button->setCheckable(item.kind == ToolbarItemKind::Toggle);
            return button;
        }
        case ToolbarItemKind::Panels:
            m_panels = new PanelsButtonView(m_actions, this);
            for (int pane = 0; pane < PanelsButtonView::PaneCount; ++pane) {
                setPaneItem(static_cast<PanelsButtonView::Pane>(pane), m_paneHidden[pane]);
            }
            setBottomPaneEnabled(m_bottomPaneEnabled);
            return m_panels;
        case ToolbarItemKind::GroupFx:
            m_groupFx = new GroupFxView(this);
            connect(m_groupFx, &GroupFxView::toggled, this, &Toolbar::additiveButtonPressed);
            connect(m_groupFx, &GroupFxView::widthChanged, this, &Toolbar::layOut);
            return m_groupFx;
        case ToolbarItemKind::Separator:
        case ToolbarItemKind::Space:
        case ToolbarItemKind::FlexibleSpace:
            break;
    }
    return nullptr;
}

void Toolbar::reload() {
    m_order = toolbarItems::ofUser();
    QWidget* before = nullptr;
    for (const QString& identifier : m_order) {
        QWidget* widget = item(identifier);
        if (!widget) { continue; }
        if (before) { setTabOrder(before, widget); }
        before = widget;
    }
    layOut();
}

int Toolbar::widthOf(const QString& identifier) {
    if (QWidget* widget = item(identifier)) { return widget->width(); }
    switch (toolbarItem(identifier)->kind) {
        case ToolbarItemKind::Separator:
            return sizes::toolbarDividerWidth;
        case ToolbarItemKind::Space:
            return sizes::toolbarSpace;
        default:
            return 0;
    }
}

void Toolbar::layOut() {
    std::vector<ToolbarSlot> items;
    for (const QString& identifier : m_order) {
        items.push_back({widthOf(identifier), identifier == toolbarItems::flexibleSpace});
    }
    const ToolbarPlaces places = placeToolbarItems(items, width());
    m_shownCount = places.x.size();
    m_separators.clear();
    for (QWidget* widget : m_items) {
        widget->hide();
    }
    const int top = (height() - kItem) / 2;
    for (size_t i = 0; i < m_shownCount; ++i) {
        const QString& identifier = m_order[static_cast<qsizetype>(i)];
        if (QWidget* widget = item(identifier)) {
            widget->move(places.x[i], top);
            widget->show();
        } else if (toolbarItem(identifier)->kind == ToolbarItemKind::Separator) {
            m_separators.push_back(places.x[i]);
        }
    }
    m_overflow.move(width() - sizes::toolbarMargin - kItem, top);
    m_overflow.setVisible(places.overflows);
    update();
}

void Toolbar::showOverflowMenu() {
    QMenu menu(this);
    for (qsizetype i = static_cast<qsizetype>(m_shownCount); i < m_order.size(); ++i) {
        const ToolbarItem* left = toolbarItem(m_order[i]);
        if (left->kind == ToolbarItemKind::Panels) {
            for (int pane = 0; pane < PanelsButtonView::PaneCount; ++pane) {
                if (QAction* action = m_actions(paneButton(pane).command)) {
                    menu.addAction(action);
                }
            }
        } else if (QAction* action = left->command.isEmpty() ? nullptr : m_actions(left->command)) {
            QAction* entry = menu.addAction(left->label);
            entry->setEnabled(action->isEnabled());
            connect(entry, &QAction::triggered, action, &QAction::trigger);
        }
    }
    menu.exec(m_overflow.mapToGlobal(m_overflow.rect().bottomLeft()));
}

void Toolbar::customize() {
    ToolbarDialog dialog(m_order, window());
    if (dialog.exec() != QDialog::Accepted) { return; }
    toolbarItems::setOfUser(dialog.identifiers());
    reload();
}

void Toolbar::setPaneItem(PanelsButtonView::Pane pane, bool isHidden) {
    m_paneHidden[pane] = isHidden;
    if (m_panels) { m_panels->setPaneHidden(pane, isHidden); }
}

void Toolbar::setLeftPaneItemActive(bool isHidden) {
    setPaneItem(PanelsButtonView::Left, isHidden);
}

void Toolbar::setBottomPaneItemActive(bool isCollapsed) {
    setPaneItem(PanelsButtonView::Bottom, isCollapsed);
}

void Toolbar::setRightPaneItemActive(bool isHidden) {
    setPaneItem(PanelsButtonView::Right, isHidden);
}

void Toolbar::setBottomPaneEnabled(bool isEnabled) {
    m_bottomPaneEnabled = isEnabled;
    if (m_panels) { m_panels->setPaneEnabled(PanelsButtonView::Bottom, isEnabled); }
}

void Toolbar::setChecked(const QString& identifier, bool isChecked) {
    static_cast<ToolbarButton*>(item(identifier))->setChecked(isChecked);
}

void Toolbar::setSelectCursorItemActive(bool isActive) {
    setChecked(toolbarItems::select, isActive);
}

void Toolbar::setDirectCursorItemActive(bool isActive) {
    setChecked(toolbarItems::direct, isActive);
}

void Toolbar::setHandCursorItemActive(bool isActive) {
    setChecked(toolbarItems::hand, isActive);
}

void Toolbar::setPlayItemActive(bool isActive) {
    setChecked(toolbarItems::play, isActive);
}

bool Toolbar::additiveButtonIsOn() const {
    return m_groupFx && m_groupFx->isOn();
}

QSize Toolbar::sizeHint() const {
    return {800, sizes::toolbarHeight};
}

QSize Toolbar::minimumSizeHint() const {
    return {2 * sizes::toolbarMargin + kItem, sizes::toolbarHeight};
}

void Toolbar::paintEvent(QPaintEvent*) {
    const FrameColors& colors = Appearance::current().frame();
    QPainter painter(this);
    painter.fillRect(rect(), colors.frame);
    const int top = (height() - kItem) / 2;
    for (const int x : m_separators) {
        paintIcon(painter, QRectF(x, top, sizes::toolbarDividerWidth, kItem), u"toolbar_divider"_s,
                  colors.separator);
    }
    paintLowerLine(painter, rect(), colors.line);
}

void Toolbar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void Toolbar::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.addAction(u"Customize Toolbar…"_s, this, &Toolbar::customize);
    menu.exec(event->globalPos());
}

}  // namespace tweenery

#pragma once

#include <QAction>
#include <QHash>
#include <QSlider>
#include <QVariantAnimation>
#include <QWidget>
#include <array>
#include <functional>

#include "ui/widgets/icon_button.h"
#include "ui/window/toolbar_items.h"

namespace tweenery {

/// A picture of the toolbar that triggers an action of the window and is enabled as that is. Its
/// state is set by the window, never by the press.
class ToolbarButton : public IconButton {
    Q_OBJECT

 public:
    ToolbarButton(const QString& picture, QAction* action, QWidget* parent);

    QSize sizeHint() const override;

 protected:
    void nextCheckState() override {}
};

/// The three pictures that show and hide the panes.
class PanelsButtonView : public QWidget {
    Q_OBJECT

 public:
    PanelsButtonView(const std::function<QAction*(const QString&)>& actions, QWidget* parent);

    enum Pane { Left, Bottom, Right, PaneCount };
    void setPaneHidden(Pane pane, bool isHidden);
    void setPaneEnabled(Pane pane, bool isEnabled);

 private:
    std::array<ToolbarButton*, PaneCount> m_buttons = {};
};

/// The GroupFX item: a toggle, and beside it, while it is on, the slider of its strength.
class GroupFxView : public QWidget {
    Q_OBJECT

 public:
    explicit GroupFxView(QWidget* parent);

    bool isOn() const { return m_toggle.isChecked(); }

 Q_SIGNALS:
    void toggled();
    void widthChanged();

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void grow(int width);

    IconButton m_toggle;
    QSlider m_slider;
    QVariantAnimation m_growth;
};

/// The toolbar of a document window: items in the order that the user chose. It knows actions by
/// the names of commands, and nothing of what they do.
class Toolbar : public QWidget {
    Q_OBJECT

 public:
    /// Answers null for a command that the window does not have; its item is then disabled.
    using ActionFinder = std::function<QAction*(const QString& command)>;

    Toolbar(ActionFinder actions, QWidget* parent);

    /// The item's widget, made on first use; null for unknown identifiers, separators and spaces.
    QWidget* item(const QString& identifier);
    /// Takes the order from the user's defaults again.
    void reload();
    /// Opens the dialog in which the user chooses items and their order.
    void customize();

    // The window's state; each may be set before its item is shown.
    void setLeftPaneItemActive(bool isHidden);
    void setBottomPaneItemActive(bool isCollapsed);
    void setRightPaneItemActive(bool isHidden);
    bool bottomPaneItemActive() const { return m_paneHidden[PanelsButtonView::Bottom]; }
    void setBottomPaneEnabled(bool isEnabled);
    void setSelectCursorItemActive(bool isActive);
    void setDirectCursorItemActive(bool isActive);
    void setHandCursorItemActive(bool isActive);
    void setPlayItemActive(bool isActive);
    /// False while nobody has asked for the GroupFX item.
    bool additiveButtonIsOn() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

 Q_SIGNALS:
    void additiveButtonPressed();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

 private:
    QWidget* makeItem(const ToolbarItem& item);
    void setPaneItem(PanelsButtonView::Pane pane, bool isHidden);
    void setChecked(const QString& identifier, bool isChecked);
    void layOut();
    int widthOf(const QString& identifier);
    void showOverflowMenu();

    ActionFinder m_actions;
    QStringList m_order;
    QHash<QString, QWidget*> m_items;
    std::vector<int> m_separators;  // left edges of those that are shown
    size_t m_shownCount = 0;
    IconButton m_overflow;
    PanelsButtonView* m_panels = nullptr;
    GroupFxView* m_groupFx = nullptr;
    std::array<bool, PanelsButtonView::PaneCount> m_paneHidden = {};
    bool m_bottomPaneEnabled = true;
};

}  // namespace tweenery

#pragma once

#include <QWidget>

#include "ui/widgets/icon_button.h"

namespace tweenery {

/// The title strip of a pane: a picture, a title, perhaps a button at the right. It tells of a drag
/// along it, for panes that the strip divides.
class HeaderView : public QWidget {
    Q_OBJECT

 public:
    explicit HeaderView(QWidget* parent = nullptr);

    QString title() const { return m_title; }
    void setTitle(const QString& title);
    /// Without a font of its own the title is thin, 22 points high.
    void setTitleFont(const QFont& font);
    void setTitleColor(const QColor& color);
    /// By the name of the picture; empty: none.
    void setTitleImage(const QString& name);

    /// Adds the button, with this name for assistive tools, or takes it away for an empty one.
    void setAction(const QString& name);
    void setHeaderActionTooltip(const QString& text);

    QSize sizeHint() const override;

 Q_SIGNALS:
    void actionClicked();

    // The pointer and the strip. Over the button it counts as outside.
    void mouseDidEnter();
    void mouseDidExit();
    void mouseDidPress();
    void mouseDidRelease();
    /// By how much the pointer moved since the event before, in points, downwards positive.
    void dragDidChangeBy(QPointF delta);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    QRectF titleRect() const;
    QFont titleFont() const;
    void endDrag();

    QString m_title;
    QString m_titleImage;
    QFont m_titleFont;
    bool m_hasTitleFont = false;
    QColor m_titleColor;
    IconButton m_button;
    bool m_hasAction = false;
    bool m_isDragging = false;
    QPointF m_lastPoint;  // on the screen
};

}  // namespace tweenery

#pragma once

#include <QWidget>
#include <functional>

namespace tweenery {

/// One line of text that ends in an ellipsis where it does not fit, and is then whole in its tool
/// tip. Takes its font from the widget.
class ElidedLabel : public QWidget {
    Q_OBJECT

 public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QString text() const { return m_text; }
    void setText(const QString& text);
    /// The text's colour; asked at each painting. Without, that of the frame's text.
    void setInk(std::function<QColor()> ink);
    void setAlignment(Qt::Alignment alignment);
    /// Where it is cut; in the middle is for paths.
    void setElideMode(Qt::TextElideMode mode) { m_elideMode = mode; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

 private:
    QString m_text;
    std::function<QColor()> m_ink;
    Qt::Alignment m_alignment = Qt::AlignLeft | Qt::AlignVCenter;
    Qt::TextElideMode m_elideMode = Qt::ElideRight;

    bool isCut() const;
};

}  // namespace tweenery

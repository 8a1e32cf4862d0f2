#pragma once

#include <QScrollBar>

namespace tweenery {

/// The scroll bar below the tracks, or over their right edge. Takes distances of any size, as the
/// tracks may be longer than its own numbers reach.
class TracksScroller : public QScrollBar {
    Q_OBJECT

 public:
    TracksScroller(Qt::Orientation orientation, QWidget* parent);

    /// In points: the largest offset, the present one, and what shows at once. Tells nobody.
    void show(double range, double offset, double page);
    /// Below the thumb; invalid: what lies under it shows.
    void setFill(const QColor& fill);

 Q_SIGNALS:
    void scrolledTo(double offset);

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    double m_unit = 1;  // points
    QColor m_fill;
};

}  // namespace tweenery

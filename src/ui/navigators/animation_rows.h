#pragma once

#include <QAbstractItemView>

#include "ui/navigators/name_editing.h"

namespace tweenery {

/// Paints the setup row and the rows of animations.
class AnimationRowDelegate : public NameDelegate {
    Q_OBJECT

 public:
    explicit AnimationRowDelegate(QAbstractItemView& view);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// A name that is cut is whole there.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

 private:
    QAbstractItemView& m_view;
};

}  // namespace tweenery

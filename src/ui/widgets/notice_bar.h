#pragma once

#include <QAbstractButton>
#include <QWidget>
#include <functional>
#include <vector>

#include "ui/widgets/icon_button.h"

namespace tweenery {

enum class NoticeKind { Notice, Warning, Failure };

/// Something that needs an answer, but not now: a bar of 40 points across the canvas's top, with
/// buttons and a cross. It waits and blocks nothing. Hidden while there is no notice.
class NoticeBar : public QWidget {
    Q_OBJECT

 public:
    struct Answer {
        QString text;
        std::function<void()> action;  // the bar is hidden already
    };

    explicit NoticeBar(QWidget* parent = nullptr);

    /// Shows a notice in the place of the one before. Answers stand in this order.
    void showNotice(NoticeKind kind, const QString& text, std::vector<Answer> answers);
    void clear();
    QString text() const { return m_text; }

    QSize sizeHint() const override;

 Q_SIGNALS:
    /// The user closed the bar by its cross.
    void closed();

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

 private:
    QRect textRect() const;
    void layOutButtons();

    NoticeKind m_kind = NoticeKind::Notice;
    QString m_text;
    std::vector<QAbstractButton*> m_buttons;
    IconButton m_close;
};

}  // namespace tweenery

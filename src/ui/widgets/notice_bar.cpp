#include "ui/widgets/notice_bar.h"

#include <QHelpEvent>
#include <QPainter>
#include <QPushButton>

#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr int kNoticeMargin = 12;
constexpr int kNoticePicture = 20;
constexpr int kNoticeTextLeft = 42;
constexpr int kButtonGap = 8;
constexpr int kButtonMargin = 12;
constexpr int kButtonHeight = 26;
constexpr int kClosePicture = 20;

struct NoticeColors {
    QColor fill;
    QColor line;
    QColor ink;
};

NoticeColors colorsOf(NoticeKind kind) {
    const FrameColors& frame = Appearance::current().frame();
    if (kind == NoticeKind::Failure) {
        return {frame.failureFill, frame.failureLine, frame.failureInk};
    }
    return {frame.noticeFill, frame.noticeLine, frame.noticeInk};
}

// Outlined in the ink of its bar.
class AnswerButton : public QPushButton {
 public:
    AnswerButton(NoticeKind kind, const QString& text, QWidget* parent)
        : QPushButton(text, parent), m_kind(kind) {
        setAutoDefault(false);
        const int textWidth =
            QFontMetrics(mediumFont(sizes::frameTextSize)).horizontalAdvance(text);
        resize(textWidth + 2 * kButtonMargin, kButtonHeight);
    }

 protected:
    void paintEvent(QPaintEvent*) override {
        const NoticeColors colors = colorsOf(m_kind);
        const FrameColors& frame = Appearance::current().frame();
        QColor fill = colors.fill;
        if (underMouse()) { fill = blended(frame.hover, fill); }
        if (isDown()) { fill = blended(frame.pressed, fill); }
        QPainter painter(this);
        paintRounded(painter, rect(), sizes::buttonRadius, fill, colors.ink);
        painter.setFont(mediumFont(sizes::frameTextSize));
        painter.setPen(colors.ink);
        painter.drawText(rect(), Qt::AlignCenter, text());
    }

 private:
    NoticeKind m_kind;
};

}  // namespace

NoticeBar::NoticeBar(QWidget* parent) : QWidget(parent), m_close(u"close"_s, kClosePicture, this) {
    setFixedHeight(sizes::noticeBarHeight);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::ArrowCursor);
    setAccessibleRole(*this, QAccessible::Notification);
    m_close.setAccessibleName(u"Close"_s);
    m_close.setToolTip(u"Close"_s);
    m_close.setInk([this] { return colorsOf(m_kind).ink; });
    connect(&m_close, &QAbstractButton::clicked, this, [this] {
        clear();
        Q_EMIT closed();
    });
    hide();
}

void NoticeBar::showNotice(NoticeKind kind, const QString& text, std::vector<Answer> answers) {
    clear();
    m_kind = kind;
    m_text = text;
    setAccessibleName(text);
    for (Answer& answer : answers) {
        auto* button = new AnswerButton(kind, answer.text, this);
        connect(button, &QAbstractButton::clicked, this, [this, action = std::move(answer.action)] {
            const auto call = action;  // clear() takes the button and this closure away
            clear();
            if (call) { call(); }
        });
        m_buttons.push_back(button);
    }
    QWidget* before = nullptr;
    for (QAbstractButton* button : m_buttons) {
        button->show();
        if (before) { setTabOrder(before, button); }
        before = button;
    }
    if (before) { setTabOrder(before, &m_close); }
    layOutButtons();
    show();
    update();
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void NoticeBar::clear() {
    for (QAbstractButton* button : m_buttons) {
        button->hide();
        button->deleteLater();
    }
    m_buttons.clear();
    m_text.clear();
    hide();
}

QSize NoticeBar::sizeHint() const {
    return {400, sizes::noticeBarHeight};
}

void NoticeBar::layOutButtons() {
    int right = width() - kNoticeMargin;
    const auto placeLeftwards = [&](QWidget* widget) {
        widget->move(right - widget->width(), (height() - 1 - widget->height()) / 2);
        right = widget->x() - kButtonGap;
    };
    placeLeftwards(&m_close);
    for (auto button = m_buttons.rbegin(); button != m_buttons.rend(); ++button) {
        placeLeftwards(*button);
    }
}

QRect NoticeBar::textRect() const {
    const int right = (m_buttons.empty() ? m_close.x() : m_buttons.front()->x()) - kButtonGap;
    return {kNoticeTextLeft, 0, std::max(0, right - kNoticeTextLeft), height() - 1};
}

void NoticeBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOutButtons();
}

void NoticeBar::paintEvent(QPaintEvent*) {
    const NoticeColors colors = colorsOf(m_kind);
    QPainter painter(this);
    painter.fillRect(rect(), colors.fill);
    paintLowerLine(painter, rect(), colors.line);
    const QRectF picture(kNoticeMargin, (height() - 1 - kNoticePicture) / 2.0, kNoticePicture,
                         kNoticePicture);
    paintIcon(painter, picture, m_kind == NoticeKind::Notice ? u"info"_s : u"warning"_s,
              colors.ink);
    painter.setFont(frameFont());
    painter.setPen(colors.ink);
    painter.drawText(textRect(), Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(m_text, Qt::ElideRight, textRect().width()));
}

bool NoticeBar::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const bool isCut = QFontMetrics(frameFont()).horizontalAdvance(m_text) > textRect().width();
        setToolTip(isCut ? m_text : QString());
    }
    return QWidget::event(event);
}

}  // namespace tweenery

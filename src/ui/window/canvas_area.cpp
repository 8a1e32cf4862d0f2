#include "ui/window/canvas_area.h"

#include <QApplication>
#include <QKeyEvent>

#include "ui/canvas/canvas_view.h"
#include "ui/widgets/notice_bar.h"
#include "ui/widgets/progress_panel.h"
#include "ui/widgets/sizes.h"
#include "ui/widgets/status_plate.h"

namespace tweenery {
namespace {

constexpr int kResultMargin = 12;  // from the lower left

NoticeKind barKind(Notice::Kind kind) {
    switch (kind) {
        case Notice::Kind::Information:
            return NoticeKind::Notice;
        case Notice::Kind::Warning:
            return NoticeKind::Warning;
        case Notice::Kind::Failure:
            return NoticeKind::Failure;
    }
    return NoticeKind::Failure;
}

}  // namespace

CanvasArea::CanvasArea(CanvasView& canvas, OpenDocument& document, QWidget* parent)
    : QWidget(parent),
      m_canvas(canvas),
      m_document(document),
      m_status(new StatusPlate(&canvas)),
      m_result(new ProgressPanel(this)) {
    m_canvas.setParent(this);
    m_subscription = m_document.addObserver(this);
    documentStateDidChange();
}

void CanvasArea::documentStateDidChange() {
    for (NoticeBar* bar : std::exchange(m_bars, {})) {
        bar->deleteLater();
    }
    for (const Notice& notice : m_document.notices()) {
        addBar(notice);
    }
    layOut();
}

void CanvasArea::addBar(const Notice& notice) {
    auto* bar = new NoticeBar(this);
    std::vector<NoticeBar::Answer> answers;
    for (const Notice::Button& button : notice.buttons) {
        answers.push_back({button.title, [this, topic = notice.topic, action = button.action] {
                               m_document.answer(topic, action);
                           }});
    }
    bar->showNotice(barKind(notice.kind), notice.text, std::move(answers));
    connect(bar, &NoticeBar::closed, this,
            [this, topic = notice.topic] { m_document.dismiss(topic); });
    m_bars.push_back(bar);
}

void CanvasArea::tellStatus(const QString& text) {
    m_status->showMessage(text);
}

void CanvasArea::tellResult(const QString& title, const QString& detail, const QString& buttonText,
                            std::function<void()> action) {
    m_result->showResult(title, detail, buttonText, std::move(action));
    qApp->installEventFilter(this);
    layOut();
    m_result->raise();
}

bool CanvasArea::eventFilter(QObject* object, QEvent* event) {
    const auto* widget = qobject_cast<QWidget*>(object);
    const bool isElsewhere =
        widget && widget->window() == window() && !m_result->isAncestorOf(widget);
    const bool isPress =
        event->type() == QEvent::MouseButtonPress && isElsewhere && widget != m_result;
    const bool isEscape = event->type() == QEvent::KeyPress &&
                          static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (isPress || isEscape) {
        m_result->finish();
        qApp->removeEventFilter(this);
    }
    return QWidget::eventFilter(object, event);
}

void CanvasArea::resizeEvent(QResizeEvent*) {
    layOut();
}

void CanvasArea::layOut() {
    int top = 0;
    for (NoticeBar* bar : m_bars) {
        bar->setGeometry(0, top, width(), sizes::noticeBarHeight);
        top += sizes::noticeBarHeight;
    }
    m_canvas.setGeometry(0, top, width(), qMax(0, height() - top));
    m_result->move(kResultMargin, height() - m_result->height() - kResultMargin);
}

}  // namespace tweenery

#include "ui/window/canvas_area.h"

#include "ui/canvas/canvas_view.h"
#include "ui/widgets/notice_bar.h"
#include "ui/widgets/sizes.h"
#include "ui/widgets/status_plate.h"

namespace tweenery {
namespace {

constexpr int kStatusMargin = 16;

}  // namespace

CanvasArea::CanvasArea(CanvasView& canvas, OpenDocument& document, QWidget* parent)
    : QWidget(parent), m_canvas(canvas), m_document(document), m_status(new StatusPlate(this)) {
    m_canvas.setParent(this);
    m_subscription = m_document.addObserver(this);
    documentStateDidChange();
}

void CanvasArea::documentStateDidChange() {
    for (NoticeBar* bar : std::exchange(m_bars, {})) {
        bar->deleteLater();
    }
    for (const Notice& notice : m_document.notices()) {
        auto* bar = new NoticeBar(this);
        QStringList titles;
        for (const Notice::Button& button : notice.buttons) {
            titles << button.title;
        }
        bar->setNotice(notice.kind == Notice::Kind::Failure ? NoticeBar::Kind::Failure
                                                            : NoticeBar::Kind::Notice,
                       notice.text, titles);
        connect(bar, &NoticeBar::buttonPressed, this, [this, notice](int index) {
            m_document.answer(notice.topic, notice.buttons[static_cast<size_t>(index)].action);
        });
        connect(bar, &NoticeBar::closed, this,
                [this, topic = notice.topic] { m_document.dismiss(topic); });
        bar->show();
        m_bars.push_back(bar);
    }
    layOut();
}

void CanvasArea::tellStatus(const QString& text) {
    m_status->tell(text);
    layOut();
    m_status->raise();
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
    m_status->move(kStatusMargin, height() - kStatusMargin - m_status->height());
}

}  // namespace tweenery

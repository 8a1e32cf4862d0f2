#include "ui/widgets/pane_list_view.h"

#include "ui/widgets/appearance.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

PaneListView::PaneListView(QWidget* parent)
    : QScrollArea(parent), m_document(new QWidget), m_overlay(Qt::Vertical, this) {
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setBackgroundRole(QPalette::AlternateBase);
    setWidget(m_document);
    QPalette gaps;  // between the panes, and below the last one
    gaps.setColor(QPalette::Window, Appearance::current().workbench().rowLowerEdge);
    m_document->setPalette(gaps);
    m_document->setAutoFillBackground(true);

    QScrollBar* hidden = verticalScrollBar();
    m_overlay.setCursor(Qt::ArrowCursor);
    m_overlay.setAttribute(Qt::WA_NoSystemBackground);
    connect(hidden, &QScrollBar::rangeChanged, this, [this, hidden](int least, int most) {
        m_overlay.setRange(least, most);
        m_overlay.setPageStep(hidden->pageStep());
        m_overlay.setVisible(most > least);
    });
    connect(hidden, &QScrollBar::valueChanged, &m_overlay, &QScrollBar::setValue);
    connect(&m_overlay, &QScrollBar::valueChanged, hidden, &QScrollBar::setValue);
    m_overlay.hide();
}

PaneListView::~PaneListView() {
    takePanesOut();
}

void PaneListView::setPanes(std::function<std::vector<QWidget*>()> panes) {
    m_panes = std::move(panes);
}

void PaneListView::takePanesOut() {
    for (QObject* child : QObjectList(m_document->children())) {
        auto* pane = static_cast<QWidget*>(child);
        pane->hide();
        pane->setParent(nullptr);
    }
}

void PaneListView::reloadData() {
    takePanesOut();
    m_documentHeight = 0;
    const std::vector<QWidget*> panes = m_panes ? m_panes() : std::vector<QWidget*>();
    for (QWidget* pane : panes) {
        const QRect frame = pane->geometry();
        pane->setParent(m_document);
        pane->setGeometry(frame.x(), m_documentHeight, frame.width(), frame.height());
        pane->show();
        m_documentHeight += frame.height() + sizes::paneGap;
    }
    layOutDocument();
}

void PaneListView::layOutDocument() {
    m_document->resize(viewport()->width(), m_documentHeight);
}

void PaneListView::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    layOutDocument();
    m_overlay.setGeometry(width() - sizes::scrollBar, 0, sizes::scrollBar, height());
    m_overlay.raise();
}

}  // namespace tweenery

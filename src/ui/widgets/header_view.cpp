#include "ui/widgets/header_view.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr int kHeaderTextGap = 2;

}  // namespace

HeaderView::HeaderView(QWidget* parent)
    : QWidget(parent), m_button(u"add_button"_s, sizes::headerButton, this) {
    m_button.setAccessibleName(QStringLiteral("Add"));  // until it has an action
    setFixedHeight(sizes::headerHeight);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleRole(*this, QAccessible::Pane);
    m_button.setAlternatePicture(u"add_button_alt"_s);
    m_button.setHoverPlate(false);
    m_button.setInk([] { return Appearance::current().workbench().headerInk; });
    m_button.setCursor(Qt::ArrowCursor);
    m_button.installEventFilter(this);
    m_button.hide();
    connect(&m_button, &QAbstractButton::clicked, this, &HeaderView::actionClicked);
}

void HeaderView::setTitle(const QString& title) {
    m_title = title;
    setAccessibleName(title);
    update();
}

void HeaderView::setTitleFont(const QFont& font) {
    m_titleFont = font;
    m_hasTitleFont = true;
    update();
}

void HeaderView::setTitleColor(const QColor& color) {
    m_titleColor = color;
    update();
}

void HeaderView::setTitleImage(const QString& name) {
    m_titleImage = name;
    update();
}

void HeaderView::setAction(const QString& name) {
    m_hasAction = !name.isEmpty();
    m_button.setAccessibleName(name);
    if (m_button.toolTip().isEmpty()) { m_button.setToolTip(name); }
    m_button.setVisible(m_hasAction);
    update();
}

void HeaderView::setHeaderActionTooltip(const QString& text) {
    m_button.setToolTip(text);
}

QSize HeaderView::sizeHint() const {
    return {sizes::leastLeftPaneWidth, sizes::headerHeight};
}

QFont HeaderView::titleFont() const {
    if (m_hasTitleFont) { return m_titleFont; }
    return Appearance::current().increasesContrast()
               ? regularFont(sizes::headerTextSize)
               : thinFont(sizes::headerTextSize, devicePixelRatioF());
}

QRectF HeaderView::titleRect() const {
    const int right = m_hasAction ? m_button.x() - kHeaderTextGap : width() - kHeaderTextGap;
    return QRectF(sizes::headerTextLeft, 0, std::max(0, right - sizes::headerTextLeft), height());
}

void HeaderView::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0, colors.headerTop);
    gradient.setColorAt(1, colors.headerBottom);
    painter.fillRect(rect(), gradient);

    const QColor ink = m_titleColor.isValid() ? m_titleColor : colors.headerInk;
    if (!m_titleImage.isEmpty()) {
        const QRectF picture(sizes::headerPictureLeft, (height() - sizes::headerPicture) / 2.0,
                             sizes::headerPicture, sizes::headerPicture);
        paintIcon(painter, picture, m_titleImage, ink);
    }
    painter.setFont(titleFont());
    const QString text = painter.fontMetrics().elidedText(m_title, Qt::ElideRight,
                                                          static_cast<int>(titleRect().width()));
    const int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine;
    painter.setPen(colors.headerShadow);
    painter.drawText(titleRect().translated(0, 1), flags, text);
    painter.setPen(ink);
    painter.drawText(titleRect(), flags, text);
}

void HeaderView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_button.setGeometry(width() - sizes::headerButtonFromRight, sizes::headerButtonTop,
                         sizes::headerButton, sizes::headerButton);
}

void HeaderView::enterEvent(QEnterEvent* event) {
    QWidget::enterEvent(event);
    Q_EMIT mouseDidEnter();
}

void HeaderView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    Q_EMIT mouseDidExit();
}

bool HeaderView::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::Enter) { Q_EMIT mouseDidExit(); }
    if (event->type() == QEvent::Leave && underMouse()) { Q_EMIT mouseDidEnter(); }
    return QWidget::eventFilter(object, event);
}

void HeaderView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) { return; }
    m_isDragging = true;
    m_lastPoint = event->globalPosition();
    Q_EMIT mouseDidPress();
}

void HeaderView::mouseMoveEvent(QMouseEvent* event) {
    if (!m_isDragging) { return; }
    const QPointF point = event->globalPosition();
    const QPointF delta = point - m_lastPoint;
    m_lastPoint = point;
    Q_EMIT dragDidChangeBy(delta);
}

void HeaderView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) { endDrag(); }
}

void HeaderView::endDrag() {
    if (!m_isDragging) { return; }
    m_isDragging = false;
    Q_EMIT mouseDidRelease();
}

bool HeaderView::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::UngrabMouse:
        case QEvent::WindowDeactivate:
        case QEvent::WindowBlocked:
        case QEvent::Hide:
            endDrag();  // the release will not come
            break;
        case QEvent::ToolTip: {
            const bool isCut =
                QFontMetricsF(titleFont()).horizontalAdvance(m_title) > titleRect().width();
            setToolTip(isCut ? m_title : QString());
            break;
        }
        default:
            break;
    }
    return QWidget::event(event);
}

}  // namespace tweenery

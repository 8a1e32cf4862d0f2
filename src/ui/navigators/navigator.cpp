#include "ui/navigators/navigator.h"

#include <algorithm>

#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kShareOfElements = 0.6;
constexpr int kLeastUpper = sizes::headerHeight + sizes::elementRow;
constexpr int kLeastLower = sizes::headerHeight + sizes::setupRow;

}  // namespace

Navigator::Navigator(DocumentContext& document, QWidget* parent)
    : QWidget(parent),
      m_elementsHeader(this),
      m_elements(document, this),
      m_animationsHeader(this),
      m_animations(document, this),
      m_share(kShareOfElements) {
    addCommands(document);
    setUpHeaders(document.commands());
}

void Navigator::addCommands(DocumentContext& document) {
    CommandSet& commands = document.commands();
    const PCElementSelectionManager& selection = document.selectionManager();
    commands.add(u"renameElement"_s,
                 {[this] { m_elements.renameTopSelectedRow(); },
                  [&selection] { return selection.selectedElementsCount() == 1; }});
    commands.add(u"renameAnimation"_s,
                 {[this] { m_animations.startRenaming(m_animations.currentIndex()); },
                  [&document] { return !document.project()->isSetupMode(); }});
    commands.add(u"addAnimation"_s, {[this] { m_animations.addAnimation(); }});
}

void Navigator::setUpHeaders(CommandSet& commands) {
    m_elementsHeader.setTitle(u"Elements"_s);
    m_elementsHeader.setTitleImage(u"element_icon"_s);
    m_elementsHeader.setAction(u"Add Element"_s);
    m_elementsHeader.setHeaderActionTooltip(u"Add Element"_s);
    connect(&m_elementsHeader, &HeaderView::actionClicked, this,
            [&commands] { commands.perform(u"importImages"_s); });

    m_animationsHeader.setTitle(u"Animations"_s);
    m_animationsHeader.setTitleImage(u"animation_guy"_s);
    m_animationsHeader.setAction(u"Add Animation"_s);
    m_animationsHeader.setHeaderActionTooltip(u"Add Animation"_s);
    connect(&m_animationsHeader, &HeaderView::actionClicked, this,
            [&commands] { commands.perform(u"addAnimation"_s); });

    HeaderView* strip = &m_animationsHeader;
    const auto showResizeCursor = [strip] { strip->setCursor(Qt::SizeVerCursor); };
    connect(strip, &HeaderView::mouseDidEnter, this, showResizeCursor);
    connect(strip, &HeaderView::mouseDidPress, this, showResizeCursor);
    connect(strip, &HeaderView::mouseDidRelease, this, showResizeCursor);
    connect(strip, &HeaderView::mouseDidExit, strip, &QWidget::unsetCursor);
    connect(strip, &HeaderView::dragDidChangeBy, this,
            [this](QPointF delta) { setDividerPosition(m_divider + qRound(delta.y())); });
}

void Navigator::endEditing() {
    m_elements.endEditing();
    m_animations.endEditing();
}

void Navigator::setDividerPosition(int position) {
    m_divider = position;
    layOut();
    m_share = static_cast<double>(m_divider) / std::max(height(), 1);
}

void Navigator::resizeEvent(QResizeEvent*) {
    m_divider = qRound(height() * m_share);
    layOut();
}

void Navigator::layOut() {
    const int lowest = std::max(height() - kLeastLower, kLeastUpper);
    m_divider = std::clamp(m_divider, kLeastUpper, lowest);
    const int strip = sizes::headerHeight;
    m_elementsHeader.setGeometry(0, 0, width(), strip);
    m_elements.setGeometry(0, strip, width(), m_divider - strip);
    m_animationsHeader.setGeometry(0, m_divider, width(), strip);
    m_animations.setGeometry(0, m_divider + strip, width(), height() - m_divider - strip);
}

QSize Navigator::minimumSizeHint() const {
    return {sizes::leastLeftPaneWidth, kLeastUpper + kLeastLower};
}

}  // namespace tweenery

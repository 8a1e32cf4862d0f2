#include "ui/inspector/image_pane.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "base/errors.h"
#include "base/path_name.h"
#include "editor/inspector/image_choices.h"
#include "ui/inspector/image_chooser.h"
#include "ui/inspector/thumbnail.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/popover.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kBadge = 18;
constexpr int kBadgeMargin = 4;
constexpr int kBadgeRadius = 4;
constexpr int kBadgePicture = 14;
constexpr int kCaptionSize = 13;
constexpr int kCaptionLine = 16;

QStringList detailsOf(const PCImageSet& set) {
    try {
        const QSize size = set.size();
        return {u"%1 × %2"_s.arg(size.width()).arg(size.height()), densityName(set)};
    } catch (const InputError&) { return {u"damaged"_s}; }
}

}  // namespace

// The button.

ImageButton::ImageButton(QWidget* parent) : QAbstractButton(parent) {
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(u"Image Source"_s);
    setToolTip(u"Change Image"_s);
    resize(sizes::thumbnail, sizes::thumbnail);
}

void ImageButton::setImageSet(const PCImageSetManager::ImageSet& set) {
    m_set = set;
    setAccessibleDescription(set ? withoutPathExtension(set->name()) : u"No image"_s);
    update();
}

void ImageButton::setOpen(bool isOpen) {
    m_isOpen = isOpen;
    update();
}

bool ImageButton::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) { update(); }
    return QAbstractButton::event(event);
}

void ImageButton::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    if (!m_set) { painter.setOpacity(0.5); }
    const bool isMarked = isEnabled() && (m_isOpen || isDown() || underMouse());
    paintThumbnail(painter, rect(), m_set.get(), true, isMarked ? colors.accent : colors.fieldLine,
                   isMarked ? 2 : 1);
    const QRectF badge(width() - kBadge - kBadgeMargin, height() - kBadge - kBadgeMargin, kBadge,
                       kBadge);
    paintRounded(painter, badge, kBadgeRadius, colors.badge, {});
    QRectF picture(0, 0, kBadgePicture, kBadgePicture);
    picture.moveCenter(badge.center());
    paintIcon(painter, picture, u"chev_down"_s, colors.knob);
}

// The pane.

ImagePane::ImagePane(PCDocumentWindowController& controller)
    : PropertyPane(InspectorPaneKind::Image, sizes::imagePane, controller), m_button(this) {
    m_button.move(sizes::paneFieldLeft, (height() - sizes::thumbnail) / 2);
    connect(&m_button, &QAbstractButton::clicked, this, &ImagePane::openChooser);
}

void ImagePane::showValues(const InspectorValues& values, EditTime when) {
    PropertyPane::showValues(values, when);
    const PCElementSelectionManager& selection = controller().selectionManager();
    m_button.setEnabled(selection.selectedElementsCount() == 1);
    PCImageSetManager& manager = controller().project()->imageSetManager();
    const auto set = manager.imageSetWithName(shownImageName(selection, when));
    if (m_chooser) { m_chooser->reload(); }
    if (set == m_set && m_revision == manager.revision()) { return; }
    m_revision = manager.revision();
    m_set = set;
    m_name = set ? withoutPathExtension(set->name()) : QString();
    m_details = set ? detailsOf(*set) : QStringList();
    m_button.setImageSet(set);
    update();
}

QRect ImagePane::nameRect() const {
    const int lines = 1 + static_cast<int>(m_details.size());
    return {sizes::paneExtraLeft, (height() - lines * kCaptionLine) / 2, sizes::paneExtraWidth,
            kCaptionLine};
}

void ImagePane::paintEvent(QPaintEvent* event) {
    PropertyPane::paintEvent(event);
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    painter.setPen(colors.paneInk);
    painter.setFont(lightFont(sizes::paneLabelSize));
    painter.drawText(QRect(0, 0, sizes::paneFieldLeft - sizes::paneRowGap, height()),
                     Qt::AlignRight | Qt::AlignVCenter, u"Image Source:"_s);
    if (!m_set) { return; }
    QRect line = nameRect();
    painter.setFont(regularFont(kCaptionSize));
    const auto draw = [&](const QString& text) {
        painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(text, Qt::ElideRight, line.width()));
        line.translate(0, kCaptionLine);
    };
    draw(m_name);
    painter.setFont(lightFont(kCaptionSize));
    painter.setPen(colors.paneSecondInk);
    for (const QString& text : m_details) {
        draw(text);
    }
}

bool ImagePane::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const bool isOverName = nameRect().contains(static_cast<QHelpEvent*>(event)->pos());
        const int width = QFontMetrics(regularFont(kCaptionSize)).horizontalAdvance(m_name);
        setToolTip(isOverName && width > sizes::paneExtraWidth ? m_name : QString());
    }
    return PropertyPane::event(event);
}

// Choosing.

void ImagePane::openChooser() {
    if (m_popover) { return m_popover->dismiss(); }
    m_chooser = new ImageChooser(controller());
    m_popover = new Popover(m_chooser, window());
    m_popover->setAccessibleName(u"Image Source"_s);
    connect(m_chooser, &ImageChooser::chosen, this, &ImagePane::choose);
    connect(m_chooser, &ImageChooser::browseRequested, this, &ImagePane::browse);
    connect(m_chooser, &ImageChooser::sizeHintChanged, m_popover, &Popover::place);
    connect(m_popover, &Popover::closed, this, [this] { m_button.setOpen(false); });
    m_button.setOpen(true);
    m_popover->popUp(m_button, m_button.rect(), Popover::Side::Below);
}

void ImagePane::choose(const QString& imageName) {
    apply([&] { edits().setImage(imageName); });
}

void ImagePane::apply(const std::function<void()>& edit) {
    try {
        edit();
    } catch (const InputError& error) {
        controller().tellFailure(u"The Image Cannot Be Used"_s,
                                 u"“%1” %2."_s.arg(error.entry(), error.reason()));
    }
    Q_EMIT edited();
}

void ImagePane::browse() {
    if (m_popover) { m_popover->dismiss(); }
    const QStringList files = controller().ports().openPanel.chooseFiles(
        {u"Choose an image:"_s, PCImage::suppertedFileTypes(), false});
    if (files.isEmpty()) { return; }
    const auto import = [&] {
        const auto sets = controller().addImagesToProject(files);
        return sets.empty() ? QString() : sets.front()->name();
    };
    apply([&] { edits().setImportedImage(import); });
}

}  // namespace tweenery

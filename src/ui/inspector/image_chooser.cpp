#include "ui/inspector/image_chooser.h"

#include "ui/inspector/image_grid.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kGap = 10;
constexpr int kFoot = 27;  // below the lower grid
constexpr QRect kBrowse(20, 10, 270, 41);
constexpr int kLabelLeft = 18;
constexpr int kLabelHeight = 17;
constexpr QSize kRemove(92, 26);
constexpr int kRemoveLeft = 198;

QLabel* heading(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = frameFont();
    font.setWeight(QFont::DemiBold);
    label->setFont(font);
    return label;
}

}  // namespace

ImageChooser::ImageChooser(PCDocumentWindowController& controller)
    : m_controller(controller),
      m_document(new QWidget),
      m_browse(new QPushButton(u"Browse…"_s, m_document)),
      m_usedLabel(heading(u"Used in this project"_s, m_document)),
      m_used(new ImageGrid(u"Used in this project"_s, m_document)),
      m_unusedLabel(heading(u"Not used"_s, m_document)),
      m_remove(new QPushButton(u"Remove"_s, m_document)),
      m_unused(new ImageGrid(u"Not used"_s, m_document)) {
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    m_document->setAutoFillBackground(false);
    setWidget(m_document);
    m_document->setAutoFillBackground(false);
    m_browse->setAutoDefault(false);
    m_browse->setAccessibleName(u"Browse"_s);
    m_browse->setToolTip(u"Add an image from a PNG or JPEG file"_s);
    m_remove->setAutoDefault(false);
    connect(m_browse, &QPushButton::clicked, this, &ImageChooser::browseRequested);
    connect(m_remove, &QPushButton::clicked, this, &ImageChooser::removeUnused);
    for (ImageGrid* grid : {m_used, m_unused}) {
        connect(grid, &ImageGrid::chosen, this, &ImageChooser::chosen);
    }
    reload();
}

QSize ImageChooser::sizeHint() const {
    return {sizes::chooserWidth, m_document->height()};
}

void ImageChooser::reload() {
    PCProject& project = *m_controller.project();
    const QString inUse = shownImageName(m_controller.selectionManager(), m_controller.editTime());
    const int64_t changeCount = project.undoManager().changeCount();
    const uint64_t revision = project.imageSetManager().revision();
    if (changeCount != m_changeCount || revision != m_revision) {
        m_choices = imageChoices(project);
        m_changeCount = changeCount;
        m_revision = revision;
    }
    m_used->setImageSets(m_choices.used, inUse);
    m_unused->setImageSets(m_choices.unused, inUse);
    m_remove->setEnabled(!m_choices.unused.empty());
    m_remove->setToolTip(m_choices.failure.isEmpty()
                             ? u"Remove all images that are not used"_s
                             : u"What is used is not known. "_s + m_choices.failure);
    layOut();
}

void ImageChooser::layOut() {
    const int former = m_document->height();
    m_browse->setGeometry(kBrowse);
    int y = kBrowse.bottom() + 1 + kGap;
    m_usedLabel->setGeometry(kLabelLeft, y, sizes::chooserWidth - 2 * kLabelLeft, kLabelHeight);
    y += kLabelHeight + kGap;
    m_used->setGeometry(0, y, sizes::chooserWidth, m_used->contentHeight());
    y += m_used->contentHeight() + kGap;
    m_unusedLabel->setGeometry(kLabelLeft, y, kRemoveLeft - kLabelLeft, kLabelHeight);
    m_remove->setGeometry(QRect({kRemoveLeft, y}, kRemove));
    y += kRemove.height() + kGap;
    m_unused->setGeometry(0, y, sizes::chooserWidth, m_unused->contentHeight());
    y += m_unused->contentHeight() + kFoot;
    m_document->resize(sizes::chooserWidth, y);
    if (y != former) { Q_EMIT sizeHintChanged(); }
}

void ImageChooser::removeUnused() {
    m_controller.stopPlaybackHere();
    removeImageSets(*m_controller.project(), m_choices.unused);
    if (m_remove->hasFocus()) { m_browse->setFocus(Qt::OtherFocusReason); }
    reload();
}

}  // namespace tweenery

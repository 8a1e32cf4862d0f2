#include "ui/export/export_sheet.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>

#include "publish/export_words.h"
#include "ui/export/preview_view.h"
#include "ui/widgets/accessible_role.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kTitleSize = 22;
constexpr int kRowGap = 8;
constexpr int kCaptionGap = 8;
constexpr int kToggleLabelGap = 5;
constexpr int kTogglesPerLine = 2;
constexpr int kFootGap = 12;

const FrameColors& colors() {
    return Appearance::current().frame();
}

// What stands on paper keeps its ink on a dark desktop.
const FrameColors& paperColors() {
    return frameColors(false, Appearance::current().increasesContrast());
}

// One colour, from edge to edge.
class Plane : public QWidget {
 public:
    explicit Plane(std::function<QColor()> color) : m_color(std::move(color)) {}

 protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), m_color()); }

 private:
    std::function<QColor()> m_color;
};

QWidget* rule(bool isUpright) {
    auto* line = new Plane([] { return colors().separator; });
    isUpright ? line->setFixedWidth(1) : line->setFixedHeight(1);
    return line;
}

template <class Layout>
Layout* layoutOf(QWidget& widget, QMargins margins = {}, int spacing = 0) {
    auto* layout = new Layout(&widget);
    layout->setContentsMargins(margins);
    layout->setSpacing(spacing);
    return layout;
}

QLabel* caption(const QString& text, const QFont& font, QPalette::ColorRole role) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    label->setForegroundRole(role);
    return label;
}

// Scrolls what does not fit, over whatever lies behind.
QScrollArea* scrolling(QWidget* content) {
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(content);
    area->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    return area;
}

QString sizeText(QSizeF size) {
    return u"%1 × %2"_s.arg(qRound(size.width())).arg(qRound(size.height()));
}

}  // namespace

ExportSheet::ExportSheet(ExportSession::Subject subject, const ExportSession::Ports& ports,
                         ExportHistory history, int top, QWidget& window)
    : QWidget(&window),
      m_session(std::move(subject), ports, std::move(history), hooks()),
      m_top(top),
      m_panel(new QWidget(this)) {
    setAccessibleRole(*this, QAccessible::Dialog);
    setAccessibleName(u"Export"_s);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::ArrowCursor);
    auto* column = layoutOf<QVBoxLayout>(*m_panel);
    column->addWidget(makeHead());
    column->addWidget(rule(false));
    auto* body = new QHBoxLayout;
    body->setSpacing(0);
    body->addWidget(makeList());
    body->addWidget(rule(true));
    body->addWidget(makeMiddle(), 1);
    body->addWidget(rule(true));
    body->addWidget(makeToggles());
    column->addLayout(body, 1);
    column->addWidget(rule(false));
    column->addWidget(makeFoot());
    m_progress = new ProgressPanel(this);
    connect(m_progress, &ProgressPanel::stopped, this, [this] { m_session.stop(); });
    connect(&Appearance::current(), &Appearance::changed, this, qOverload<>(&QWidget::update));
    window.installEventFilter(this);
    refresh();
    layOut();
    show();
    raise();
    setFocus();
}

ExportSheet::~ExportSheet() {
    parentWidget()->removeEventFilter(this);
}

ExportSession::Hooks ExportSheet::hooks() {
    return {[this] { refresh(); },
            [this](size_t written, size_t all) {
                m_progress->setProgress(u"Writing images"_s, static_cast<int>(written),
                                        static_cast<int>(all));
            },
            [this](const ExportOutcome& outcome) { Q_EMIT exported(outcome); }};
}

// Parts.

QWidget* ExportSheet::makeHead() {
    auto* head = new Plane([] { return colors().paper; });
    head->setFixedHeight(sizes::sheetHead);
    auto* row = layoutOf<QHBoxLayout>(*head, {sizes::sheetMargin, 0, sizes::sheetMargin, 0},
                                      sizes::sheetMargin);
    auto* title = new ElidedLabel;
    title->setFont(lightFont(kTitleSize));
    title->setText(u"Export"_s);
    title->setInk([] { return paperColors().ink; });
    title->setFixedWidth(title->sizeHint().width());
    m_subtitle = new ElidedLabel;
    m_subtitle->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_subtitle->setInk([] { return paperColors().secondInk; });
    row->addWidget(title);
    row->addWidget(m_subtitle, 1);
    return head;
}

QWidget* ExportSheet::makeList() {
    auto* list = new Plane([] { return colors().paper; });
    list->setFixedWidth(sizes::sheetListWidth);
    auto* column = layoutOf<QVBoxLayout>(*list, {0, 12, 0, 0}, kCaptionGap);
    auto* heading = new ElidedLabel;
    heading->setFont(mediumFont(sizes::captionTextSize));
    heading->setText(u"Animations"_s);
    heading->setInk([] { return paperColors().secondInk; });
    heading->setContentsMargins(0, 0, 0, 0);
    auto* headingRow = new QHBoxLayout;
    headingRow->setContentsMargins(sizes::sheetMargin, 0, sizes::sheetMargin, 0);
    headingRow->addWidget(heading);
    column->addLayout(headingRow);
    auto* rows = new QWidget;
    setAccessibleRole(*rows, QAccessible::List);
    rows->setAccessibleName(u"Animations"_s);
    m_rows = layoutOf<QVBoxLayout>(*rows, {sizes::sheetMargin, 4, sizes::sheetMargin, 16}, kRowGap);
    m_rows->addStretch();
    column->addWidget(scrolling(rows), 1);
    return list;
}

QWidget* ExportSheet::makeMiddle() {
    auto* middle = new QWidget;
    auto* column = layoutOf<QVBoxLayout>(*middle);
    m_preview = new PreviewView(m_session);
    column->addWidget(m_preview, 1);
    column->addWidget(rule(false));
    column->addWidget(makeNotes());
    return middle;
}

QWidget* ExportSheet::makeNotes() {
    auto* notes = new QWidget;
    notes->setFixedHeight(sizes::sheetNotesHeight);
    auto* column = layoutOf<QVBoxLayout>(*notes, {8, 10, 8, 4}, 4);
    auto* head = new QHBoxLayout;
    head->setContentsMargins(8, 0, 8, 0);
    head->addWidget(caption(u"Before you export"_s, mediumFont(sizes::captionTextSize),
                            QPalette::PlaceholderText),
                    1);
    m_notesCount = caption({}, regularFont(sizes::captionTextSize), QPalette::PlaceholderText);
    head->addWidget(m_notesCount);
    column->addLayout(head);
    auto* rows = new QWidget;
    setAccessibleRole(*rows, QAccessible::List);
    rows->setAccessibleName(u"Before you export"_s);
    m_notes = layoutOf<QVBoxLayout>(*rows);
    m_notes->addStretch();
    column->addWidget(scrolling(rows), 1);
    return notes;
}

QWidget* ExportSheet::makeToggles() {
    auto* sections = new QWidget;
    auto* column = layoutOf<QVBoxLayout>(*sections);
    const std::span<const ExportToggle> all = exportToggles();
    for (size_t first = 0; first < all.size();) {
        size_t end = first + 1;
        while (end < all.size() &&
               QLatin1String(all[end].section) == QLatin1String(all[first].section)) {
            ++end;
        }
        if (first > 0) {
            auto* line = new QHBoxLayout;
            line->setContentsMargins(24, 0, 24, 0);
            line->addWidget(rule(false));
            column->addLayout(line);
        }
        column->addWidget(makeToggleSection(all.subspan(first, end - first)));
        first = end;
    }
    column->addStretch();
    QScrollArea* area = scrolling(sections);
    area->setFixedWidth(sizes::sheetTogglesWidth);
    return area;
}

QWidget* ExportSheet::makeToggleSection(std::span<const ExportToggle> choices) {
    auto* section = new QWidget;
    auto* column = layoutOf<QVBoxLayout>(*section, {0, 12, 0, 18}, kToggleLabelGap);
    auto* heading = caption(QString::fromLatin1(choices.front().section),
                            mediumFont(sizes::captionTextSize), QPalette::PlaceholderText);
    heading->setIndent(24);
    column->addWidget(heading);
    auto* grid = new QGridLayout;
    grid->setContentsMargins(sizes::sheetMargin, 0, sizes::sheetMargin, 0);
    grid->setSpacing(0);
    int place = 0;
    for (const ExportToggle& choice : choices) {
        grid->addWidget(makeToggle(choice), place / kTogglesPerLine, place % kTogglesPerLine);
        ++place;
    }
    column->addLayout(grid);
    return section;
}

QWidget* ExportSheet::makeToggle(const ExportToggle& choice) {
    auto* cell = new QWidget;
    cell->setFixedWidth(sizes::sheetToggleColumn);
    auto* column = layoutOf<QVBoxLayout>(*cell, {}, kToggleLabelGap);
    auto* button = new ToggleIconButton;
    button->setFixedSize(button->sizeHint());
    button->setOnIcon(QString::fromLatin1(choice.onIcon));
    if (choice.offIcon) { button->setOffIcon(QString::fromLatin1(choice.offIcon)); }
    button->setOnColor(Appearance::current().workbench().exportToggleOn);
    button->setOffColor(Appearance::current().workbench().exportToggleOff);
    const QString toolTip = QString::fromLatin1(choice.toolTip);
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    connect(button, &QAbstractButton::clicked, this, [this, &choice] { m_session.press(choice); });
    auto* label = caption(QString::fromLatin1(choice.label), frameFont(), QPalette::WindowText);
    label->setAlignment(Qt::AlignCenter);
    column->addWidget(button, 0, Qt::AlignHCenter);
    column->addWidget(label);
    m_toggles.push_back({&choice, button, label});
    return cell;
}

QWidget* ExportSheet::makeFoot() {
    auto* foot = new QWidget;
    foot->setFixedHeight(sizes::sheetFoot);
    auto* row =
        layoutOf<QHBoxLayout>(*foot, {sizes::sheetMargin, 0, sizes::sheetMargin, 0}, kFootGap);
    auto* lines = new QVBoxLayout;
    lines->setSpacing(2);
    lines->addStretch();
    m_deletion = new ElidedLabel;
    m_deletion->setInk([] { return colors().danger; });
    m_forecast = new ElidedLabel;
    m_forecast->setInk([] { return colors().secondInk; });
    for (ElidedLabel* line : {m_deletion, m_forecast}) {
        line->setElideMode(Qt::ElideMiddle);
        lines->addWidget(line);
    }
    lines->addStretch();
    row->addLayout(lines, 1);
    m_cancel = new QPushButton(u"Cancel"_s);
    m_cancel->setToolTip(u"Cancel"_s);
    connect(m_cancel, &QAbstractButton::clicked, this, &ExportSheet::cancel);
    m_export = new QPushButton(u"Export"_s);
    m_export->setToolTip(u"Export"_s);
    m_export->setDefault(true);
    connect(m_export, &QAbstractButton::clicked, this, &ExportSheet::beginExport);
    row->addWidget(m_cancel);
    row->addWidget(m_export);
    return foot;
}

// What shows.

void ExportSheet::refresh() {
    QStringList title{m_session.projectName()};
    if (const ExportPreview* preview = m_session.preview()) {
        title << sizeText(preview->canvasSize());
    }
    m_subtitle->setText(title.join(u" · "_s));
    updateAnimations();
    updateNotes();
    updateToggles();
    updateFoot();
    m_preview->refresh();
    if (!m_session.isRunning()) { m_progress->finish(); }
}

void ExportSheet::updateAnimations() {
    const ExportPreview* preview = m_session.preview();
    if (!preview) { return; }
    const auto& animations = preview->animations();
    while (m_animations.size() < animations.size()) {
        const size_t index = m_animations.size();
        auto* cell = new PCPreviewAnimationCellView;
        connect(cell, &QAbstractButton::clicked, this,
                [this, index] { m_session.toggleAnimation(index); });
        m_rows->insertWidget(static_cast<int>(index), cell);
        m_animations.push_back(cell);
    }
    for (size_t i = 0; i < animations.size(); ++i) {
        m_animations[i]->show(animations[i]);
    }
}

void ExportSheet::updateNotes() {
    const auto& notes = m_session.forecast().notes;
    const bool areShown = std::equal(
        notes.begin(), notes.end(), m_noteRows.begin(), m_noteRows.end(),
        [](const ExportDiagnostic& note, const ExportNoteRow* row) {
            return note.kind == row->note().kind && note.identifier == row->note().identifier &&
                   note.sentence == row->note().sentence;
        });
    m_notesCount->setText(wordsOfNotes(notes.size()));
    if (areShown) { return; }
    for (ExportNoteRow* row : std::exchange(m_noteRows, {})) {
        delete row;
    }
    for (const ExportDiagnostic& note : notes) {
        auto* row = new ExportNoteRow(note);
        connect(row, &QAbstractButton::clicked, this, [this, row] {
            const ExportDiagnostic chosen = row->note();
            Q_EMIT noteChosen(chosen);
        });
        m_notes->insertWidget(static_cast<int>(m_noteRows.size()), row);
        m_noteRows.push_back(row);
    }
}

void ExportSheet::updateToggles() {
    for (const Toggle& toggle : m_toggles) {
        const bool isOn = m_session.isOn(*toggle.choice);
        const bool isAvailable = m_session.isAvailable(*toggle.choice);
        toggle.button->setState(isOn);
        toggle.button->setEnabled(isAvailable);
        toggle.label->setEnabled(isAvailable);
        toggle.label->setFont(isOn ? mediumFont(sizes::frameTextSize) : frameFont());
        toggle.label->setForegroundRole(isOn ? QPalette::WindowText : QPalette::PlaceholderText);
    }
}

void ExportSheet::updateFoot() {
    const ExportForecast& forecast = m_session.forecast();
    const QString deletion = wordsOfDeletion(forecast, m_session.choices());
    m_deletion->setText(deletion);
    m_deletion->setVisible(!deletion.isEmpty());
    m_forecast->setText(m_session.message().isEmpty() ? wordsOfForecast(forecast)
                                                      : m_session.message());
    m_export->setEnabled(m_session.canExport());
}

void ExportSheet::layOut() {
    setGeometry(parentWidget()->rect());
    const int width = qMin(sizes::sheetWidth, this->width() - 2 * sizes::sheetMargin);
    const int room = height() - sizes::sheetMargin;
    const int height = qMin(sizes::sheetHeight, room - sizes::sheetMargin);
    m_panel->setGeometry((this->width() - width) / 2, qMin(m_top, room - height), width, height);
    m_progress->adjustSize();
    m_progress->move(m_panel->geometry().center() - m_progress->rect().center());
}

void ExportSheet::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), colors().dim);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF sheet = m_panel->geometry();
    QPainterPath outline;
    outline.setFillRule(Qt::WindingFill);
    outline.addRoundedRect(sheet, sizes::sheetRadius, sizes::sheetRadius);
    outline.addRect(sheet.adjusted(0, 0, 0, -sizes::sheetRadius));
    painter.fillPath(outline, colors().frame);
}

// Input.

void ExportSheet::beginExport() {
    m_session.beginExport();
    if (!m_session.isRunning()) { return; }
    m_progress->start(u"Exporting “%1”"_s.arg(m_session.projectName()));
    layOut();
}

void ExportSheet::cancel() {
    if (m_session.isRunning()) { return m_session.stop(); }
    if (ExportPreview* preview = m_session.preview()) { preview->stopAll(); }
    Q_EMIT closed();
}

void ExportSheet::keyPressEvent(QKeyEvent* event) {
    event->accept();
    switch (event->key()) {
        case Qt::Key_Escape:
            return cancel();
        case Qt::Key_Return:
        case Qt::Key_Enter: {
            auto* focused = qobject_cast<QAbstractButton*>(window()->focusWidget());
            return (focused && isAncestorOf(focused) ? focused : m_export)->click();
        }
        default:
            return;
    }
}

void ExportSheet::keyReleaseEvent(QKeyEvent* event) {
    event->accept();
}

void ExportSheet::mousePressEvent(QMouseEvent* event) {
    event->accept();
}

void ExportSheet::wheelEvent(QWheelEvent* event) {
    event->accept();
}

void ExportSheet::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
}

// Round the sheet, never out of it.
bool ExportSheet::focusNextPrevChild(bool next) {
    QWidget* widget = window()->focusWidget();
    if (!widget || !isAncestorOf(widget)) { widget = this; }
    for (QWidget* from = widget;;) {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
        if (widget == from) { return true; }
        const bool takesFocus = isAncestorOf(widget) && widget->isVisible() &&
                                widget->isEnabled() &&
                                (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
        if (!takesFocus) { continue; }
        widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }
}

bool ExportSheet::eventFilter(QObject* object, QEvent* event) {
    if (object == parentWidget() && event->type() == QEvent::Resize) { layOut(); }
    return QWidget::eventFilter(object, event);
}

}  // namespace tweenery

#include "ui/inspector/number_field.h"

#include <QKeyEvent>
#include <QPainter>

#include "editor/inspector/inspector_values.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/device_pixels.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kRadius = sizes::paneFieldHeight / 2.0;
constexpr int kLongestText = 200;

// What an arrow key adds.
std::optional<double> stepOfKey(const QKeyEvent& key) {
    const double step = key.modifiers().testFlag(Qt::ShiftModifier) ? 10 : 1;
    if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) { return std::nullopt; }
    if (key.key() == Qt::Key_Up) { return step; }
    if (key.key() == Qt::Key_Down) { return -step; }
    return std::nullopt;
}

bool isPassing(Qt::FocusReason reason) {
    return reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason;
}

}  // namespace

NumberField::NumberField(InspectorField field, QWidget* parent)
    : TextField(parent), m_field(field) {
    setFrame(false);
    setAlignment(Qt::AlignCenter);
    setFont(regularFont(sizes::paneLabelSize));
    setMaxLength(kLongestText);
    setTextMargins(kRadius / 2, 0, kRadius / 2, 0);
    resize(sizes::paneFieldWidth + 2 * sizes::paneFieldBezel,
           sizes::paneFieldHeight + 2 * sizes::paneFieldBezel);
    updateColors();
    connect(&Appearance::current(), &Appearance::changed, this, &NumberField::updateColors);
    connect(this, &TextField::committed, this, &NumberField::take);
    connect(this, &QLineEdit::textEdited, this, [this] {
        if (!m_isRefused) { return; }
        m_isRefused = false;
        setReason({});
    });
}

void NumberField::updateColors() {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPalette palette = this->palette();
    palette.setColor(QPalette::Base, Qt::transparent);
    palette.setColor(QPalette::Text, colors.fieldInk);
    palette.setColor(QPalette::Highlight, colors.accent);
    palette.setColor(QPalette::HighlightedText, colors.fieldInk);
    setPalette(palette);
}

// What shows.

void NumberField::setValue(std::optional<double> value) {
    const bool isOther = value != m_value;
    m_value = value;
    if (m_isRefused && !isOther) { return; }
    if (isOther && !hasFocus()) { forgetRefusal(); }
    if (!m_isRefused) { showValue(); }
}

void NumberField::showValue() {
    setValueText(hasFocus() ? textInUse(m_value) : textAtRest(m_field, m_value));
}

void NumberField::forgetRefusal() {
    if (!m_isRefused) { return; }
    m_isRefused = false;
    setReason({});
    setModified(false);
    showValue();
}

// Typing.

void NumberField::take(const QString& text) {
    const TypedNumber typedText = typedNumber(text, unitOf(m_field), m_value);
    if (!typedText.number) { return refuse(typedText.reason); }
    Q_EMIT typed(*typedText.number);
    showValue();
}

void NumberField::refuse(const QString& reason) {
    m_isRefused = true;
    setReason(reason);
}

void NumberField::setReason(const QString& reason) {
    setToolTip(reason);
    setAccessibleDescription(reason);
    update();
}

void NumberField::focusInEvent(QFocusEvent* event) {
    if (!isPassing(event->reason())) {
        forgetRefusal();
        showValue();
    }
    TextField::focusInEvent(event);
    update();
}

void NumberField::focusOutEvent(QFocusEvent* event) {
    TextField::focusOutEvent(event);
    if (!isPassing(event->reason()) && !m_isRefused) {
        setModified(false);
        setValueText(textAtRest(m_field, m_value));
    }
    update();
}

void NumberField::keyPressEvent(QKeyEvent* event) {
    if (const auto step = stepOfKey(*event)) {
        commit();
        if (!m_isRefused) { Q_EMIT stepped(*step); }
        return;
    }
    if (event->key() == Qt::Key_Escape) { forgetRefusal(); }
    TextField::keyPressEvent(event);
}

void NumberField::paintEvent(QPaintEvent* event) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    {
        QPainter painter(this);
        const int bezel = sizes::paneFieldBezel;
        QColor line = hasFocus() ? colors.accent : colors.fieldLine;
        if (m_isRefused) { line = colors.fieldRefused; }
        paintRounded(painter, rect().adjusted(bezel, bezel, -bezel, -bezel), kRadius,
                     colors.fieldFill, line, m_isRefused ? 2 : 1);
    }
    TextField::paintEvent(event);
}

}  // namespace tweenery

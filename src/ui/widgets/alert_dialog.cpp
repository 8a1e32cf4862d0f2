#include "ui/widgets/alert_dialog.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>

#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

namespace tweenery {

namespace {

using namespace Qt::StringLiterals;

constexpr int kAlertGap = 12;
constexpr int kAlertTextLeft = 2 * sizes::dialogMargin + sizes::alertPicture - 6;
constexpr int kAlertTextWidth = sizes::alertWidth - kAlertTextLeft - sizes::dialogMargin;

QLabel* wrappedLabel(const QString& text, const QFont& font) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setFont(font);
    label->setWordWrap(true);
    label->setFixedWidth(kAlertTextWidth);
    return label;
}

}  // namespace

int escapeButton(const Alert& alert) {
    const qsizetype cancel = alert.buttons.indexOf(u"Cancel"_s);
    return cancel >= 0 ? static_cast<int>(cancel) : alert.defaultButton();
}

AlertDialog::AlertDialog(const Alert& alert, QWidget* parent)
    : QDialog(parent), m_button(escapeButton(alert)) {
    setWindowTitle(alert.message);
    setModal(true);
    auto* column = new QVBoxLayout(this);
    column->setSpacing(kAlertGap);
    column->setSizeConstraint(QLayout::SetFixedSize);
    auto* text = new QVBoxLayout;
    text->setContentsMargins(kAlertTextLeft - sizes::dialogMargin, 0, 0, 0);
    text->setSpacing(kAlertGap / 2);
    text->addWidget(wrappedLabel(alert.message, headingFont()));
    if (!alert.informativeText.isEmpty()) {
        text->addWidget(wrappedLabel(alert.informativeText, frameFont()));
    }
    if (!alert.suppressionText.isNull()) {
        m_suppression = new QCheckBox(alert.suppressionText);
        text->addSpacing(kAlertGap / 2);
        text->addWidget(m_suppression);
    }
    column->addLayout(text);

    auto* row = new QHBoxLayout;
    row->setSpacing(kAlertGap);
    row->addStretch();
    const int defaultButton = alert.defaultButton();
    QPushButton* filled = nullptr;
    for (int i = 0; i < static_cast<int>(alert.buttons.size()); ++i) {
        auto* button = new QPushButton(alert.buttons[i]);
        button->setAutoDefault(false);
        button->setDefault(i == defaultButton);
        connect(button, &QAbstractButton::clicked, this, [this, i] {
            m_button = i;
            accept();
        });
        row->addWidget(button);
        if (i == defaultButton) { filled = button; }
    }
    column->addLayout(row);
    if (filled) { filled->setFocus(); }  // once it has its window
}

AlertAnswer AlertDialog::answer() const {
    return {m_button, m_suppression && m_suppression->isChecked()};
}

void AlertDialog::paintEvent(QPaintEvent* event) {
    QDialog::paintEvent(event);
    QPainter painter(this);
    paintIcon(painter,
              QRectF(sizes::dialogMargin - 3, sizes::dialogMargin - 3, sizes::alertPicture,
                     sizes::alertPicture),
              u"tweenery"_s, {});
}

AlertAnswer QtAlertPort::runModal(const Alert& alert) {
    AlertDialog dialog(alert, m_window);
    dialog.exec();
    return dialog.answer();
}

}  // namespace tweenery

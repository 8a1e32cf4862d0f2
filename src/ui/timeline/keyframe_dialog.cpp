#include "ui/timeline/keyframe_dialog.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "editor/timeline/keyframe_value_text.h"
#include "editor/timeline/time_text.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kGap = 12;
constexpr int kFieldWidth = 180;

const QString kNoTime = u"A time reads like “500 ms”, “1.5 s” or “1:02.5”."_s;

// A dialog for one length, with the command that takes it.
void askForLength(const QString& title, int32_t proposed,
                  const std::function<QString(int32_t)>& take, QWidget* parent) {
    KeyframeDialog dialog(
        title, {{u"Length"_s, textFromTimeInMS(proposed)}},
        [&take](const QStringList& texts) {
            const auto length = timeInMSFromText(texts.first(), TimeUnit::Milliseconds);
            return length ? take(*length) : kNoTime;
        },
        parent);
    dialog.exec();
}

QString applyToKeyframe(KeyframeCommands& commands, const KeyframeCommands::Keyframe& keyframe,
                        const QStringList& texts, const QString& valueBefore) {
    const auto time = timeInMSFromText(texts[0], TimeUnit::Milliseconds);
    if (!time) { return kNoTime; }
    const auto timeline = keyframe->timeline();
    if (!timeline) { return u"The keyframe is no longer there."_s; }
    std::optional<PropertyValue> value;
    if (texts.size() > 1 && texts[1] != valueBefore) {
        const TypedKeyframeValue typed = typedKeyframeValue(texts[1], *keyframe);
        if (!typed.value) { return typed.reason; }
        value = typed.value;
    }
    return commands.setTimeAndValue(keyframe, *time, value);
}

void editKeyframe(KeyframeCommands& commands, QWidget* parent) {
    const auto keyframe = commands.singleKeyframe();
    if (!keyframe) { return; }
    const QString value = textOfKeyframeValue(*keyframe);
    std::vector<KeyframeDialog::Field> fields{{u"Time"_s, textFromTimeInMS(keyframe->timeInMS())}};
    if (!value.isNull()) { fields.push_back({u"Value"_s, value}); }
    KeyframeDialog dialog(
        nameOfRow(*keyframe->timeline()), fields,
        [&](const QStringList& texts) { return applyToKeyframe(commands, keyframe, texts, value); },
        parent);
    dialog.exec();
}

}  // namespace

KeyframeDialog::KeyframeDialog(const QString& title, const std::vector<Field>& fields, Apply apply,
                               QWidget* parent)
    : QDialog(parent), m_apply(std::move(apply)), m_refusal(new QLabel(this)) {
    setWindowTitle(title);
    setModal(true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(sizes::dialogMargin, sizes::dialogMargin, sizes::dialogMargin,
                               sizes::dialogMargin);
    column->setSpacing(kGap);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addLayout(new QFormLayout);
    for (const Field& field : fields) {
        addField(field);
    }
    m_refusal->setTextFormat(Qt::PlainText);
    m_refusal->setWordWrap(true);
    m_refusal->setFont(frameFont());
    m_refusal->hide();
    column->addWidget(m_refusal);
    addButtons();
    m_fields.front()->setFocus();
    m_fields.front()->selectAll();
}

void KeyframeDialog::addField(const Field& field) {
    auto* form = static_cast<QFormLayout*>(layout()->itemAt(0)->layout());
    auto* edit = new QLineEdit(field.text, this);
    edit->setAccessibleName(field.label);
    edit->setMinimumWidth(kFieldWidth);
    form->addRow(field.label + u':', edit);
    m_fields.push_back(edit);
}

void KeyframeDialog::addButtons() {
    auto* row = new QHBoxLayout;
    row->setSpacing(kGap);
    row->addStretch();
    auto* cancel = new QPushButton(u"Cancel"_s, this);
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* ok = new QPushButton(u"OK"_s, this);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &KeyframeDialog::apply);
    row->addWidget(cancel);
    row->addWidget(ok);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void KeyframeDialog::apply() {
    QStringList texts;
    for (const QLineEdit* field : m_fields) {
        texts << field->text();
    }
    const QString refusal = m_apply(texts);
    if (refusal.isNull()) { return accept(); }
    m_refusal->setText(refusal);
    m_refusal->show();
}

void addKeyframeDialogCommands(CommandSet& commands, KeyframeCommands& keyframes, QWidget* parent) {
    constexpr int32_t kProposedLength = 500;
    commands.add(u"editKeyframe"_s,
                 {[&keyframes, parent] { editKeyframe(keyframes, parent); },
                  [&keyframes] { return keyframes.singleKeyframe() != nullptr; }});
    commands.add(u"stretchKeyframes"_s,
                 {[&keyframes, parent] {
                      askForLength(
                          u"Stretch to Length"_s, keyframes.lengthOfSelection(),
                          [&keyframes](int32_t length) { return keyframes.stretchTo(length); },
                          parent);
                  },
                  [&keyframes] { return keyframes.lengthOfSelection() > 0; }});
    commands.add(u"insertTime"_s,
                 {[&keyframes, parent] {
                      askForLength(
                          u"Insert Time"_s, kProposedLength,
                          [&keyframes](int32_t length) { return keyframes.insertTime(length); },
                          parent);
                  },
                  [&keyframes] { return keyframes.isInAnimation(); }});
    commands.add(u"removeTime"_s,
                 {[&keyframes, parent] {
                      askForLength(
                          u"Remove Time"_s, kProposedLength,
                          [&keyframes](int32_t length) { return keyframes.removeTime(length); },
                          parent);
                  },
                  [&keyframes] { return keyframes.isInAnimation(); }});
}

}  // namespace tweenery

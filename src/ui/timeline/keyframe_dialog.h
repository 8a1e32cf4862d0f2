#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "editor/command_set.h"
#include "editor/timeline/keyframe_commands.h"

class QLabel;
class QLineEdit;

namespace tweenery {

/// Asks for one or two values, each in a field with its label. What does not fit is told below the
/// fields, and the dialog stays until it fits or is cancelled.
class KeyframeDialog : public QDialog {
    Q_OBJECT

 public:
    struct Field {
        QString label;
        QString text;
    };
    /// Does what the texts of the fields say and returns null, or why it cannot.
    using Apply = std::function<QString(const QStringList& texts)>;

    KeyframeDialog(const QString& title, const std::vector<Field>& fields, Apply apply,
                   QWidget* parent);

 private:
    Apply m_apply;
    std::vector<QLineEdit*> m_fields;
    QLabel* m_refusal;

    void addField(const Field& field);
    void addButtons();
    void apply();
};

/// Adds the commands of the timeline that ask for something first, over `parent`, which outlives
/// the commands as `keyframes` does.
void addKeyframeDialogCommands(CommandSet& commands, KeyframeCommands& keyframes, QWidget* parent);

}  // namespace tweenery

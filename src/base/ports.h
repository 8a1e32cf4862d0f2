#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <vector>

namespace tweenery {

/// A modal question or message. The application shows a window, `tweenc` prints and decides by
/// flag, a test scripts the answers.
struct Alert {
    QString message;
    QString informativeText;
    QStringList buttons;      // in the order in which they stand
    QString suppressionText;  // null: no check box
    int safeButton = -1;      // loses nothing, and answers Return; -1: the last one

    int defaultButton() const {
        return safeButton >= 0 ? safeButton : static_cast<int>(buttons.size()) - 1;
    }
};

struct AlertAnswer {
    int button = 0;           // index into Alert::buttons
    bool suppressed = false;  // the check box was ticked
};

class AlertPort {
 public:
    virtual ~AlertPort() = default;
    virtual AlertAnswer runModal(const Alert& alert) = 0;
};

/// A question for files to open.
struct OpenPanel {
    QString message;
    QStringList fileTypes;  // extensions without the dot
    bool allowsSeveral = false;
};

/// A question for one folder to write into. The user may make a new one there.
struct FolderPanel {
    QString message;
    QString prompt;  // the button that takes the folder
    QString folder;  // where to begin; empty: anywhere
};

class OpenPanelPort {
 public:
    virtual ~OpenPanelPort() = default;
    /// The paths that the user chose; none when the panel was cancelled.
    virtual QStringList chooseFiles(const OpenPanel& panel) = 0;
    /// The path of the folder; null when the panel was cancelled.
    virtual QString chooseFolder(const FolderPanel& panel) = 0;
};

/// The desktop around the program.
class WorkspacePort {
 public:
    virtual ~WorkspacePort() = default;
    /// Opens a web page, or a file, in the program that the user has for it. False when it could
    /// not be opened.
    virtual bool openUrl(const QString& url) = 0;
};

/// One thing on the pasteboard: a property list (maps, lists, text, numbers, bytes) of a named
/// type.
struct PasteboardItem {
    QString type;
    QVariant propertyList;
};

/// Where copied things wait to be pasted. What is read may come from any program.
class PasteboardPort {
 public:
    virtual ~PasteboardPort() = default;
    /// Takes the place of all that was there; no items clear it.
    virtual void write(const std::vector<PasteboardItem>& items) = 0;
    /// The property lists of all items of that type, in the order in which they were written.
    virtual QVariantList read(const QString& type) const = 0;
};

/// Where plain log lines go. No levels.
class LogPort {
 public:
    virtual ~LogPort() = default;
    virtual void writeLine(const QString& line) = 0;
};

/// Writes lines to standard error.
class StandardErrorLog : public LogPort {
 public:
    void writeLine(const QString& line) override;
};

}  // namespace tweenery

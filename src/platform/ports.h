#pragma once

#include <QString>
#include <QStringList>

namespace tweenery {

/// A modal question or message. The application shows a window, `tweenc` prints and decides by
/// flag, a test scripts the answers.
struct Alert {
    QString message;
    QString informativeText;
    QStringList buttons;      // the first is the default
    QString suppressionText;  // null: no check box
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

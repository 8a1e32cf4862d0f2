#pragma once

#include <QString>
#include <functional>
#include <string>
#include <vector>

#include "base/errors.h"
#include "base/ports.h"
#include "cli/support/console.h"
#include "cli/support/json_writer.h"

namespace tweenery {

/// How the results of a run are printed.
enum class ResultForm { Text, Json };

/// What a verb has to say of one package, kept until its turn to be printed comes. In JSON that is
/// an object with what went wrong and what the verb found; errors and notes go to standard error as
/// well.
class Report : public LogPort {
 public:
    explicit Report(const QString& packagePath, ResultForm form = ResultForm::Text,
                    bool isQuiet = false)
        : m_packagePath(packagePath), m_form(form), m_isQuiet(isQuiet) {}

    const QString& packagePath() const { return m_packagePath; }
    /// Ends with BadInput unless something was worse before.
    ExitCode exitCode() const { return m_exitCode; }
    bool isJson() const { return m_form == ResultForm::Json; }

    /// `text` with the package in front of it.
    QString attributed(const QString& text) const;

    /// Adds to the results in text.
    void print(std::string utf8);
    /// A line of the results in text, unless errors only are wanted; what would not show is
    /// escaped.
    void printLine(const QString& line);
    /// The result in JSON: one value, which `write` writes with sorted keys.
    void setResult(const std::function<void(JsonWriter&)>& write);

    /// "tweenc: <package>/<entry>: <reason>" on standard error, and exit code 1.
    void fail(const InputError& error);
    /// The same for an entry that is a path of the file system.
    void failOutside(const InputError& error);
    /// The same line without failing, unless errors only are wanted.
    void note(const QString& entry, const QString& text);
    /// There were warnings, and they were not wanted.
    void endWithWarnings();
    /// A plain line on standard error, unless errors only are wanted; what would not show is
    /// escaped.
    void writeLine(const QString& line) override;

    void printTo(Console& console) const;

 private:
    struct Remark {
        QString entry;
        QString text;
    };

    QString m_packagePath;
    ResultForm m_form;
    bool m_isQuiet;
    ExitCode m_exitCode = ExitCode::Done;
    std::string m_out;
    std::string m_err;
    std::string m_result = "null";
    std::vector<Remark> m_errors;
    std::vector<Remark> m_notes;

    QString qualified(const QString& entry) const;
    bool isInPackage(const QString& entry) const;
    void addError(const InputError& error, const QString& shownEntry);
    std::string json() const;
};

/// "tweenc: <entry>: <reason>" and a line break, in UTF-8, control characters escaped.
std::string errorLine(const QString& entry, const QString& reason);

}  // namespace tweenery

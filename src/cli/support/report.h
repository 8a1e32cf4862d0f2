#pragma once

#include <QString>
#include <string>

#include "base/errors.h"
#include "base/ports.h"
#include "cli/support/console.h"

namespace tweenery {

/// What a verb has to say of one package, kept until its turn to be printed comes.
class Report : public LogPort {
 public:
    /// With several packages in a run errors name the package too.
    Report(const QString& packagePath, bool isOneOfSeveral)
        : m_packagePath(packagePath), m_isOneOfSeveral(isOneOfSeveral) {}

    const QString& packagePath() const { return m_packagePath; }
    /// Ends with BadInput unless something was worse before.
    ExitCode exitCode() const { return m_exitCode; }

    /// `text` with the package in front of it when there are several.
    QString attributed(const QString& text) const;

    /// Adds to the results.
    void print(const std::string& utf8) { m_out += utf8; }
    void printLine(const QString& line);

    /// "tweenc: <entry>: <reason>" on standard error, and exit code 1. The entry lies in the
    /// package.
    void fail(const InputError& error);
    /// The same for an entry that is a path of the file system.
    void failOutside(const InputError& error);
    /// The same line without failing.
    void note(const QString& entry, const QString& text);
    /// Exported, but with warnings that were not wanted.
    void endWithWarnings();
    /// A plain line on standard error.
    void writeLine(const QString& line) override;

    void printTo(Console& console) const;

 private:
    QString m_packagePath;
    bool m_isOneOfSeveral;
    ExitCode m_exitCode = ExitCode::Done;
    std::string m_out;
    std::string m_err;

    QString qualified(const QString& entry) const;
};

/// "tweenc: <entry>: <reason>" and a line break, in UTF-8, control characters escaped.
std::string errorLine(const QString& entry, const QString& reason);

}  // namespace tweenery

#include "cli/support/report.h"

#include "storage/posix_files.h"

using namespace Qt::StringLiterals;

namespace tweenery {

std::string errorLine(const QString& entry, const QString& reason) {
    return u"tweenc: %1: %2\n"_s.arg(printableName(entry), printableName(reason)).toStdString();
}

QString Report::attributed(const QString& text) const {
    return m_isOneOfSeveral ? m_packagePath + u": "_s + text : text;
}

void Report::printLine(const QString& line) {
    m_out += line.toStdString() + '\n';
}

void Report::writeLine(const QString& line) {
    m_err += line.toStdString() + '\n';
}

// An error of the package as a whole has its path for an entry.
QString Report::qualified(const QString& entry) const {
    if (!m_isOneOfSeveral || entry == m_packagePath) { return entry; }
    return m_packagePath + u'/' + entry;
}

void Report::note(const QString& entry, const QString& text) {
    m_err += errorLine(qualified(entry), text);
}

void Report::fail(const InputError& error) {
    note(error.entry(), error.reason());
    m_exitCode = ExitCode::BadInput;
}

void Report::failOutside(const InputError& error) {
    m_err += errorLine(error.entry(), error.reason());
    m_exitCode = ExitCode::BadInput;
}

void Report::endWithWarnings() {
    if (m_exitCode == ExitCode::Done) { m_exitCode = ExitCode::Warnings; }
}

void Report::printTo(Console& console) const {
    console.out << m_out << std::flush;
    console.err << m_err << std::flush;
}

}  // namespace tweenery

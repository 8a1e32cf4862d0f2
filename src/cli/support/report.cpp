#include "cli/support/report.h"

#include "base/visible_text.h"
#include "cli/support/output_limit.h"
#include "storage/package_entries.h"
#include "storage/posix_files.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {

std::string errorLine(const QString& entry, const QString& reason) {
    return u"tweenc: %1: %2\n"_s.arg(printableName(entry), printableName(reason)).toStdString();
}

QString Report::attributed(const QString& text) const {
    return m_packagePath + u": "_s + text;
}

void Report::print(std::string utf8) {
    requireFitForOutput(m_out.size() + utf8.size());
    if (m_out.empty()) {
        m_out = std::move(utf8);
    } else {
        m_out += utf8;
    }
}

void Report::printLine(const QString& line) {
    if (!m_isQuiet) { print(visibleText(line).toStdString() + '\n'); }
}

void Report::setResult(const std::function<void(JsonWriter&)>& write) {
    constexpr size_t depth = 2;  // in an object of a list
    JsonWriter json(JsonWriter::Keys::Sorted, depth);
    write(json);
    m_result = json.takeValue();
}

void Report::writeLine(const QString& line) {
    if (!m_isQuiet) { m_err += visibleText(line).toStdString() + '\n'; }
}

// What is no entry of the package is a path of the file system, or no path at all.
QString Report::qualified(const QString& entry) const {
    return isInPackage(entry) ? m_packagePath + u'/' + entry : entry;
}

bool Report::isInPackage(const QString& entry) const {
    const QString first = entry.section(u'/', 0, 0);
    if (first.isEmpty()) { return false; }
    for (const QString& name : {kVersionEntry, kPreferencesEntry, kCanvasEntry, kImagesEntry,
                                kAnimationsEntry, kQuickLookEntry}) {
        if (first == name) { return true; }
    }
    try {
        return kindOfPath(m_packagePath + u'/' + first) != PathKind::Nothing;
    } catch (const InputError&) { return false; }
}

void Report::note(const QString& entry, const QString& text) {
    m_notes.push_back({entry, text});
    if (!m_isQuiet) { m_err += errorLine(qualified(entry), text); }
}

void Report::addError(const InputError& error, const QString& shownEntry) {
    m_errors.push_back({error.entry(), error.reason()});
    m_err += errorLine(shownEntry, error.reason());
    m_exitCode = ExitCode::BadInput;
}

void Report::fail(const InputError& error) {
    addError(error, qualified(error.entry()));
}

void Report::failOutside(const InputError& error) {
    addError(error, error.entry());
}

void Report::endWithWarnings() {
    if (m_exitCode == ExitCode::Done) { m_exitCode = ExitCode::Warnings; }
}

std::string Report::json() const {
    JsonWriter json(JsonWriter::Keys::Sorted, 1);
    const auto writeRemarks = [&](const char* key, const char* textKey, const auto& remarks) {
        json.key(key).beginArray();
        for (const Remark& remark : remarks) {
            json.beginObject(JsonWriter::Layout::OneLine);
            json.key("entry").string(remark.entry).key(textKey).string(remark.text).endObject();
        }
        json.endArray();
    };
    json.beginObject();
    writeRemarks("errors", "reason", m_errors);
    writeRemarks("notes", "text", m_notes);
    json.key("package").string(m_packagePath);
    json.key("result").value(m_result);
    return json.endObject().takeValue();
}

void Report::printTo(Console& console) const {
    console.out << (isJson() ? json() : m_out) << std::flush;
    console.err << m_err << std::flush;
}

}  // namespace tweenery

// tweenc update: brings an older project to the current model version, after a backup.

#include "cli/support/packages.h"
#include "cli/verbs.h"
#include "model/document.h"
#include "storage/output_folder.h"
#include "storage/package_store.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr VerbOption kYesOption{"yes", nullptr, "do not ask"};
constexpr VerbOption kBackupOption{
    "backup", "DIR", "where the backup goes; Backups in the documents folder otherwise"};

// Asks on the terminal, takes yes for an answer, and remembers what was asked.
class TerminalAlerts : public AlertPort {
 public:
    TerminalAlerts(Console& console, bool alwaysYes) : m_console(console), m_alwaysYes(alwaysYes) {}

    const Alert& lastAlert() const { return m_last; }
    // There was a question and nobody to answer it.
    bool couldNotAsk() const { return m_couldNotAsk; }

    AlertAnswer runModal(const Alert& alert) override {
        m_last = alert;
        const int no = static_cast<int>(alert.buttons.size()) - 1;
        if (no == 0 || m_alwaysYes) { return {0}; }
        m_couldNotAsk = !m_console.canAsk;
        if (m_couldNotAsk) { return {no}; }
        m_console.err << textOfAlert(alert).toStdString() << " [y/N] " << std::flush;
        return {isYes() ? 0 : no};
    }

 private:
    Console& m_console;
    bool m_alwaysYes;
    bool m_couldNotAsk = false;
    Alert m_last;

    bool isYes() {
        std::string line;
        std::getline(m_console.in, line);
        const QString answer = QString::fromStdString(line).trimmed().toLower();
        return answer == u"y" || answer == u"yes";
    }
};

void refuse(const TerminalAlerts& alerts, const QString& path) {
    if (alerts.couldNotAsk()) {
        throw InputError(
            path, textOfAlert(alerts.lastAlert()) + u" Nobody can be asked here; --yes says so."_s);
    }
    const bool wasAsked = alerts.lastAlert().buttons.size() > 1;
    throw InputError(
        path, wasAsked ? u"was not updated, as you decided"_s : textOfAlert(alerts.lastAlert()));
}

// A folder that was named has to be one that can be written into.
void requireBackupFolder(const QString& folder, const QString& package) {
    if (folder.isNull()) { return; }
    requireOutsidePackage(folder, package);
    OutputFolder::make(folder);
}

// A null folder leaves the backup where it usually goes.
void update(Report& report, TerminalAlerts& alerts, const QString& backups) {
    const QString& path = report.packagePath();
    const FileWrapper::Ptr root = readPackage(path);
    const int32_t stored = PCProject::modelVersionOfProjectFileWrapper(*root);
    const int32_t current = PCProject::currentModelVersion();
    if (stored == current) {
        report.printLine(u"%1 has model version %2 already."_s.arg(path, QString::number(current)));
        return;
    }
    PCDocument document(alerts, report);
    if (!backups.isNull()) { document.setBackupDirectory(backups); }
    if (!document.readFromFileWrapper(root)) { refuse(alerts, path); }
    savePackage(*document.fileWrapperOfProject(), path);
    report.printLine(u"%1 was updated from model version %2 to %3."_s.arg(
        path, QString::number(stored), QString::number(current)));
    const QString& backup = document.project()->backupPath();
    if (!backup.isNull()) { report.printLine(u"Backup: "_s + backup); }
}

ExitCode run(const Invocation& invocation, Console& console) {
    TerminalAlerts alerts(console, invocation.has(kYesOption.name));
    const QString backups = invocation.value(kBackupOption.name);
    if (invocation.has(kBackupOption.name) && backups.isEmpty()) {
        throw UsageError{u"--backup takes a directory"_s};
    }
    return runOnPackage(invocation, console, [&](Report& report) {
        requireBackupFolder(backups, report.packagePath());
        update(report, alerts, backups);
    });
}

}  // namespace

const Verb& updateVerb() {
    static const Verb verb{"update",
                           "PKG",
                           1,
                           1,
                           "Brings an older project to the current model version, after a backup.",
                           {kYesOption, kBackupOption},
                           run};
    return verb;
}

}  // namespace tweenery

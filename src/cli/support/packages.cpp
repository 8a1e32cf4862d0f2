#include "cli/support/packages.h"

#include <QDir>
#include <QFileInfo>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

#include "base/path_name.h"
#include "cli/support/verb.h"
#include "model/document.h"
#include "storage/package_store.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

const QString kVersionEntry = u"version"_s;

void runGuarded(const PackageTask& task, Report& report) {
    try {
        task(report);
    } catch (const InputError& error) { report.fail(error); } catch (const std::bad_alloc&) {
        report.fail({report.packagePath(), u"needs more memory than there is"_s});
    } catch (const std::exception& error) {
        const QString text = QString::fromUtf8(error.what());
        report.fail({report.packagePath(), u"internal error: "_s + text});
    }
}

/// Works on the packages with threads of its own, while the caller prints what is ready.
class PackageRun {
 public:
    PackageRun(const QStringList& paths, const PackageTask& task) : m_task(task) {
        for (const QString& path : paths) {
            m_packages.push_back({Report(path, paths.size() > 1)});
        }
        startThreads();
        if (m_threads.empty()) { work(); }
    }

    ExitCode print(Console& console) {
        ExitCode worst = ExitCode::Done;
        for (Package& package : m_packages) {
            waitFor(package, console);
            package.report.printTo(console);
            const ExitCode code = package.report.exitCode();
            if (worst != ExitCode::BadInput && code != ExitCode::Done) { worst = code; }
            package.report = Report({}, false);  // its text is no longer needed
        }
        return worst;
    }

 private:
    struct Package {
        Report report;
        bool isDone = false;
    };

    // As many as the system gives.
    void startThreads() {
        const size_t cores = std::max(1U, std::thread::hardware_concurrency());
        try {
            for (size_t i = 0; i < std::min(cores, m_packages.size()); ++i) {
                m_threads.emplace_back([this] { work(); });
            }
        } catch (const std::system_error&) {}
    }

    void work() {
        for (size_t i = m_next++; i < m_packages.size(); i = m_next++) {
            runGuarded(m_task, m_packages[i].report);
            const std::lock_guard lock(m_mutex);
            m_packages[i].isDone = true;
            ++m_doneCount;
            m_finished.notify_one();
        }
    }

    void waitFor(const Package& package, Console& console) {
        constexpr auto quietTime = std::chrono::seconds(1);
        std::unique_lock lock(m_mutex);
        bool isTold = false;
        while (!m_finished.wait_for(lock, quietTime, [&] { return package.isDone; })) {
            if (!console.showsProgress) { continue; }
            console.err << "\rtweenc: " << m_doneCount << " of " << m_packages.size()
                        << " packages done" << std::flush;
            isTold = true;
        }
        constexpr std::string_view eraseLine = "\r\033[K";
        if (isTold) { console.err << eraseLine << std::flush; }
    }

    const PackageTask& m_task;
    std::vector<Package> m_packages;
    std::atomic<size_t> m_next = 0;
    size_t m_doneCount = 0;
    std::mutex m_mutex;
    std::condition_variable m_finished;
    std::vector<std::jthread> m_threads;  // last: they end before the rest goes
};

/// Empty when the entry is absent or can be read.
QString faultOfVersion(const FileWrapper& root) {
    const FileWrapper::Ptr file = root.child(kVersionEntry);
    if (!file) { return {}; }
    if (!file->isRegularFile()) { return u"is not a regular file"_s; }
    try {
        PCProjectVersion::decode(KeyedUnarchiver(file->contents(), kVersionEntry).root());
    } catch (const InputError& error) { return error.reason(); }
    return {};
}

void noteOlderVersion(const FileWrapper& root, int32_t version, Report& report) {
    const QString older =
        u"the project counts as one of model version %1, older than %2; it is "
        u"read as it is and nothing in it is changed"_s.arg(
            QString::number(version), QString::number(PCProject::currentModelVersion()));
    const QString fault = faultOfVersion(root);
    report.note(kVersionEntry, fault.isEmpty() ? older : fault + u"; "_s + older);
}

bool looksLikePackage(const QString& path) {
    const QDir directory(path);
    return directory.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System |
                             QDir::NoDotAndDotDot) ||
           directory.exists(u"canvas"_s) || directory.exists(kVersionEntry);
}

}  // namespace

ExitCode runOnPackages(const QStringList& paths, Console& console, const PackageTask& task) {
    return PackageRun(paths, task).print(console);
}

ExitCode runOnPackage(const QString& path, Console& console, const PackageTask& task) {
    Report report(path, false);
    runGuarded(task, report);
    report.printTo(console);
    return report.exitCode();
}

QString textOfAlert(const Alert& alert) {
    return alert.message + u": "_s + alert.informativeText;
}

FileWrapper::Ptr readVersionedPackage(Report& report) {
    FileWrapper::Ptr root = readPackage(report.packagePath());
    const int32_t version = PCProject::modelVersionOfProjectFileWrapper(*root);
    if (version > PCProject::currentModelVersion()) {
        throw InputError(report.packagePath(), textOfAlert(alertForNewerProject(root->filename())));
    }
    if (version < PCProject::currentModelVersion()) { noteOlderVersion(*root, version, report); }
    return root;
}

PCProject::Ptr projectOf(const FileWrapper::Ptr& root) {
    PCProject::Ptr project = PCProject::projectForReadingWithFileWrapper(root);
    project->setProjectName(withoutPathExtension(root->filename()));
    return project;
}

PCProject::Ptr openForReading(Report& report) {
    return projectOf(readVersionedPackage(report));
}

void requirePlaceForPackage(const QString& path, bool replaces) {
    if (pathExtension(lastPathComponent(path)) != u"tweenery"_s) {
        throw UsageError{u"writes packages, named like Name.tweenery, not '%1'"_s.arg(path)};
    }
    const QFileInfo present(path);
    if (!present.exists() && !present.isSymLink()) { return; }
    if (!replaces) { throw InputError(path, u"is already there; --force replaces it"_s); }
    if (!present.isDir() || !looksLikePackage(path)) {
        throw InputError(path, u"is no package that could be replaced"_s);
    }
}

void requireOutsidePackage(const QString& path, const QString& package) {
    const QString inside = QFileInfo(package).canonicalFilePath();
    if (inside.isEmpty()) {
        return;  // there is no package to be changed
    }
    // Links count where they are; what is not there yet will be made where its parent is.
    QFileInfo place(path);
    while (!place.exists() && !place.isRoot()) {
        place = QFileInfo(place.absolutePath());
    }
    if ((place.canonicalFilePath() + u'/').startsWith(inside + u'/')) {
        throw InputError(path, u"lies in the package %1, which would be changed"_s.arg(package));
    }
}

}  // namespace tweenery

#include "cli/support/packages.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>

#include "base/path_name.h"
#include "base/spare_core.h"
#include "cli/support/verb.h"
#include "model/document.h"
#include "storage/package_entries.h"
#include "storage/package_store.h"
#include "storage/system_names.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

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

// Prints reports, in JSON as one list.
class ResultList {
 public:
    ResultList(Console& console, const ResultStyle& style)
        : m_console(console), m_isJson(style.form == ResultForm::Json) {
        if (m_isJson) { m_console.out << '['; }
    }
    ~ResultList() {
        if (m_isJson) { m_console.out << "\n]\n" << std::flush; }
    }
    ResultList(const ResultList&) = delete;
    ResultList& operator=(const ResultList&) = delete;

    void add(const Report& report) {
        if (m_isJson) { m_console.out << (std::exchange(m_isFirst, false) ? "\n  " : ",\n  "); }
        report.printTo(m_console);
    }

 private:
    Console& m_console;
    bool m_isJson;
    bool m_isFirst = true;
};

// Works on the packages with threads of its own, while the caller prints what is ready.
class PackageRun {
 public:
    PackageRun(const QStringList& paths, const ResultStyle& style, const PackageTask& task)
        : m_style(style), m_task(task) {
        for (const QString& path : paths) {
            m_packages.push_back({Report(path, style.form, style.isQuiet)});
        }
        startThreads();
        if (m_threads.empty()) { work(); }
    }

    ExitCode print(Console& console) {
        ExitCode worst = ExitCode::Done;
        ResultList list(console, m_style);
        for (Package& package : m_packages) {
            waitFor(package, console);
            list.add(package.report);
            const ExitCode code = package.report.exitCode();
            if (worst != ExitCode::BadInput && code != ExitCode::Done) { worst = code; }
            package.report = Report({});  // its text is no longer needed
        }
        return worst;
    }

 private:
    struct Package {
        Report report;
        bool isDone = false;
    };

    // As many as the system gives; the first has the core of the caller, who waits.
    void startThreads() {
        try {
            m_threads.emplace_back([this] { work(); });
            for (size_t i = 1; i < m_packages.size(); ++i) {
                auto core = SpareCore::take();
                if (!core) { return; }
                m_threads.emplace_back([this, held = std::move(*core)] { work(); });
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
            if (!console.showsProgress || m_style.isQuiet) { continue; }
            console.err << "\rtweenc: " << m_doneCount << " of " << m_packages.size()
                        << " packages done" << std::flush;
            isTold = true;
        }
        constexpr std::string_view eraseLine = "\r\033[K";
        if (isTold) { console.err << eraseLine << std::flush; }
    }

    const ResultStyle m_style;
    const PackageTask& m_task;
    std::vector<Package> m_packages;
    std::atomic<size_t> m_next = 0;
    size_t m_doneCount = 0;
    std::mutex m_mutex;
    std::condition_variable m_finished;
    std::vector<std::jthread> m_threads;  // last: they end before the rest goes
};

// Empty when the entry is absent or can be read.
QString faultOfVersion(const FileWrapper& root) {
    const FileWrapper::Ptr file = root.child(kVersionEntry);
    if (!file) { return {}; }
    if (!file->isRegularFile()) { return kIsNoRegularFile; }
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

}  // namespace

ResultStyle ResultStyle::of(const Invocation& invocation) {
    return {invocation.knows(kJsonOption.name) && invocation.has(kJsonOption.name)
                ? ResultForm::Json
                : ResultForm::Text,
            invocation.knows(kQuietOption.name) && invocation.has(kQuietOption.name)};
}

ExitCode runOnPackages(const Invocation& invocation, Console& console, const PackageTask& task) {
    return PackageRun(invocation.operands(), ResultStyle::of(invocation), task).print(console);
}

ExitCode runOnPackage(const Invocation& invocation, Console& console, const PackageTask& task) {
    const ResultStyle style = ResultStyle::of(invocation);
    Report report(invocation.operands().first(), style.form, style.isQuiet);
    runGuarded(task, report);
    ResultList(console, style).add(report);
    return report.exitCode();
}

QString textOfAlert(const Alert& alert) {
    return alert.message + u": "_s + alert.informativeText;
}

FileWrapper::Ptr readVersionedPackage(Report& report, std::vector<InputError>* unread) {
    FileWrapper::Ptr root = readPackage(report.packagePath(), unread);
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
    if (kindOfPath(path) == PathKind::Nothing) { return; }
    if (!replaces) { throw InputError(path, u"is already there; --force replaces it"_s); }
}

void requireOutsidePackage(const QString& path, const QString& package) {
    const auto resolved = [](const QString& given) {
        std::error_code error;
        return std::filesystem::weakly_canonical(
            std::filesystem::absolute(systemPath(given).toStdString()), error);
    };
    if (kindOfPath(package) == PathKind::Nothing) {
        return;  // there is no package to be changed
    }
    // Links count where they are; what is not there yet will be made where its parent is.
    const std::string inside = resolved(package).string() + '/';
    if ((resolved(path).string() + '/').starts_with(inside)) {
        throw InputError(path, u"lies in the package %1, which would be changed"_s.arg(package));
    }
}

}  // namespace tweenery

#include "editor/documents/package_saving.h"

#include <cerrno>

#include "storage/open_package.h"
#include "storage/package_entries.h"
#include "storage/posix_files.h"
#include "storage/system_names.h"

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

void requireReplaceable(const QString& path) {
    if (kindOfPath(path) == PathKind::Nothing || isPackage(openPackage(path))) { return; }
    throw InputError(path, u"is there already and is no project"_s);
}

void write(const SaveRequest& request, SaveOutcome& outcome) {
    if (request.isNewPlace) {
        requireReplaceable(request.path);
    } else {
        openPackage(request.path);
    }
    outcome.written = writeSnapshot(request.package, request.path, request.policy);
}

}  // namespace

SaveOutcome savePackageAsRequested(const SaveRequest& request) {
    SaveOutcome outcome;
    outcome.reason = failureReasonOf([&] { write(request, outcome); });
    if (outcome.written) {
        outcome.kind = SaveOutcome::Kind::Stored;
    } else if (!request.isNewPlace) {
        const SaveOutcome::Kind found = comparePackageWithDisk(*request.package, request.path);
        const bool explains =
            found == SaveOutcome::Kind::Gone || request.policy == OnDiskChange::Refuse;
        if (explains && found != SaveOutcome::Kind::Stored) { outcome.kind = found; }
    }
    return outcome;
}

SaveOutcome::Kind comparePackageWithDisk(const FileWrapper& stored, const QString& path) {
    try {
        return entriesChangedOnDisk(stored, path).isEmpty() ? SaveOutcome::Kind::Stored
                                                            : SaveOutcome::Kind::ChangedOnDisk;
    } catch (const InputError&) {
        return kindOfPath(path) == PathKind::Nothing ? SaveOutcome::Kind::Gone
                                                     : SaveOutcome::Kind::Failed;
    }
}

QString failureReason(const InputError& error) {
    struct Cause {
        int number;
        QString words;
    };
    static const Cause causes[] = {
        {ENOSPC, u"the disk is full"_s},
        {EDQUOT, u"your share of the disk is used up"_s},
        {EROFS, u"the disk can only be read"_s},
        {EACCES, u"you may not write there"_s},
        {EPERM, u"you may not write there"_s},
        {ENOENT, u"the folder is not there any more"_s},
        {EIO, u"the disk reports an error"_s},
        {ESTALE, u"the network drive went away"_s},
        {ENOTCONN, u"the network drive went away"_s},
        {EHOSTDOWN, u"the network drive went away"_s},
        {ETIMEDOUT, u"the network drive does not answer"_s},
    };
    for (const auto& [number, words] : causes) {
        if (error.reason().endsWith(failureText({}, number))) { return words; }
    }
    return u"“%1” %2"_s.arg(error.entry(), error.reason());
}

}  // namespace tweenery

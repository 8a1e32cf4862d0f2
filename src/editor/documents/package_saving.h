#pragma once

#include <QString>
#include <optional>

#include "base/errors.h"
#include "storage/package_store.h"

namespace tweenery {

/// What to write, and where.
struct SaveRequest {
    FileWrapper::Snapshot package;
    QString path;
    OnDiskChange policy = OnDiskChange::Refuse;
    /// The user chose the path; else the package has to be there, or it is not put back unasked.
    bool isNewPlace = false;
};

/// How that went. Only what is stored has `written`; `reason` is for people.
struct SaveOutcome {
    enum class Kind { Stored, ChangedOnDisk, Gone, Failed };
    Kind kind = Kind::Failed;
    std::optional<WrittenPackage> written;
    QString reason;
};

// On any thread, and without exceptions:

SaveOutcome savePackageAsRequested(const SaveRequest& request);
/// How the package at `path` relates to `stored`, of which all was read or saved there: Stored when
/// it is that.
SaveOutcome::Kind comparePackageWithDisk(const FileWrapper& stored, const QString& path);

/// Why something could not be written or read, in words for people: "the disk is full".
QString failureReason(const InputError& error);

/// What `work` throws, as failureReason() has it; null when it throws nothing.
template <class Work>
QString failureReasonOf(const Work& work) {
    try {
        work();
        return {};
    } catch (const InputError& error) {
        return failureReason(error);
    } catch (const std::exception& error) { return QString::fromUtf8(error.what()); }
}

}  // namespace tweenery

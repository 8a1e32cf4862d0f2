#pragma once

#include <QString>
#include <QTemporaryDir>
#include <array>
#include <mutex>
#include <optional>

#include "storage/temporaries.h"

namespace tweenery {

/// Thrown when exports cannot be played on this machine. The text says what is missing and, where
/// that helps, what to install.
struct NoWorkshop {
    QString reason;
};

/// What came of compiling an export.
struct BuiltProgram {
    QString path;        // empty when the export does not compile
    QString complaints;  // of the compiler, without places on this disk
};

/// Compiles exports, unchanged, against stand-ins for the platform's headers and links them with a
/// simulator of the platform's layers and animations, which is compiled once for each platform.
/// Works in a folder of its own, which goes with it. May be used from any thread.
class Workshop {
 public:
    /// `compiler` is a path. Throws NoWorkshop, and InputError when there is no place for the
    /// folder.
    explicit Workshop(const QString& compiler = usualCompiler());
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    /// The path of clang; empty where there is none.
    static QString usualCompiler();
    /// A new folder for one export, with a path in full.
    QString makeFolder();
    /// Compiles `folder`/`className`.m and what it includes into a program there. The folder
    /// "images" in it has the export's artwork. Throws NoWorkshop when the simulator itself cannot
    /// be built.
    BuiltProgram build(const QString& folder, const QString& className, bool forMac);

 private:
    struct Simulator {
        std::once_flag isBuilt;
        QString object;
        std::optional<NoWorkshop> obstacle;
    };

    Temporary m_temporary;
    QTemporaryDir m_folder;
    QString m_resources;
    QString m_compiler;
    std::mutex m_mutex;
    int m_folderCount = 0;
    std::array<Simulator, 2> m_simulators;  // of the mobile platform, of the desktop

    QStringList compilerArguments(bool forMac) const;
    const QString& simulator(bool forMac);
    void buildSimulator(Simulator& simulator, bool forMac) const;
    bool compile(const QStringList& arguments, const QString& folder, QString* complaints) const;
};

}  // namespace tweenery

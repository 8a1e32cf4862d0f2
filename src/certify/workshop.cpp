#include "certify/workshop.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "base/errors.h"
#include "base/program_files.h"
#include "certify/child_process.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

// The distribution's own comes before those of other toolchains, whose runtimes differ.
const QString kUsualCompiler = u"/usr/bin/clang"_s;
const QString kWhatToInstall =
    u"install clang and the GNU Objective-C runtime (on Debian: apt install clang libobjc-12-dev)"_s;

QStringList linkerArguments(const QStringList& objects, const QString& program) {
    return objects +
           QStringList{u"-Wl,--wrap=__objc_exec_class"_s, u"-lobjc"_s, u"-lm"_s, u"-o"_s, program};
}

}  // namespace

QString Workshop::usualCompiler() {
    if (QFileInfo(kUsualCompiler).isExecutable()) { return kUsualCompiler; }
    return QStandardPaths::findExecutable(u"clang"_s);
}

Workshop::Workshop(const QString& compiler)
    : m_resources(programFile(u"tweenery/certify"_s, u"resources/certify"_s)),
      m_compiler(compiler) {
    if (!QFileInfo(compiler).isExecutable()) {
        throw NoWorkshop{u"there is no compiler to compile the export with; "_s + kWhatToInstall};
    }
    if (m_resources.isEmpty()) {
        throw NoWorkshop{
            u"the simulator of the platform's classes is missing; install Tweenery anew"_s};
    }
    if (!m_folder.isValid()) { throw InputError(m_folder.path(), m_folder.errorString()); }
}

QString Workshop::makeFolder() {
    const std::lock_guard lock(m_mutex);
    const QString folder = m_folder.filePath(QString::number(++m_folderCount));
    if (!QDir().mkpath(folder)) { throw InputError(folder, u"cannot be made"_s); }
    return folder;
}

QStringList Workshop::compilerArguments(bool forMac) const {
    const QString headers = m_resources + u"/headers"_s;
    const QString platform = headers + (forMac ? u"/mac"_s : u"/ios"_s);
    return {u"-fobjc-runtime=gnustep-1.6"_s, u"-fobjc-legacy-dispatch"_s, u"-fblocks"_s,
            u"-fconstant-string-class=NSConstantString"_s, u"-x"_s, u"objective-c"_s, u"-c"_s,
            u"-w"_s, u"-fno-caret-diagnostics"_s, u"-isystem"_s, headers + u"/common"_s,
            u"-isystem"_s, platform, u"-isystem"_s, platform + u"/project"_s,
            // What the application that an export is built into imports for all files.
            u"-include"_s, forMac ? u"mobile_names.h"_s : u"LFTRecordableView.h"_s};
}

bool Workshop::compile(const QStringList& arguments, const QString& folder,
                       QString* complaints) const {
    const ChildResult result = runChild({m_compiler, arguments, folder, {}, {}});
    *complaints = QString::fromUtf8(result.output).remove(folder + u'/').trimmed();
    if (!result.wasInTime) { *complaints += u"\nthe compiler did not come to an end"_s; }
    return result.exitCode == 0;
}

void Workshop::buildSimulator(Simulator& simulator, bool forMac) const {
    const QString name = forMac ? u"simulator_mac"_s : u"simulator_ios"_s;
    QString complaints;
    const QString object = m_folder.filePath(name + u".o"_s);
    const QStringList arguments = compilerArguments(forMac)
                                  << u"-O1"_s << m_resources + u"/simulator/simulator.m"_s
                                  << u"-o"_s << object;
    // Alone it links as well, unless the runtime is missing.
    if (compile(arguments, m_folder.path(), &complaints) &&
        compile(linkerArguments({object}, m_folder.filePath(name)), m_folder.path(), &complaints)) {
        simulator.object = object;
    } else {
        simulator.obstacle = {u"the simulator of the platform's classes cannot be built ("_s +
                              complaints.section(u'\n', 0, 0) + u"); "_s + kWhatToInstall};
    }
}

const QString& Workshop::simulator(bool forMac) {
    Simulator& simulator = m_simulators[forMac ? 1 : 0];
    std::call_once(simulator.isBuilt, [&] { buildSimulator(simulator, forMac); });
    if (simulator.obstacle) { throw NoWorkshop(*simulator.obstacle); }
    return simulator.object;
}

BuiltProgram Workshop::build(const QString& folder, const QString& className, bool forMac) {
    const QString& simulatorObject = simulator(forMac);
    const QString object = folder + u"/export.o"_s;
    const QString program = folder + u"/export"_s;
    BuiltProgram built;
    const QStringList arguments = compilerArguments(forMac)
                                  << folder + u'/' + className + u".m"_s << u"-o"_s << object;
    if (!compile(arguments, folder, &built.complaints)) { return built; }
    if (compile(linkerArguments({simulatorObject, object}, program), folder, &built.complaints)) {
        built.path = program;
    }
    return built;
}

}  // namespace tweenery

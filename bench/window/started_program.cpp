#include "bench/window/started_program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QFile>
#include <QMainWindow>
#include <QMenuBar>
#include <QProcessEnvironment>
#include <chrono>
#include <csignal>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace tweenery::bench {
namespace {

constexpr int kPatience = 60'000;  // ms
constexpr int kTicksOfUser = 11;   // fields of /proc/PID/stat after the name, utime and stime

class ArgumentList {
 public:
    explicit ArgumentList(const QStringList& texts) {
        for (const QString& text : texts) {
            m_bytes.push_back(text.toLocal8Bit());
        }
        for (QByteArray& bytes : m_bytes) {
            m_pointers.push_back(bytes.data());
        }
        m_pointers.push_back(nullptr);
    }
    char** data() { return m_pointers.data(); }

 private:
    std::vector<QByteArray> m_bytes;
    std::vector<char*> m_pointers;
};

QStringList environment(const ScratchDirectory& home, int descriptor) {
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const char* folder : {"XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                               "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
        variables.insert(QString::fromLatin1(folder), home.path({}));
    }
    variables.insert(u"QT_PLUGIN_PATH"_s, QStringLiteral(TWEENERY_PROBES));
    variables.insert(u"QT_QPA_GENERIC_PLUGINS"_s, u"first_paint"_s);
    variables.insert(u"TWEENERY_PAINT_FD"_s, QString::number(descriptor));
    return variables.toStringList();
}

QByteArray contents(pid_t process, const char* file) {
    QFile stream(u"/proc/%1/%2"_s.arg(process).arg(QLatin1String(file)));
    if (!stream.open(QIODevice::ReadOnly)) { throw std::runtime_error("the program has ended"); }
    return stream.readAll();
}

}  // namespace

StartedProgram::StartedProgram(const QStringList& commandLine) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC) != 0) { throw std::runtime_error("no pipe"); }
    ::fcntl(ends[1], F_SETFD, 0);
    ArgumentList arguments(commandLine);
    ArgumentList variables(environment(m_home, ends[1]));
    const auto begin = std::chrono::steady_clock::now();
    const int failure = ::posix_spawn(&m_process, arguments.data()[0], nullptr, nullptr,
                                      arguments.data(), variables.data());
    ::close(ends[1]);
    pollfd painted{ends[0], POLLIN, 0};
    char byte = 0;
    const bool isPainted =
        failure == 0 && ::poll(&painted, 1, kPatience) == 1 && ::read(ends[0], &byte, 1) == 1;
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - begin;
    ::close(ends[0]);
    m_milliseconds = time.count();
    if (!isPainted) { throw std::runtime_error("no window was painted"); }
}

StartedProgram::~StartedProgram() {
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
}

int StartedProgram::anonymousKibibytes() const {
    const QByteArray status = contents(m_process, "status");
    const auto begin = status.indexOf("RssAnon:") + 8;
    return status.mid(begin, status.indexOf("kB", begin) - begin).trimmed().toInt();
}

long StartedProgram::ticks() const {
    const QByteArray stat = contents(m_process, "stat");
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return fields[kTicksOfUser].toLong() + fields[kTicksOfUser + 1].toLong();
}

QStringList StartedProgram::bareWindow() {
    return {u"/proc/self/exe"_s, u"--bare-window"_s};
}

QStringList StartedProgram::tweenery(const QString& project) {
    QStringList line{QStringLiteral(TWEENERY_PROGRAM), u"--new-instance"_s};
    if (!project.isEmpty()) { line << project; }
    return line;
}

int runBareWindow(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    for (const QString& title : {u"File"_s, u"Edit"_s, u"View"_s, u"Help"_s}) {
        QMenu* menu = window.menuBar()->addMenu(title);
        menu->addAction(u"About"_s);
    }
    window.resize(1000, 700);
    window.show();
    return QApplication::exec();
}

}  // namespace tweenery::bench

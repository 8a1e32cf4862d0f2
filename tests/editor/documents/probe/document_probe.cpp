// Opens a project, edits it, and lets it save itself, for tests that kill it or make its system
// calls fail:
//   document_probe fail  PACKAGE STATE   one edit, one try
//   document_probe sweep PACKAGE STATE   after a line of input: many edits, each until it is stored
//   document_probe edit  PACKAGE STATE   edits without end; a line for each that is kept
// An empty PACKAGE is an untitled project. Notices go to standard output.
#include <sys/prctl.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <iostream>

#include "editor/documents/open_document.h"

namespace {

using namespace tweenery;
using namespace Qt::StringLiterals;

class NoAlerts : public AlertPort {
 public:
    AlertAnswer runModal(const Alert&) override { return {}; }
};

class OwnClock : public MediaClock {
 public:
    double seconds = 0;
    double now() const override { return seconds; }
};

class Probe {
 public:
    explicit Probe(const QString& state)
        : m_services{m_alerts,
                     m_log,
                     m_clock,
                     QDateTime::currentDateTime,
                     RecoveryStore(state + u"/recovery"_s),
                     state + u"/locks"_s},
          m_document(m_services) {}

    bool open(const QString& package) {
        if (!package.isEmpty()) {
            return m_document.open(package) == OpenDocument::Opening::Opened;
        }
        m_document.openUntitled(u"Untitled"_s);
        const auto ball = PCElement::init();
        ball->setName(u"ball"_s);
        m_document.project()->canvas()->insertSubelement(ball, 0);
        return true;
    }
    void edit(double opacity) {
        m_document.project()->canvas()->children()[0]->setOpacity(opacity);
        m_document.project()->undoManager().endEvent();
    }
    void rest() {
        m_clock.seconds += AutosaveSchedule::kRetry;
        m_document.tick();
        while (!m_document.disk().isIdle()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }
    bool isEdited() const { return m_document.isEdited(); }
    void printNotices() const {
        for (const Notice& notice : m_document.notices()) {
            std::cout << notice.text.toStdString() << std::endl;
        }
    }

 private:
    NoAlerts m_alerts;
    StandardErrorLog m_log;
    OwnClock m_clock;
    DocumentServices m_services;
    OpenDocument m_document;
};

// 3 when an edit is not stored in the end.
int sweep(Probe& probe) {
    std::cout << "ready" << std::endl;
    std::string line;
    std::getline(std::cin, line);
    constexpr int edits = 20;
    constexpr int tries = 5;
    for (int i = 1; i <= edits; ++i) {
        probe.edit(1.0 / (i + 1));
        for (int attempt = 0; attempt < tries && probe.isEdited(); ++attempt) {
            probe.rest();
            probe.printNotices();
        }
        if (probe.isEdited()) { return 3; }
    }
    return 0;
}

[[noreturn]] void editWithoutEnd(Probe& probe) {
    for (double opacity = 0.5;; opacity = 0.75 - opacity) {
        probe.edit(opacity);
        probe.rest();
        std::cout << "saved" << std::endl;
    }
}

int run(const QString& mode, Probe& probe) {
    if (mode == u"sweep"_s) { return sweep(probe); }
    if (mode == u"edit"_s) { editWithoutEnd(probe); }
    probe.edit(0.5);
    probe.rest();
    probe.printNotices();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    ::prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY);  // strace is no parent of ours
    const QCoreApplication application(argc, argv);
    if (argc != 4) { return 2; }
    try {
        Probe probe(QString::fromUtf8(argv[3]));
        return probe.open(QString::fromUtf8(argv[2])) ? run(QString::fromUtf8(argv[1]), probe) : 4;
    } catch (const InputError& error) {
        std::cout << error.what() << std::endl;
        return 1;
    }
}

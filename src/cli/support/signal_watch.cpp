#include "cli/support/signal_watch.h"

#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <ctime>
#include <thread>

#include "storage/temporaries.h"

namespace tweenery {
namespace {

sigset_t watchedSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) {
            sigaddset(&signals, signal);
        }
    }
    return signals;
}

[[noreturn]] void dieOf(int signal) {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    ::sigaction(signal, &action, nullptr);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    ::pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    ::raise(signal);
    ::_exit(1);  // not reached
}

void watch(const sigset_t& signals) {
    int signal = 0;
    while (::sigwait(&signals, &signal) != 0) {}
    stopTemporaries();
    constexpr int glances = 300;
    for (int i = 0; i < glances; ++i) {
        if (waitForTemporaries(std::chrono::milliseconds(0))) { break; }
        constexpr timespec pause{0, 100'000'000};
        if (::sigtimedwait(&signals, nullptr, &pause) > 0) { break; }
    }
    dieOf(signal);
}

}  // namespace

void watchSignals() {
    const sigset_t signals = watchedSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals] { watch(signals); }).detach();
}

}  // namespace tweenery

#include <unistd.h>

#include <QCoreApplication>
#include <iostream>

#include "cli/support/signal_watch.h"
#include "cli/tweenc.h"
#include "storage/system_names.h"

int main(int argc, char** argv) {
    // The libraries below have warnings of their own, on the locale for example. What matters of
    // them comes back as errors.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    std::ios::sync_with_stdio(false);
    tweenery::watchSignals();
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments << tweenery::textOfSystemName(argv[i]);
    }
    const QCoreApplication application(argc, argv);
    return tweenery::runTweenc(arguments, {.out = std::cout,
                                           .err = std::cerr,
                                           .in = std::cin,
                                           .showsProgress = ::isatty(STDERR_FILENO) == 1,
                                           .canAsk = ::isatty(STDIN_FILENO) == 1});
}

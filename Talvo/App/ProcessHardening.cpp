#include "App/ProcessHardening.h"

#include <QFile>

#include <csignal>
#include <sys/resource.h>

namespace Talvo {

void refuseCoreDumps()
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
#ifdef Q_OS_LINUX
    QFile filter(QStringLiteral("/proc/self/coredump_filter"));
    if (filter.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        filter.write("0");
    }
#endif
}

void surviveFileSizeLimit()
{
    // A handler, not SIG_IGN: that would be passed on to the programs that open links.
    struct sigaction action
    {
    };
    action.sa_handler = [](int) {};
    action.sa_flags = SA_RESTART;
    sigaction(SIGXFSZ, &action, nullptr);
}

} // namespace Talvo

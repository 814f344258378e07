#include "App/ProcessHardening.h"

#include <QFile>

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

} // namespace Talvo

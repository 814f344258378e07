#include "Platform/ThreadPriority.h"

#include <QtGlobal>

#if defined(Q_OS_LINUX)
#include <algorithm>
#include <cerrno>
#include <sys/resource.h>
#include <unistd.h>
#elif defined(Q_OS_MACOS)
#include <pthread/qos.h>
#endif

namespace Talvo {

void lowerThreadPriority() noexcept
{
#if defined(Q_OS_LINUX)
    // Each thread has a nice value of its own here. With this one it gets a tenth of the time where
    // another thread wants all of it.
    constexpr int lowered = 10;
    const auto thread = static_cast<id_t>(::gettid());
    errno = 0; // -1 is a nice value as well
    const int current = ::getpriority(PRIO_PROCESS, thread);
    if (errno == 0) {
        ::setpriority(PRIO_PROCESS, thread, std::max(current, lowered));
    }
#elif defined(Q_OS_MACOS)
    ::pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
#endif
}

} // namespace Talvo

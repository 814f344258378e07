#include "Platform/LargePages.h"

#include <QtGlobal>

#ifdef Q_OS_LINUX
#include <memory>
#include <sys/mman.h>
#endif

namespace Talvo {

void preferLargePages([[maybe_unused]] void *begin, [[maybe_unused]] std::size_t size) noexcept
{
#ifdef Q_OS_LINUX
    constexpr std::size_t largePage = std::size_t{2} << 20;
    std::size_t space = size;
    if (std::align(largePage, largePage, begin, space) != nullptr) {
        ::madvise(begin, space - space % largePage, MADV_HUGEPAGE);
    }
#endif
}

} // namespace Talvo

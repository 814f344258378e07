#include "Platform/Instant.h"

#include <chrono>

namespace Talvo {

Instant Instant::now()
{
    using namespace std::chrono;
    const auto sinceEpoch = system_clock::now().time_since_epoch();
    const auto microsecondCount = duration_cast<microseconds>(sinceEpoch).count();
    return {static_cast<double>(microsecondCount) / 1e6 - referenceInUnixSeconds};
}

} // namespace Talvo

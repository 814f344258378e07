#pragma once

#include <chrono>

namespace Talvo {

/// How long one operation on the Secret Service may take.
struct SecretServiceBounds
{
    /// Everything that happens without the user, all together.
    std::chrono::milliseconds call = std::chrono::seconds(10);
    /// One prompt. Long enough for anybody who looks at it; there is a bound at all because a
    /// service can claim to prompt and show nothing.
    std::chrono::milliseconds prompt = std::chrono::minutes(5);
};

} // namespace Talvo

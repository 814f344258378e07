#pragma once

#include <chrono>

namespace Talvo {

/// How long one operation on the Secret Service may take: its prompts, and what lies before,
/// between and behind them.
struct SecretServiceBounds
{
    /// What happens without the user, all its calls together; anew after each prompt.
    std::chrono::milliseconds call = std::chrono::seconds(10);
    /// One prompt. Long enough for anybody who looks at it; there is a bound at all because a
    /// service can claim to prompt and show nothing.
    std::chrono::milliseconds prompt = std::chrono::minutes(5);
};

} // namespace Talvo

#pragma once

#include "Platform/PlatformError.h"

#include <QString>

namespace Talvo {

/// What an errno value means, in a few Turkish words for the parentheses behind a sentence; "hata
/// 12" for one that is not in the table. Pure, any thread.
[[nodiscard]] QString systemErrorText(int systemError);

/// The error for a failed system call on a file: `failure` with the text of errno as its detail,
/// except that a full disk or an exhausted quota is always PlatformFailure::diskFull.
[[nodiscard]] PlatformError fileError(PlatformFailure failure, int systemError);

} // namespace Talvo

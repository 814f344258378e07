#pragma once

#include "Chat/ChatArchive.h"

namespace Talvo {

/// What the demo opens with: a few conversations in Turkish that between them hold every construct
/// a reply can be drawn from. The dates are relative to now.
[[nodiscard]] ChatArchive sampleArchive();

} // namespace Talvo

#pragma once

#include "Chat/ChatArchive.h"

namespace Talvo {

/// A loaded archive as the controller keeps it: titles cleaned, sessions sorted newest first (equal
/// times keep their order), and a selection that names a session whenever there is one.
///
/// Pure, and linear in the number of sessions but for the sort: made for a worker thread.
[[nodiscard]] ChatArchive normalizedArchive(ChatArchive archive);

} // namespace Talvo

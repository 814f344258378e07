#pragma once

#include "Chat/ChatArchive.h"
#include "Platform/BytePool.h"

#include <simdjson.h>

#include <vector>

namespace Talvo {

/// The archive that a parsed document stands for. What its messages say is copied into `contents`.
/// Unknown members are ignored; of members with one name each must be valid, and the last one
/// counts. Linear; any thread. Throws PlatformError::archiveNotValid.
[[nodiscard]] ChatArchive archiveOf(simdjson::dom::element element, BytePool &contents);

/// The conversations of a parsed array; otherwise the same.
[[nodiscard]] std::vector<ChatSession> sessionsOf(simdjson::dom::element element,
                                                  BytePool &contents);

} // namespace Talvo

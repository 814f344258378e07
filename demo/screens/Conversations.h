#pragma once

#include "Chat/ChatArchive.h"

namespace Talvo {

/// An archive with more conversations than the sidebar can show, whose selected one is longer than
/// the window, with short and long messages of both sides.
[[nodiscard]] ChatArchive longConversation();

/// An archive whose selected conversation is a question without an answer yet.
[[nodiscard]] ChatArchive shortConversation();

/// An archive that holds a memory and no conversation.
[[nodiscard]] ChatArchive noConversation();

} // namespace Talvo

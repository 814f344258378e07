#pragma once

#include "Chat/ChatArchive.h"

namespace Talvo {

/// An archive with more conversations than the sidebar can show, whose selected one is longer than
/// the window, with short and long messages of both sides.
[[nodiscard]] ChatArchive longConversation();

/// An archive whose selected conversation is short enough to be seen whole.
[[nodiscard]] ChatArchive shortConversation();

/// The demo's archive with the plan for a weekend selected: headings, items and a table.
[[nodiscard]] ChatArchive weekendPlan();

/// An archive whose selected conversation shows every construct of Markdown that is drawn, and what
/// is not drawn as one.
[[nodiscard]] ChatArchive everyMarkdownConstruct();

} // namespace Talvo

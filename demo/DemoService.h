#pragma once

#include "standins/LoopbackService.h"

namespace Talvo {

/// Answers like the completion service would: chats, titles conversations and remembers, by rules
/// simple enough to need no model, after a delay that one can see. Runs on the service's thread.
[[nodiscard]] ScriptedAnswer demoAnswer(const RecordedRequest &request, int index);

} // namespace Talvo

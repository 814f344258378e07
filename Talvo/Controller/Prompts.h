#pragma once

#include "Chat/ChatMessage.h"

#include <QString>

namespace Talvo {

/// The texts that frame a request to the model. All pure, any thread.
namespace Prompts {

/// The system prompt of a chat reply: who the assistant is, then the memory exactly as stored; an
/// empty memory adds nothing.
[[nodiscard]] QString system(const QString &memory);

/// The system prompt of the request for a short title.
[[nodiscard]] QString titleInstruction();

/// The system prompt of the request that rewrites the memory.
[[nodiscard]] QString memoryInstruction();

/// The text, in UTF-8, of the one message of the memory request: the current memory and the
/// exchange just ended.
[[nodiscard]] QByteArray memoryRequest(const QString &memory, const ChatMessage &userMessage,
                                       const ChatMessage &assistantMessage);

/// Stands for an empty memory, in the request and as a reply.
[[nodiscard]] QString emptyMemoryMarker();

/// Greets in the conversation that exists before anything was loaded; introduces the assistant.
[[nodiscard]] QString firstGreeting();

/// Greets in every conversation started later.
[[nodiscard]] QString newChatGreeting();

} // namespace Prompts

} // namespace Talvo

#pragma once

#include "Chat/ChatSession.h"

#include <utility>

namespace Talvo {

/// Ages of sample conversations, in seconds.
inline constexpr double minute = 60;
inline constexpr double hour = 60 * minute;
inline constexpr double day = 24 * hour;

/// A message of the user's in a sample conversation. @param text UTF-8
inline ChatMessage userSays(const char *text)
{
    return ChatMessage::make(ChatMessage::Role::user, text);
}

/// A reply in a sample conversation. @param text Markdown in UTF-8
inline ChatMessage assistantSays(const char *text)
{
    return ChatMessage::make(ChatMessage::Role::assistant, text);
}

/// A sample conversation. @param age seconds since its last message
inline ChatSession conversation(const QString &title, double age, ChatMessageList messages)
{
    return {QUuid::createUuid(),
            title,
            std::move(messages),
            {Instant::now().secondsSinceReference - age}};
}

} // namespace Talvo

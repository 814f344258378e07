#pragma once

#include <QByteArray>
#include <QString>
#include <QUuid>

namespace Talvo {

/// One message of a conversation. A message is never edited in place: a changed message is a new
/// value.
struct ChatMessage
{
    /// Who wrote it; the stored strings are those of roleName().
    enum class Role : quint8 {
        user,
        assistant,
    };

    QUuid id;               ///< fixed at construction, unique in its conversation
    Role role = Role::user; ///< who wrote it
    /// The text (for the assistant: Markdown), in UTF-8 as in the archive: a conversation costs no
    /// more memory than its file, and is decoded only where it is shown.
    QByteArray content;

    /// A message with a fresh random identity.
    [[nodiscard]] static ChatMessage make(Role role, QByteArray content);

    /// Equal id and role, canonically equivalent content.
    friend bool operator==(const ChatMessage &left, const ChatMessage &right);
};

/// "user" or "assistant": the string of a role in the archive and in a request.
[[nodiscard]] QLatin1StringView roleName(ChatMessage::Role role);

} // namespace Talvo

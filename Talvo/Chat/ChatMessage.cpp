#include "Chat/ChatMessage.h"

#include "Platform/Text.h"

#include <utility>

namespace Talvo {

ChatMessage ChatMessage::make(Role role, QByteArray content)
{
    return {QUuid::createUuid(), role, std::move(content)};
}

bool operator==(const ChatMessage &left, const ChatMessage &right)
{
    return left.id == right.id && left.role == right.role &&
           isCanonicallyEqualUtf8(left.content, right.content);
}

QLatin1StringView roleName(ChatMessage::Role role)
{
    switch (role) {
    case ChatMessage::Role::user:
        return QLatin1StringView("user");
    case ChatMessage::Role::assistant:
        return QLatin1StringView("assistant");
    }
    Q_UNREACHABLE();
}

} // namespace Talvo

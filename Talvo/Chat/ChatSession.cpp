#include "Chat/ChatSession.h"

#include "Platform/Text.h"

namespace Talvo {

bool operator==(const ChatSession &left, const ChatSession &right)
{
    return left.id == right.id && isCanonicallyEqual(left.title, right.title) &&
           left.messages == right.messages && left.updatedAt == right.updatedAt;
}

} // namespace Talvo

#include "Chat/ChatArchive.h"

#include "Platform/Text.h"

namespace Talvo {

bool operator==(const ChatArchive &left, const ChatArchive &right)
{
    return left.sessions == right.sessions && left.selectedSessionID == right.selectedSessionID &&
           isCanonicallyEqual(left.memory, right.memory) &&
           isCanonicallyEqual(left.selectedModel, right.selectedModel);
}

} // namespace Talvo

#include "Completion/RequestMessage.h"

namespace Talvo {

using namespace Qt::StringLiterals;

std::vector<RequestMessage> requestMessages(const ChatMessageList &conversation,
                                            const std::optional<QString> &systemPrompt)
{
    std::vector<RequestMessage> messages;
    messages.reserve(conversation.size() + 1);
    if (systemPrompt && !systemPrompt->isEmpty()) {
        messages.push_back({"system"_L1, systemPrompt->toUtf8()});
    }
    for (const ChatMessage &message : conversation) {
        messages.push_back({roleName(message.role), message.content});
    }
    return messages;
}

} // namespace Talvo

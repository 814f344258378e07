#include "Chat/ChatMessageList.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace Talvo {

ChatMessageList::ChatMessageList(std::initializer_list<ChatMessage> messages)
{
    for (const ChatMessage &message : messages) {
        append(message);
    }
}

void ChatMessageList::append(ChatMessage message)
{
    if (m_chunks.empty() || m_chunks.back()->size() == chunkSize) {
        m_chunks.push_back(std::make_shared<Chunk>(1, std::move(message)));
        return;
    }
    std::shared_ptr<Chunk> &last = m_chunks.back();
    if (last.use_count() > 1) {
        last = std::make_shared<Chunk>(*last);
    } else {
        // The last other owner may have read the chunk on another thread just before it let go;
        // the count alone is read without any ordering.
        std::atomic_thread_fence(std::memory_order_acquire);
    }
    last->push_back(std::move(message));
}

bool operator==(const ChatMessageList &left, const ChatMessageList &right)
{
    const auto haveEqualContent = [](const auto &one, const auto &other) {
        return one == other || *one == *other;
    };
    return left.size() == right.size() && std::equal(left.m_chunks.begin(), left.m_chunks.end(),
                                                     right.m_chunks.begin(), haveEqualContent);
}

} // namespace Talvo

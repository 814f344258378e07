#include "Chat/ChatMessageList.h"

#include <algorithm>
#include <utility>

namespace Talvo {

namespace {

/// Makes sure that nobody else sees what is about to be written through a pointer.
template <class Value>
Value &unshared(std::shared_ptr<Value> &pointer)
{
    if (pointer.use_count() > 1) {
        pointer = std::make_shared<Value>(*pointer);
    } else {
        // The last other owner may have read the value on another thread just before it let go; the
        // count alone is read without any ordering. Letting go of a share has one. (A fence would
        // do, but ThreadSanitizer does not follow fences.)
        std::shared_ptr<Value>(pointer).reset();
    }
    return *pointer;
}

} // namespace

ChatMessageList::ChatMessageList(std::initializer_list<ChatMessage> messages)
{
    for (const ChatMessage &message : messages) {
        append(message);
    }
}

void ChatMessageList::append(ChatMessage message)
{
    if (!m_chunks) {
        m_chunks = std::make_shared<Chunks>();
    }
    Chunks &chunks = unshared(m_chunks);
    if (chunks.empty() || chunks.back()->size() == chunkSize) {
        chunks.push_back(std::make_shared<Chunk>(1, std::move(message)));
    } else {
        unshared(chunks.back()).push_back(std::move(message));
    }
}

bool operator==(const ChatMessageList &left, const ChatMessageList &right)
{
    const auto haveEqualContent = [](const auto &one, const auto &other) {
        return one == other || *one == *other;
    };
    if (left.m_chunks == right.m_chunks) {
        return true;
    }
    return left.size() == right.size() && std::equal(left.m_chunks->begin(), left.m_chunks->end(),
                                                     right.m_chunks->begin(), haveEqualContent);
}

} // namespace Talvo

#pragma once

#include "Chat/ChatMessage.h"

#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

namespace Talvo {

/// The messages of one conversation, oldest first: an append-only value whose copies share their
/// content.
///
/// Copying costs one pointer, and appending to a copied list at most one chunk and one pointer for
/// every `chunkSize` messages, so that a snapshot of the whole state for a save, and the next
/// message after it, cost the same for a conversation of two messages and one of ten thousand.
/// Distinct copies may be used from different threads.
class ChatMessageList
{
public:
    /// Messages that are shared, and copied, together.
    static constexpr std::size_t chunkSize = 128;

    ChatMessageList() = default;
    /// A list of these messages, oldest first.
    ChatMessageList(std::initializer_list<ChatMessage> messages);

    /// The number of messages. Constant time.
    [[nodiscard]] std::size_t size() const noexcept
    {
        return empty() ? 0 : (m_chunks->size() - 1) * chunkSize + m_chunks->back()->size();
    }
    /// True without any message.
    [[nodiscard]] bool empty() const noexcept { return !m_chunks; }

    /// The message at an index. @pre index < size()
    [[nodiscard]] const ChatMessage &operator[](std::size_t index) const
    {
        return (*(*m_chunks)[index / chunkSize])[index % chunkSize];
    }

    /// @pre !empty()
    [[nodiscard]] const ChatMessage &back() const { return m_chunks->back()->back(); }

    /// Adds a message at the end; references to earlier ones are no longer valid.
    void append(ChatMessage message);

    /// A forward iterator (as the standard library has it) over the messages, oldest first. Valid
    /// as long as its list is neither changed nor gone.
    class const_iterator
    {
    public:
        /// @cond What every forward iterator has.
        using iterator_category = std::forward_iterator_tag;
        using iterator_concept = std::forward_iterator_tag;
        using value_type = ChatMessage;
        using difference_type = std::ptrdiff_t;
        using pointer = const ChatMessage *;
        using reference = const ChatMessage &;

        const_iterator() = default;
        const_iterator(const ChatMessageList *list, std::size_t index)
            : m_list(list)
            , m_index(index)
        {
        }

        reference operator*() const { return (*m_list)[m_index]; }
        pointer operator->() const { return &(*m_list)[m_index]; }
        const_iterator &operator++()
        {
            ++m_index;
            return *this;
        }
        const_iterator operator++(int)
        {
            const const_iterator before = *this;
            ++m_index;
            return before;
        }
        bool operator==(const const_iterator &) const = default;
        /// @endcond

    private:
        const ChatMessageList *m_list = nullptr;
        std::size_t m_index = 0;
    };

    /// The oldest message.
    [[nodiscard]] const_iterator begin() const { return {this, 0}; }
    /// Behind the newest message.
    [[nodiscard]] const_iterator end() const { return {this, size()}; }

    /// Same count and equal messages at every index.
    friend bool operator==(const ChatMessageList &left, const ChatMessageList &right);

private:
    using Chunk = std::vector<ChatMessage>;
    using Chunks = std::vector<std::shared_ptr<Chunk>>;

    /// Null for no messages. No chunk is empty and all but the last are full. The vector and its
    /// last chunk are only written to while no other list shares them.
    std::shared_ptr<Chunks> m_chunks;
};

} // namespace Talvo

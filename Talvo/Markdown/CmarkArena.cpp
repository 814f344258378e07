#include "Markdown/CmarkArena.h"

#include <algorithm>
#include <cstring>

namespace Talvo {

namespace {

/// What one thread keeps between two parses: enough for every block of an ordinary reply.
constexpr std::size_t firstChunkSize = std::size_t(64) * 1024;
constexpr std::size_t largestChunkSize = std::size_t(1024) * 1024;
constexpr std::size_t alignment = alignof(std::max_align_t);

/// Stands before each piece of memory: reallocation has to know how much to copy.
struct alignas(alignment) Header
{
    std::size_t size = 0; ///< rounded up, without the header
};

std::size_t roundedUp(std::size_t size)
{
    return (size + alignment - 1) / alignment * alignment;
}

Header *headerOf(void *memory)
{
    return static_cast<Header *>(memory) - 1;
}

} // namespace

CmarkArena::CmarkArena()
{
    addChunk(firstChunkSize);
}

CmarkArena &CmarkArena::ofThisThread()
{
    static thread_local CmarkArena arena;
    return arena;
}

void *CmarkArena::allocate(std::size_t size)
{
    const std::size_t rounded = roundedUp(size);
    const std::size_t total = rounded + sizeof(Header);
    if (m_chunks.back().size - m_used < total) {
        addChunk(std::max(total, std::min(m_chunks.back().size * 2, largestChunkSize)));
    }
    auto *header = new (m_chunks.back().bytes.get() + m_used) Header{rounded};
    m_used += total;
    void *memory = header + 1;
    return std::memset(memory, 0, rounded);
}

void *CmarkArena::reallocate(void *old, std::size_t size)
{
    if (old != nullptr && headerOf(old)->size >= size) {
        return old;
    }
    void *memory = allocate(size);
    if (old != nullptr) {
        std::memcpy(memory, old, headerOf(old)->size);
    }
    return memory;
}

void CmarkArena::release(void *memory) noexcept
{
    if (memory == nullptr) {
        return;
    }
    auto *begin = reinterpret_cast<std::byte *>(headerOf(memory));
    const std::size_t total = headerOf(memory)->size + sizeof(Header);
    if (begin + total == m_chunks.back().bytes.get() + m_used) {
        m_used -= total;
    }
}

void CmarkArena::clear() noexcept
{
    m_chunks.resize(1);
    m_used = 0;
}

void CmarkArena::addChunk(std::size_t size)
{
    m_chunks.push_back({std::unique_ptr<std::byte[]>(new std::byte[size]), size});
    m_used = 0;
}

} // namespace Talvo

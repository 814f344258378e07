#include <cstddef>
#include <cstdlib>
#include <cstring>

// Overwrites memory that is freed. The network library and OpenSSL make copies of a request's head,
// and so of the key, and free them as they are: the key would lie about until the allocator happens
// to use that memory again. Nobody but the allocator sees all of them.
//
// The C library lets a program replace these functions, and hands its own out under other names. A
// sanitizer has its own, as has the allocator of other systems.

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

#include <malloc.h>

extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the C library's names
void __libc_free(void *memory) noexcept;
void *__libc_realloc(void *memory, std::size_t size) noexcept;
// NOLINTEND(bugprone-reserved-identifier)
}

namespace {

/// Larger blocks are an archive's, which holds no key, and would take their time. What is sent
/// comes in pieces of 32 KiB.
constexpr std::size_t maximumWipedSize = std::size_t{1024} * 1024;

/// Overwrites a block from an offset on.
void wipeBlock(void *memory, std::size_t usableSize, std::size_t offset) noexcept
{
    if (usableSize <= maximumWipedSize && offset < usableSize) {
        std::memset(static_cast<char *>(memory) + offset, 0, usableSize - offset);
    }
}

} // namespace

extern "C" {

/// As in the C standard; what was in the memory is gone. Any thread.
[[gnu::visibility("default")]] void free(void *memory) noexcept
{
    if (memory) {
        wipeBlock(memory, malloc_usable_size(memory), 0);
        __libc_free(memory);
    }
}

/// As in the C standard; what was in memory that is given up is gone. Any thread.
[[gnu::visibility("default")]] void *realloc(void *memory, std::size_t size) noexcept
{
    if (!memory) {
        return std::malloc(size);
    }
    if (size == 0) {
        free(memory);
        return nullptr;
    }
    const std::size_t usableSize = malloc_usable_size(memory);
    if (size <= usableSize || usableSize > maximumWipedSize) {
        wipeBlock(memory, usableSize, size);
        return __libc_realloc(memory, size);
    }
    // In place or not is the allocator's choice, and it does not wipe what it leaves.
    void *const moved = std::malloc(size);
    if (moved) {
        std::memcpy(moved, memory, usableSize);
        free(memory);
    }
    return moved;
}
}

#endif

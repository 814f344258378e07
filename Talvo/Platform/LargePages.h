#pragma once

#include <cstddef>

namespace Talvo {

/// Asks the system to back a large block of memory that is about to be filled with large pages,
/// where it has them: filling it then takes a five-hundredth of the page faults.
///
/// A wish, and never an error: without such pages, or for a block that is too small for one,
/// nothing changes. The block keeps its content. Any thread.
///
/// @param begin first byte of the block, aligned in any way
/// @param size  of the block, in bytes
void preferLargePages(void *begin, std::size_t size) noexcept;

} // namespace Talvo

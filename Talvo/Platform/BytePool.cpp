#include "Platform/BytePool.h"

#include "Platform/LargePages.h"

#include <algorithm>

namespace Talvo {

BytePool::BytePool(qsizetype capacity)
    : m_block(capacity, Qt::Uninitialized)
    , m_begin(m_block.data())
{
    preferLargePages(m_begin, static_cast<std::size_t>(capacity));
}

QByteArray BytePool::copy(QByteArrayView bytes)
{
    const qsizetype place = m_used.fetch_add(bytes.size() + 1, std::memory_order_relaxed);
    if (place + bytes.size() >= m_block.size()) {
        return bytes.toByteArray();
    }
    char *begin = m_begin + place;
    std::copy(bytes.begin(), bytes.end(), begin);
    begin[bytes.size()] = '\0';
    // A byte array is a counted block and a place in it, which need not be the block's beginning.
    auto *block = m_block.data_ptr().d_ptr();
    block->ref();
    return QByteArray(QByteArray::DataPointer(block, begin, bytes.size()));
}

} // namespace Talvo

#pragma once

#include <QByteArray>

#include <atomic>

namespace Talvo {

/// One block of memory for very many byte arrays that are made together: with an allocation of its
/// own for each, making them takes twice as long.
///
/// The block lives as long as the last of its arrays, or the pool: no array frees its part alone.
class BytePool
{
public:
    /// Any thread.
    /// @param capacity in bytes; each array takes its size and one more
    /// @throws std::bad_alloc
    explicit BytePool(qsizetype capacity);

    /// A byte array with a copy of these bytes, and a zero behind them as behind all others. It may
    /// outlive the pool; whoever changes it gets an own copy first. When the pool is full, the
    /// array stands outside of it. Any thread, several at once.
    /// @throws std::bad_alloc
    [[nodiscard]] QByteArray copy(QByteArrayView bytes);

private:
    QByteArray m_block;
    char *m_begin;
    std::atomic<qsizetype> m_used = 0;
};

} // namespace Talvo

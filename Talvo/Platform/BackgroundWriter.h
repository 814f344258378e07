#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFuture>
#include <QThreadPool>

#include <functional>

namespace Talvo {

/// Writes pieces on a thread of its own while its owner makes the next one.
///
/// No more than one piece is on its way, so that a slow disk slows the owner down instead of
/// filling the memory. Used by one thread; destruction waits for the piece on its way.
class BackgroundWriter
{
public:
    /// @param write writes one piece; called for one after the other, on the other thread or, where
    /// that one is late, on the owner's. A QException that it throws reaches the owner.
    explicit BackgroundWriter(std::function<void(QByteArrayView)> write);
    ~BackgroundWriter();
    Q_DISABLE_COPY_MOVE(BackgroundWriter)

    /// Waits until the piece before is written, and lets a copy of this one be written. Throws what
    /// writing the piece before threw; nothing more is written then.
    void write(QByteArrayView piece);

    /// Waits until everything is written. Throws what writing the last piece threw.
    void finish();

private:
    const std::function<void(QByteArrayView)> m_write;
    QByteArray m_piece; ///< belongs to the other thread until m_writing is finished
    QFuture<void> m_writing;
    QThreadPool m_thread; ///< last, so that it ends first
};

} // namespace Talvo

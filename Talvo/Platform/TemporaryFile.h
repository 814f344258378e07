#pragma once

#include "Platform/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>

namespace Talvo {

/// A new file beside a target, on its way to replace it: written, synced and renamed over it, or
/// removed at the end.
///
/// It is called ".<target>.talvo-XXXXXX" and has mode 0600. All failures are PlatformError
/// (diskFull, archiveNotWritable).
class TemporaryFile
{
public:
    /// @param target encoded path of the file to replace, with all symbolic links resolved.
    explicit TemporaryFile(const QByteArray &target);
    ~TemporaryFile();
    Q_DISABLE_COPY_MOVE(TemporaryFile)

    /// Appends to what was written before.
    void write(QByteArrayView piece);

    /// Brings the data to the disk and puts the file in the target's place.
    void replaceTarget();

    /// Removes what a process that was killed has left of such files for a target. Only regular
    /// files with a name of this pattern are touched, so that no backup and no temporary file of
    /// another program goes with them; failures do not matter.
    static void removeLeftovers(const QByteArray &target);

private:
    void beginWriteBack(qint64 count);

    const QByteArray m_target;
    QByteArray m_path; ///< empty once it is the target
    FileDescriptor m_file;
    qint64 m_written = 0;
    qint64 m_handedToDisk = 0; ///< of these bytes
};

/// Brings an open file's data, and what is needed to find it again, to the disk itself. Returns -1
/// with errno on failure.
[[nodiscard]] int syncToDisk(int descriptor);

/// The folder of an encoded path; "." for a bare name.
[[nodiscard]] QByteArray folderOf(const QByteArray &path);

/// The last component of an encoded path.
[[nodiscard]] QByteArray nameOf(const QByteArray &path);

} // namespace Talvo

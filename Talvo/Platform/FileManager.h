#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>

namespace Talvo {

/// The few things that this application asks of the file system, each of them synchronous.
///
/// Used from one worker thread at a time. All failures are PlatformError with a Turkish sentence.
/// The members are virtual so that a test can break one of them.
class FileManager
{
public:
    FileManager() = default;
    virtual ~FileManager() = default;
    Q_DISABLE_COPY_MOVE(FileManager)

    /// The user's Application Support directory (QStandardPaths::GenericDataLocation), absolute;
    /// empty when the system names none.
    [[nodiscard]] virtual QString applicationSupportDirectory() const;

    /// True when something exists at the path, whatever it is and whether or not it can be read.
    [[nodiscard]] virtual bool fileExists(const QString &path) const;

    /// Makes a directory and the missing ones above it, each with mode 0700; an existing one is
    /// left as it is. Throws PlatformError::folderNotCreatable.
    virtual void createDirectory(const QString &path) const;

    /// The whole content of a file, with `padding` more bytes of unspecified content reserved (not
    /// counted in the size) behind it. Throws PlatformError::archiveNotReadable.
    [[nodiscard]] virtual QByteArray readFile(const QString &path, qsizetype padding) const;

    /// Receives the next piece of what is being written.
    using Sink = std::function<void(QByteArrayView)>;

    /// Replaces a file as a whole: `produce` writes into a temporary file of mode 0600 in the same
    /// folder, whose data is synced before it is renamed over the target; then the folder is
    /// synced. A crash or a power cut leaves either the old content or the new one. On failure, of
    /// `produce` too, the temporary file is removed and the target is as before. Throws
    /// PlatformError (diskFull, archiveNotWritable) or what `produce` throws.
    virtual void replaceFile(const QString &path,
                             const std::function<void(const Sink &)> &produce) const;

    /// Gives an existing file a second name in the same file system (a hard link), without reading
    /// it. Throws PlatformError::archiveNotKept.
    virtual void linkFile(const QString &existing, const QString &additional) const;
};

} // namespace Talvo

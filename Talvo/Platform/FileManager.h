#pragma once

#include "Platform/ReadableFile.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <functional>
#include <memory>

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

    /// True when something exists at the path, whatever it is and whether or not it can be read: a
    /// symbolic link that leads nowhere, and what a folder that may not be searched hides, count as
    /// existing. Only a certain "nothing there" is false.
    [[nodiscard]] virtual bool fileExists(const QString &path) const;

    /// Makes a directory and the missing ones above it, each with mode 0700; an existing one is
    /// left as it is. Throws PlatformError::folderNotCreatable.
    virtual void createDirectory(const QString &path) const;

    /// Opens a regular file for reading. Throws PlatformError::archiveNotReadable, also for a
    /// folder, a pipe or a device, none of which is waited for.
    [[nodiscard]] virtual std::unique_ptr<const ReadableFile> openFile(const QString &path) const;

    /// Receives the next piece of what is being written.
    using Sink = std::function<void(QByteArrayView)>;

    /// Replaces a file as a whole: `produce` writes into a temporary file of mode 0600 in the same
    /// folder, whose data is synced before it is renamed over the target; then the folder is
    /// synced. A crash or a power cut leaves either the old content or the new one. On failure, of
    /// `produce` too, the temporary file is removed and the target is as before; only the sync of
    /// the folder can fail after the replacement. What an earlier process, killed while writing,
    /// has left of its temporary files is removed: one process at a time may replace a file.
    ///
    /// Where the path is a symbolic link, perhaps into a synced folder, the link stays and the file
    /// that it leads to is replaced. Only a regular file ever is. Throws PlatformError (diskFull,
    /// archiveNotWritable) or what `produce` throws.
    virtual void replaceFile(const QString &path,
                             const std::function<void(const Sink &)> &produce) const;

    /// What came of keepFileAs().
    enum class KeepOutcome {
        kept,
        nameTaken,   ///< something has that name already, and keeps it
        fileMissing, ///< there is no file that could be kept
    };

    /// Lets the content of a file outlast its replacement, under another name in its own folder: as
    /// a hard link, without reading the file, or as a synced copy where the disk knows no hard
    /// links. A symbolic link is followed first: the other name then stands beside the real file.
    /// Throws PlatformError::archiveNotKept.
    [[nodiscard]] virtual KeepOutcome keepFileAs(const QString &existing,
                                                 const QString &name) const;
};

} // namespace Talvo

#include "Platform/FileManager.h"

#include "Platform/BackgroundWriter.h"
#include "Platform/FileDescriptor.h"
#include "Platform/LargePages.h"
#include "Platform/SystemErrorText.h"
#include "Platform/TemporaryFile.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>

namespace Talvo {

namespace {

/// Where a path leads when every symbolic link in its last component is followed, whether or not a
/// file is there. Throws `failure` when the links have no end.
QByteArray withoutLinks(QByteArray path, PlatformFailure failure)
{
    constexpr int mostLinks = 40; // as many as the system itself follows
    for (int i = 0; i < mostLinks; ++i) {
        QByteArray target(PATH_MAX, Qt::Uninitialized);
        const auto length =
            ::readlink(path.constData(), target.data(), static_cast<std::size_t>(target.size()));
        if (length == -1) {
            return path; // no link: a file, or nothing yet
        }
        target.truncate(length);
        path = target.startsWith('/') ? target : folderOf(path) + "/" + target;
    }
    throw fileError(failure, ELOOP);
}

void refuseToReplaceOtherThanRegularFile(const QByteArray &path)
{
    struct stat status
    {
    };
    if (::lstat(path.constData(), &status) == -1 || S_ISREG(status.st_mode)) {
        return;
    }
    if (S_ISDIR(status.st_mode)) {
        throw fileError(PlatformFailure::archiveNotWritable, EISDIR);
    }
    throw PlatformError(PlatformFailure::archiveNotWritable, QStringLiteral("dosya değil"));
}

/// The size of an open regular file. Throws for anything else.
qsizetype sizeOfRegularFile(const FileDescriptor &file)
{
    struct stat status
    {
    };
    if (::fstat(file.number(), &status) == -1) {
        throw fileError(PlatformFailure::archiveNotReadable, errno);
    }
    if (S_ISDIR(status.st_mode)) {
        throw fileError(PlatformFailure::archiveNotReadable, EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        throw PlatformError(PlatformFailure::archiveNotReadable, QStringLiteral("dosya değil"));
    }
    return static_cast<qsizetype>(status.st_size);
}

/// Reads to the end of the file, wherever that is by now: the size was only a good guess.
QByteArray readToEnd(const FileDescriptor &file, qsizetype expectedSize, qsizetype padding)
{
    constexpr qsizetype smallestRead = 65536;
    QByteArray content;
    // One byte more than expected lets the last read see the end without growing.
    content.reserve(expectedSize + std::max(padding, qsizetype{1}));
    preferLargePages(content.data(), static_cast<std::size_t>(content.capacity()));
    while (true) {
        const qsizetype filled = content.size();
        const qsizetype room = content.capacity() - filled;
        content.resize(filled + (room > 0 ? room : smallestRead));
        const auto count = uninterrupted([&] {
            return ::read(file.number(), content.data() + filled,
                          static_cast<std::size_t>(content.size() - filled));
        });
        if (count == -1) {
            throw fileError(PlatformFailure::archiveNotReadable, errno);
        }
        content.resize(filled + count);
        if (count == 0) {
            content.reserve(filled + padding);
            return content;
        }
    }
}

bool isFolder(const QByteArray &path)
{
    struct stat status
    {
    };
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

QString FileManager::applicationSupportDirectory() const
{
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir::isAbsolutePath(path) ? path : QString();
}

bool FileManager::fileExists(const QString &path) const
{
    struct stat status
    {
    };
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 ||
           (errno != ENOENT && errno != ENOTDIR);
}

void FileManager::createDirectory(const QString &path) const
{
    constexpr mode_t ownerOnly = 0700;
    const QByteArray encoded = QFile::encodeName(QDir::cleanPath(path));
    for (qsizetype slash = encoded.indexOf('/', 1); true; slash = encoded.indexOf('/', slash + 1)) {
        const QByteArray folder = slash < 0 ? encoded : encoded.first(slash);
        if (!isFolder(folder) && ::mkdir(folder.constData(), ownerOnly) == -1) {
            const int systemError = errno;
            // Another process may have made it just now.
            if (!isFolder(folder)) {
                throw fileError(PlatformFailure::folderNotCreatable,
                                systemError == EEXIST ? ENOTDIR : systemError);
            }
        }
        if (slash < 0) {
            return;
        }
    }
}

QByteArray FileManager::readFile(const QString &path, qsizetype padding) const
{
    // Without O_NONBLOCK, opening a pipe waits for somebody to write into it.
    const QByteArray encoded = QFile::encodeName(path);
    const FileDescriptor file(uninterrupted(
        [&] { return ::open(encoded.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    if (!file.isOpen()) {
        throw fileError(PlatformFailure::archiveNotReadable, errno);
    }
    try {
        return readToEnd(file, sizeOfRegularFile(file), padding);
    } catch (const std::bad_alloc &) {
        throw fileError(PlatformFailure::archiveNotReadable, ENOMEM);
    }
}

void FileManager::replaceFile(const QString &path,
                              const std::function<void(const Sink &)> &produce) const
{
    const QByteArray target =
        withoutLinks(QFile::encodeName(path), PlatformFailure::archiveNotWritable);
    refuseToReplaceOtherThanRegularFile(target);
    TemporaryFile::removeLeftovers(target);
    TemporaryFile file(target);
    BackgroundWriter writer([&file](QByteArrayView piece) { file.write(piece); });
    produce([&writer](QByteArrayView piece) { writer.write(piece); });
    writer.finish();
    file.replaceTarget();
}

FileManager::LinkOutcome FileManager::linkFile(const QString &existing, const QString &name) const
{
    const QByteArray file =
        withoutLinks(QFile::encodeName(existing), PlatformFailure::archiveNotKept);
    const QByteArray additional = folderOf(file) + "/" + QFile::encodeName(name);
    if (::link(file.constData(), additional.constData()) == 0) {
        return LinkOutcome::linked;
    }
    switch (errno) {
    case EEXIST:
        return LinkOutcome::nameTaken;
    case ENOENT:
    case ENOTDIR:
        return LinkOutcome::fileMissing;
    default:
        throw PlatformError(PlatformFailure::archiveNotKept, systemErrorText(errno));
    }
}

} // namespace Talvo

#include "Platform/FileManager.h"

#include "Platform/BackgroundWriter.h"
#include "Platform/FileDescriptor.h"
#include "Platform/FileOnDisk.h"
#include "Platform/SystemErrorText.h"
#include "Platform/TemporaryFile.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>

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

bool isFolder(const QByteArray &path)
{
    struct stat status
    {
    };
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Whether a failed link() says that there may be no second name for the file here, as on FAT.
bool isLinkRefused(int systemError)
{
    return systemError == EPERM || systemError == ENOTSUP || systemError == EOPNOTSUPP ||
           systemError == ENOSYS || systemError == EMLINK;
}

[[noreturn]] void throwNotKept(int systemError)
{
    throw PlatformError(PlatformFailure::archiveNotKept, systemErrorText(systemError));
}

/// Why the content of a file may not be on the disk, an errno; 0 when it is.
int syncFile(const QByteArray &path)
{
    const FileDescriptor file(
        uninterrupted([&path] { return ::open(path.constData(), O_RDONLY | O_CLOEXEC); }));
    return file.isOpen() && syncToDisk(file.number()) != -1 ? 0 : errno;
}

FileManager::KeepOutcome copyFile(const QByteArray &file, const QByteArray &copy)
{
    std::error_code error;
    std::filesystem::copy_file(file.toStdString(), copy.toStdString(), error);
    if (error == std::errc::file_exists) {
        return FileManager::KeepOutcome::nameTaken;
    }
    if (error == std::errc::no_such_file_or_directory) {
        return FileManager::KeepOutcome::fileMissing;
    }
    const int systemError = error ? error.value() : syncFile(copy);
    if (systemError == 0) {
        return FileManager::KeepOutcome::kept;
    }
    ::unlink(copy.constData()); // the next try makes one of its own
    throwNotKept(systemError);
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

std::unique_ptr<const ReadableFile> FileManager::openFile(const QString &path) const
{
    return std::make_unique<FileOnDisk>(QFile::encodeName(path));
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

FileManager::KeepOutcome FileManager::keepFileAs(const QString &existing, const QString &name) const
{
    const QByteArray file =
        withoutLinks(QFile::encodeName(existing), PlatformFailure::archiveNotKept);
    const QByteArray additional = folderOf(file) + "/" + QFile::encodeName(name);
    if (::link(file.constData(), additional.constData()) == 0) {
        return KeepOutcome::kept;
    }
    if (errno == EEXIST) {
        return KeepOutcome::nameTaken;
    }
    if (errno == ENOENT || errno == ENOTDIR) {
        return KeepOutcome::fileMissing;
    }
    if (!isLinkRefused(errno)) {
        throwNotKept(errno);
    }
    return copyFile(file, additional);
}

} // namespace Talvo

#include "Platform/TemporaryFile.h"

#include "Platform/SystemErrorText.h"

#include <QThreadPool>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

namespace Talvo {

namespace {

constexpr auto ownMark = ".talvo-";             // nobody else calls a file this beside the target
constexpr QByteArrayView uniquePart = "XXXXXX"; // as mkostemp() wants it

QByteArray leadingPart(const QByteArray &target)
{
    return "." + nameOf(target) + ownMark;
}

/// Makes the file; `path` ends in the unique part and gets its real name.
int makeUniqueFile(QByteArray &path)
{
    return uninterrupted([&path] { return ::mkostemp(path.data(), O_CLOEXEC); });
}

[[noreturn]] void throwNotWritable()
{
    throw fileError(PlatformFailure::archiveNotWritable, errno);
}

bool isNameOfLeftover(QByteArrayView name, QByteArrayView leading)
{
    const auto isUniqueCharacter = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    };
    return name.size() == leading.size() + uniquePart.size() && name.startsWith(leading) &&
           std::ranges::all_of(name.sliced(leading.size()), isUniqueCharacter);
}

/// Makes a rename durable. A folder that cannot be opened or a file system that knows no such thing
/// leaves the file as safe as it can be.
void syncFolder(const QByteArray &path)
{
    const FileDescriptor folder(uninterrupted(
        [&path] { return ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (folder.isOpen() && syncToDisk(folder.number()) == -1 && errno == EIO) {
        throwNotWritable();
    }
}

/// Closes a file that has lost its name. Whoever closes it last waits until the system has freed
/// its content, which takes as long as a part of writing it. Nobody does where a thread is free;
/// else this one closes it, so that the disk has room for the next file.
void closeInBackground(std::shared_ptr<const FileDescriptor> file)
{
    // None of the global pool's: a thread that is started here has the priority of this one, and
    // there it would keep it for other work.
    static QThreadPool threads;
    threads.tryStart([file = std::move(file)]() mutable { file.reset(); });
}

} // namespace

TemporaryFile::TemporaryFile(const QByteArray &target)
    : m_target(target)
    , m_path(folderOf(target) + "/" + leadingPart(target) + uniquePart.toByteArray())
    , m_file(makeUniqueFile(m_path))
{
    if (!m_file.isOpen()) {
        throwNotWritable();
    }
}

TemporaryFile::~TemporaryFile()
{
    if (!m_path.isEmpty()) {
        // What cannot be removed now is removed before the next write.
        ::unlink(m_path.constData());
    }
}

void TemporaryFile::write(QByteArrayView piece)
{
    while (!piece.isEmpty()) {
        const auto count = uninterrupted([&] {
            return ::write(m_file.number(), piece.data(), static_cast<std::size_t>(piece.size()));
        });
        if (count == -1) {
            throwNotWritable();
        }
        piece = piece.sliced(count);
        beginWriteBack(count);
    }
}

/// Lets the disk work on what is written while the rest is still being made; else all of it would
/// wait for the sync at the end. Only a hint: the sync alone says whether the data arrived.
void TemporaryFile::beginWriteBack(qint64 count)
{
    m_written += count;
#ifdef Q_OS_LINUX
    constexpr qint64 portion = 8 << 20;
    if (m_written - m_handedToDisk >= portion) {
        ::sync_file_range(m_file.number(), m_handedToDisk, m_written - m_handedToDisk,
                          SYNC_FILE_RANGE_WRITE);
        m_handedToDisk = m_written;
    }
#endif
}

void TemporaryFile::replaceTarget()
{
    // There may be none, or one that may not be read: then its content is freed by the renaming.
    auto replaced = std::make_shared<const FileDescriptor>(uninterrupted(
        [this] { return ::open(m_target.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    if (syncToDisk(m_file.number()) == -1 ||
        ::rename(m_path.constData(), m_target.constData()) == -1) {
        throwNotWritable();
    }
    m_path.clear();
    closeInBackground(std::move(replaced));
    syncFolder(folderOf(m_target));
}

void TemporaryFile::removeLeftovers(const QByteArray &target)
{
    const QByteArray leading = leadingPart(target);
    std::error_code ignored;
    using Iterator = std::filesystem::directory_iterator;
    for (Iterator entry(folderOf(target).toStdString(), ignored); !ignored && entry != Iterator();
         entry.increment(ignored)) {
        const std::string name = entry->path().filename().string();
        std::error_code unknownType;
        if (isNameOfLeftover(QByteArrayView(name), leading) &&
            entry->symlink_status(unknownType).type() == std::filesystem::file_type::regular) {
            ::unlink(entry->path().c_str());
        }
    }
}

int syncToDisk(int descriptor)
{
#ifdef F_FULLFSYNC
    // fsync() of macOS leaves the data in the drive's own cache. Not every file system has this.
    if (uninterrupted([&] { return ::fcntl(descriptor, F_FULLFSYNC); }) != -1) {
        return 0;
    }
#endif
    return uninterrupted([&] { return ::fsync(descriptor); });
}

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0) {
        return ".";
    }
    return slash == 0 ? QByteArray("/") : path.first(slash);
}

QByteArray nameOf(const QByteArray &path)
{
    return path.sliced(path.lastIndexOf('/') + 1);
}

} // namespace Talvo

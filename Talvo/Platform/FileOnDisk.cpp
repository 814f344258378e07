#include "Platform/FileOnDisk.h"

#include "Platform/SystemErrorText.h"

#include <algorithm>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>

namespace Talvo {

namespace {

/// The size of an open regular file. Throws for anything else.
qsizetype sizeOfRegularFile(const FileDescriptor &file)
{
    struct stat status
    {
    };
    if (!file.isOpen() || ::fstat(file.number(), &status) == -1) {
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

} // namespace

FileOnDisk::FileOnDisk(const QByteArray &path)
    // Without O_NONBLOCK, opening a pipe waits for somebody to write into it.
    : m_file(uninterrupted([&path] {
        return ::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    }))
    , m_size(sizeOfRegularFile(m_file))
{
}

void FileOnDisk::read(qsizetype offset, qsizetype count, QByteArray &to) const
{
    constexpr qsizetype mostAtOnce = qsizetype{1} << 30; // macOS refuses what an int cannot count
    const qsizetype begin = to.size();
    to.resize(begin + count);
    qsizetype filled = 0;
    while (filled < count) {
        const auto wanted = static_cast<std::size_t>(std::min(count - filled, mostAtOnce));
        const auto more = uninterrupted([&] {
            return ::pread(m_file.number(), to.data() + begin + filled, wanted,
                           static_cast<off_t>(offset + filled));
        });
        if (more == -1) {
            throw fileError(PlatformFailure::archiveNotReadable, errno);
        }
        if (more == 0) {
            break;
        }
        filled += more;
    }
    to.resize(begin + filled);
}

QByteArray FileOnDisk::readAll(qsizetype padding) const
{
    constexpr qsizetype smallestRead = 65536;
    QByteArray content;
    try {
        // One byte more than expected lets the first read see the end.
        content.reserve(m_size + std::max(padding, qsizetype{1}));
        qsizetype filled = 0;
        qsizetype wanted = 0;
        do {
            filled = content.size();
            wanted = std::max(content.capacity() - filled, smallestRead);
            read(filled, wanted, content);
        } while (content.size() == filled + wanted);
        content.reserve(content.size() + padding);
        return content;
    } catch (const std::bad_alloc &) {
        throw fileError(PlatformFailure::archiveNotReadable, ENOMEM);
    }
}

} // namespace Talvo

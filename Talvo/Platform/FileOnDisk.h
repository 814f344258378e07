#pragma once

#include "Platform/FileDescriptor.h"
#include "Platform/ReadableFile.h"

namespace Talvo {

/// A regular file of the system.
class FileOnDisk : public ReadableFile
{
public:
    /// Opens the file at an encoded path. Throws PlatformError::archiveNotReadable, also for a
    /// folder, a pipe or a device, none of which is waited for.
    explicit FileOnDisk(const QByteArray &path);

    [[nodiscard]] qsizetype size() const override { return m_size; }
    void read(qsizetype offset, qsizetype count, QByteArray &to) const override;
    [[nodiscard]] QByteArray readAll(qsizetype padding) const override;

private:
    const FileDescriptor m_file;
    const qsizetype m_size;
};

} // namespace Talvo

#pragma once

#include <QByteArray>

namespace Talvo {

/// A regular file that is open for reading, by several threads at once.
class ReadableFile
{
public:
    ReadableFile() = default;
    virtual ~ReadableFile() = default;
    Q_DISABLE_COPY_MOVE(ReadableFile)

    /// How many bytes it had when it was opened.
    [[nodiscard]] virtual qsizetype size() const = 0;

    /// Appends `count` bytes from the place `offset` on; fewer where the file ends before. Throws
    /// PlatformError::archiveNotReadable.
    virtual void read(qsizetype offset, qsizetype count, QByteArray &to) const = 0;

    /// The whole content, wherever it ends by now, with `padding` more bytes of unspecified content
    /// reserved (not counted in the size) behind it. Throws PlatformError::archiveNotReadable.
    [[nodiscard]] virtual QByteArray readAll(qsizetype padding) const = 0;
};

} // namespace Talvo

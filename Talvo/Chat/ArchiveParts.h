#pragma once

#include "Platform/ReadableFile.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace Talvo {

/// The document of an archive, divided where its conversations meet, so that no more than a part of
/// it has to be in memory at a time.
struct ArchiveParts
{
    /// A piece of the file.
    struct Range
    {
        qsizetype begin; ///< the place of its first byte
        qsizetype size;  ///< in bytes
    };

    /// The document without its conversations: "sessions" is an empty array.
    QByteArray frame;
    /// What stands in that array, in order, without the commas between the parts: each is the
    /// inside of an array of one or more conversations.
    std::vector<Range> sessions;
};

/// Divides a file into parts of `partSize` bytes and up to one conversation more; absent when it
/// has not the layout in which encodeArchive() writes, or a very long text in front of its
/// conversations.
///
/// Nothing is parsed here, and the layout alone proves nothing. But where the frame is a JSON
/// object with an empty "sessions", and each part in square brackets is a JSON array, the document
/// is exactly what they are together: the array that the frame closes at its end is the one that it
/// opened in front of the parts, and a comma between two sequences of elements makes one of them.
/// Reads a little at the beginning, at the end and wherever a part ends; any thread. Throws
/// PlatformError::archiveNotReadable.
[[nodiscard]] std::optional<ArchiveParts> archiveParts(const ReadableFile &file,
                                                       qsizetype partSize);

} // namespace Talvo

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>
#include <vector>

namespace Talvo {

/// The document of an archive, divided where its conversations meet, so that no more than a part of
/// it has to be parsed at a time.
struct ArchiveParts
{
    /// The document without its conversations: "sessions" is an empty array.
    QByteArray frame;
    /// What stood in that array, in order, without the commas between the parts: each is the inside
    /// of an array of one or more conversations. They belong to the document.
    std::vector<QByteArrayView> sessions;
};

/// Divides a document into parts of `partSize` bytes and up to one conversation more; absent when
/// it has not the layout in which encodeArchive() writes.
///
/// Nothing is parsed here, and the layout alone proves nothing. But where the frame is a JSON
/// object with an empty "sessions", and each part in square brackets is a JSON array, the document
/// is exactly what they are together: the array that the frame closes at its end is the one that it
/// opened in front of the parts, and a comma between two sequences of elements makes one of them.
/// Linear in what is looked through; any thread.
[[nodiscard]] std::optional<ArchiveParts> archiveParts(QByteArrayView document, qsizetype partSize);

} // namespace Talvo

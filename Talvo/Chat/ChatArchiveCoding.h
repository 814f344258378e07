#pragma once

#include "Chat/ChatArchive.h"
#include "Platform/ReadableFile.h"

#include <QByteArrayView>

#include <functional>

namespace Talvo {

/// Writes an archive as JSON (RFC 8259) in UTF-8: sorted keys, two blanks of indent a level, a
/// blank on both sides of the colon, an empty array over three lines, no line feed at the end. The
/// same archive always gives the same bytes, whatever the locale.
///
/// A text that is no UTF-8 gets U+FFFD for its faulty bytes, so that what was written can always be
/// read. `sink` gets the document in order, in pieces of 1 MiB and a shorter one. Linear in the
/// size of the archive; any thread. Throws PlatformError::archiveNotWritable for a date that is no
/// finite number, and what `sink` throws.
void encodeArchive(const ChatArchive &archive, const std::function<void(QByteArrayView)> &sink);

/// The same as one array of bytes.
[[nodiscard]] QByteArray encodeArchive(const ChatArchive &archive);

/// How many bytes must be readable behind a document that is decoded in place.
[[nodiscard]] qsizetype archiveDecodingPadding();

/// Reads an archive back. Any white space, a leading byte-order mark and unknown members at any
/// depth are accepted, and numbers in any form that a double can hold; "selectedSessionID" may be
/// missing or null; everything else is required and has its one type. Where an object has several
/// members of one name, each must be valid and the last one counts. The document must be
/// well-formed as a whole, nested less than 1,024 levels deep and shorter than 4 GiB.
///
/// Takes the document by value and frees it before the records are made, to keep the peak of memory
/// low: two to three times the document for an archive, and at most about 14 times for one made of
/// nothing but "1,1,1". The caller best leaves archiveDecodingPadding() bytes reserved behind it,
/// else it is copied. Linear, with bounded stack whatever the nesting; any thread.
/// Throws PlatformError::archiveNotValid, and std::bad_alloc.
[[nodiscard]] ChatArchive decodeArchive(QByteArray document);

/// The same for a document in a file.
///
/// In the layout in which encodeArchive() writes, it is read in parts of `partSize` bytes, by
/// several threads: beside the records there is never more than these parts in memory, and the
/// document may be of any size. In another one it is read as a whole. What comes out does not
/// depend on it. Throws PlatformError::archiveNotReadable as well.
[[nodiscard]] ChatArchive decodeArchive(const ReadableFile &file, qsizetype partSize = 1 << 19);

} // namespace Talvo

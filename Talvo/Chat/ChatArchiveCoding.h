#pragma once

#include "Chat/ChatArchive.h"

#include <QByteArrayView>

#include <functional>

namespace Talvo {

/// Writes an archive as JSON (RFC 8259) in UTF-8: sorted keys, two blanks of indent a level, a
/// blank on both sides of the colon, an empty array over three lines, no line feed at the end. The
/// same archive always gives the same bytes, whatever the locale.
///
/// `sink` gets the document in pieces of bounded size, in order. Linear in the size of the archive;
/// any thread.
void encodeArchive(const ChatArchive &archive, const std::function<void(QByteArrayView)> &sink);

/// The same as one array of bytes.
[[nodiscard]] QByteArray encodeArchive(const ChatArchive &archive);

/// How many bytes must be readable behind a document that is decoded in place.
[[nodiscard]] qsizetype archiveDecodingPadding();

/// Reads an archive back. Any white space, a leading byte-order mark and unknown members at any
/// depth are accepted; "selectedSessionID" may be missing or null; everything else is required.
///
/// Takes the document by value and frees it before the records are made, to keep the peak of memory
/// low. Linear, with bounded stack whatever the nesting; any thread.
/// Throws PlatformError::archiveNotValid.
[[nodiscard]] ChatArchive decodeArchive(QByteArray document);

} // namespace Talvo

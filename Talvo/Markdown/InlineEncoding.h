#pragma once

#include <QStringView>
#include <QVarLengthArray>

#include <string_view>

namespace Talvo {

/// The disguise in which a block's text goes through a Markdown parser that knows blocks, lines and
/// trimming, so that only its inline rules act.
///
/// The text becomes one line of UTF-8 between two guards, each an em space and a blank: with them
/// no line begins or ends with anything that a block rule or trimming looks for, and inline rules
/// still see white space there. Only blank and tab are white space to every inline rule without
/// ending a line, so the code is made of these: a line ending is two tabs, a tab is a tab and two
/// blanks, and a line ending after an odd number of backslashes (a hard break, should the last one
/// stand in text) is a tab, a blank and a tab.
namespace InlineEncoding {

/// Bytes of encoded text: on the stack for a usual block.
using Bytes = QVarLengthArray<char, 4096>;

/// The guard at the start; the one at the end is its mirror image.
inline constexpr std::string_view leadingGuard = "\u2003 ";
/// The guard at the end.
inline constexpr std::string_view trailingGuard = " \u2003";

/// True when the inline parser would give the text back as it is, in one run without attributes:
/// nothing in it is markup, needs replacing or could be part of a bare link.
[[nodiscard]] bool isPlain(QStringView text);

/// Encodes a text. CR and CR LF are read as line feed, NUL and unpaired surrogates as U+FFFD.
[[nodiscard]] Bytes encoded(QStringView text);

/// UTF-16 decoded from a part of encoded text.
using Characters = QVarLengthArray<QChar, 1024>;

/// Reads text back, with line feeds for line endings.
[[nodiscard]] Characters decoded(std::string_view utf8);

/// Reads the source of a code span: a line ending becomes a blank, and one blank is stripped at
/// both ends if both are there and the span is not all blank.
[[nodiscard]] Characters decodedCode(std::string_view utf8);

/// Whether a part of encoded text runs across a line ending.
[[nodiscard]] bool holdsLineEnding(std::string_view utf8);

/// An encoded hard line break, when it stands in text.
inline constexpr std::string_view hardBreak = "\\\t \t";

} // namespace InlineEncoding

} // namespace Talvo

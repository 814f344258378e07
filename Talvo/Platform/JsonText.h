#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace Talvo {

/// A JSON document without the byte order mark that it may begin with: a reader may ignore one
/// (RFC 8259, section 8.1), and the JSON library takes it for an error. Any thread.
[[nodiscard]] QByteArrayView withoutByteOrderMark(QByteArrayView document);

/// Appends a JSON string (RFC 8259), quotes included, made from UTF-8 text.
///
/// `"` `\` `/` are escaped with a backslash; U+0008, U+000C, line feed, carriage return and tab as
/// `\b \f \n \r \t`; the other characters below U+0020 as `\u00xx` in lower-case hexadecimal; all
/// else, U+007F and non-ASCII included, is copied as it is. Linear, any thread.
void appendJsonString(QByteArray &out, QByteArrayView utf8);

/// Appends what stands between the quotes of such a string. A long text may be given in pieces cut
/// anywhere: no escape depends on more than one byte. Linear, any thread.
void appendJsonStringContent(QByteArray &out, QByteArrayView utf8);

/// Writes the same where there is room for jsonStringRoom() bytes, and returns its end. What it
/// leaves behind its end is unspecified. Linear, any thread.
[[nodiscard]] char *writeJsonStringContent(char *to, QByteArrayView utf8);

/// How much room writeJsonStringContent() needs for a text of so many bytes, at the worst.
[[nodiscard]] constexpr qsizetype jsonStringRoom(qsizetype size)
{
    constexpr qsizetype longestEscape = 6; // \u00xx
    constexpr qsizetype copiedAtOnce = 64;
    return longestEscape * size + copiedAtOnce;
}

/// Appends a JSON number: the shortest decimal text that reads back as the same double, without a
/// fraction for a whole number; with an exponent only below 1e-4 and from 2^54 on.
/// @pre value is finite. Any thread, whatever the locale.
void appendJsonNumber(QByteArray &out, double value);

} // namespace Talvo

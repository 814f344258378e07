#include "Platform/JsonText.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>

namespace Talvo {

namespace {

/// No character needs more than `\u00xx`.
constexpr qsizetype longestEscape = 6;

/// The text is escaped in pieces of this size, so that the room made in advance for the worst case
/// stays small.
constexpr qsizetype pieceSize = 16384;

/// Eight bytes are looked at as one number; on every machine the first of them is the lowest.
using Word = quint64;
constexpr qsizetype wordSize = sizeof(Word);

constexpr Word inEveryByte(unsigned char byte)
{
    return Word{0x0101010101010101} * byte;
}

/// A word whose lowest set bit lies in the first byte that is below `limit` (at most 0x80); zero
/// when there is none. The subtraction borrows only from bytes after that one.
constexpr Word bytesBelow(Word word, unsigned char limit)
{
    return (word - inEveryByte(limit)) & ~word & inEveryByte(0x80);
}

/// The same for the first byte that needs an escape.
constexpr Word bytesToEscape(Word word)
{
    const auto bytesEqualTo = [word](unsigned char byte) {
        return bytesBelow(word ^ inEveryByte(byte), 1);
    };
    return bytesBelow(word, 0x20) | bytesEqualTo('"') | bytesEqualTo('\\') | bytesEqualTo('/');
}

bool mustBeEscaped(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\' || c == '/';
}

/// The letter after the backslash of a short escape, 'u' for the long form.
char escapeLetter(char c)
{
    switch (c) {
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return static_cast<unsigned char>(c) < 0x20 ? 'u' : c;
    }
}

char *writeEscaped(char *to, char c)
{
    constexpr auto hexDigits = "0123456789abcdef";
    const char letter = escapeLetter(c);
    *to++ = '\\';
    *to++ = letter;
    if (letter == 'u') {
        *to++ = '0';
        *to++ = '0';
        *to++ = hexDigits[c >> 4];
        *to++ = hexDigits[c & 0xf];
    }
    return to;
}

/// Writes a piece to where there is room for its longest form and one word more; returns its end.
char *writePiece(char *to, QByteArrayView piece)
{
    const char *from = piece.begin();
    while (piece.end() - from >= wordSize) {
        // Copying first and looking afterwards takes no decision for plain text.
        std::memcpy(to, from, wordSize);
        const Word found = bytesToEscape(qFromLittleEndian<Word>(from));
        const int plainBytes = found == 0 ? int{wordSize} : std::countr_zero(found) / CHAR_BIT;
        from += plainBytes;
        to += plainBytes;
        if (found != 0) {
            to = writeEscaped(to, *from++);
        }
    }
    for (; from != piece.end(); ++from) {
        if (mustBeEscaped(*from)) {
            to = writeEscaped(to, *from);
        } else {
            *to++ = *from;
        }
    }
    return to;
}

} // namespace

void appendJsonString(QByteArray &out, QByteArrayView utf8)
{
    out.append('"');
    appendJsonStringContent(out, utf8);
    out.append('"');
}

void appendJsonStringContent(QByteArray &out, QByteArrayView utf8)
{
    while (!utf8.isEmpty()) {
        const QByteArrayView piece = utf8.first(std::min(utf8.size(), pieceSize));
        utf8 = utf8.sliced(piece.size());
        const qsizetype start = out.size();
        out.resize(start + longestEscape * piece.size() + wordSize);
        out.resize(writePiece(out.data() + start, piece) - out.constData());
    }
}

void appendJsonNumber(QByteArray &out, double value)
{
    constexpr double smallestPlain = 1e-4;
    constexpr double firstWithExponent = 18014398509481984.0; // 2^54
    const double magnitude = std::fabs(value);
    const bool isPlain =
        magnitude == 0 || (magnitude >= smallestPlain && magnitude < firstWithExponent);
    std::array<char, 64> digits{};
    const auto result =
        std::to_chars(digits.begin(), digits.end(), value,
                      isPlain ? std::chars_format::fixed : std::chars_format::scientific);
    out.append(digits.data(), result.ptr - digits.data());
}

} // namespace Talvo

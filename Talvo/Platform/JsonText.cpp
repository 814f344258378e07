#include "Platform/JsonText.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Talvo {

namespace {

/// The text is escaped in pieces of this size, so that the room made in advance for the worst case
/// stays small.
constexpr qsizetype pieceSize = 16384;

/// The text is looked at in blocks, one bit of a word for each byte.
constexpr qsizetype blockSize = 64;
static_assert(jsonStringRoom(0) >= blockSize, "a block is copied as a whole");

#ifdef __SSE2__

/// A bit for every byte of a block that needs an escape; the first byte's is the lowest.
quint64 bytesToEscape(const char *block)
{
    const auto lastControl = _mm_set1_epi8(0x1f);
    quint64 found = 0;
    for (int i = 0; i < blockSize; i += 16) {
        const auto bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(block + i));
        const auto isEqualTo = [bytes](char c) { return _mm_cmpeq_epi8(bytes, _mm_set1_epi8(c)); };
        const auto isControl = _mm_cmpeq_epi8(_mm_max_epu8(bytes, lastControl), lastControl);
        const auto result = _mm_or_si128(_mm_or_si128(isEqualTo('"'), isEqualTo('\\')),
                                         _mm_or_si128(isEqualTo('/'), isControl));
        found |= quint64(static_cast<quint32>(_mm_movemask_epi8(result))) << i;
    }
    return found;
}

#else

/// A bit for every byte of a block that needs an escape; the first byte's is the lowest. Eight
/// bytes are compared at once within one number: the sums below do not carry from byte to byte.
quint64 bytesToEscape(const char *block)
{
    constexpr auto inEveryByte = [](quint64 byte) { return byte * 0x0101010101010101; };
    constexpr quint64 lowBits = inEveryByte(0x7f);
    quint64 found = 0;
    for (int i = 0; i < blockSize; i += 8) {
        const auto bytes = qFromLittleEndian<quint64>(block + i);
        const quint64 low = bytes & lowBits;
        // The high bit of each byte is set where the byte is ...
        const auto isOtherThan = [&](quint64 c) { return (low ^ inEveryByte(c)) + lowBits; };
        const quint64 isNoControl = low + inEveryByte(0x80 - 0x20);
        const quint64 isPlain =
            (isOtherThan('"') & isOtherThan('\\') & isOtherThan('/') & isNoControl) | bytes;
        const quint64 flags = (~isPlain & ~lowBits) >> 7;
        // ... and this product collects the eight flags in its highest byte.
        found |= (flags * 0x0102040810204080 >> 56) << i;
    }
    return found;
}

#endif

/// What to write for one byte, of a size that is copied in one go.
struct Escape
{
    std::array<char, 7> text{};
    quint8 length = 0; ///< 0 for what is copied as it is
};
static_assert(sizeof(Escape) == 8);

constexpr std::array<Escape, 256> escapes = [] {
    constexpr auto hexDigits = "0123456789abcdef";
    std::array<Escape, 256> table{};
    for (std::size_t control = 0; control < 0x20; ++control) {
        table[control] = {{'\\', 'u', '0', '0', hexDigits[control >> 4], hexDigits[control & 0xf]},
                          6};
    }
    const auto setShort = [&table](char c, char letter) {
        table[static_cast<unsigned char>(c)] = {{'\\', letter}, 2};
    };
    setShort('\b', 'b');
    setShort('\f', 'f');
    setShort('\n', 'n');
    setShort('\r', 'r');
    setShort('\t', 't');
    setShort('"', '"');
    setShort('\\', '\\');
    setShort('/', '/');
    return table;
}();

const Escape &escapeOf(char c)
{
    return escapes[static_cast<unsigned char>(c)];
}

char *writeEscape(char *to, const Escape &escape)
{
    std::memcpy(to, &escape, sizeof escape); // more than needed, but of fixed size
    return to + escape.length;
}

/// Writes the first `size` bytes of a block to where there is room for their longest form and one
/// block more; returns its end. Two blocks must be readable.
///
/// Copying whole blocks, whatever is needed of them, spares the processor guesses that it gets
/// wrong.
char *writeBlock(char *to, const char *block, qsizetype size)
{
    quint64 found = bytesToEscape(block);
    if (size < blockSize) {
        found &= (quint64{1} << size) - 1;
    }
    qsizetype done = 0;
    for (; found != 0; found &= found - 1) {
        const int place = std::countr_zero(found);
        std::memcpy(to, block + done, blockSize);
        to = writeEscape(to + (place - done), escapeOf(block[place]));
        done = place + 1;
    }
    std::memcpy(to, block + done, blockSize);
    return to + (size - done);
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
        out.resize(start + jsonStringRoom(piece.size()));
        out.resize(writeJsonStringContent(out.data() + start, piece) - out.constData());
    }
}

char *writeJsonStringContent(char *to, QByteArrayView utf8)
{
    while (utf8.size() >= 2 * blockSize) {
        to = writeBlock(to, utf8.data(), blockSize);
        utf8 = utf8.sliced(blockSize);
    }
    // A block is read and copied as a whole: the last ones need readable bytes behind them.
    std::array<char, 3 * blockSize> rest{};
    std::copy(utf8.begin(), utf8.end(), rest.begin());
    for (qsizetype i = 0; i < utf8.size(); i += blockSize) {
        to = writeBlock(to, rest.data() + i, std::min(blockSize, utf8.size() - i));
    }
    return to;
}

QByteArrayView withoutByteOrderMark(QByteArrayView document)
{
    constexpr QByteArrayView byteOrderMark = "\xEF\xBB\xBF";
    return document.startsWith(byteOrderMark) ? document.sliced(byteOrderMark.size()) : document;
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

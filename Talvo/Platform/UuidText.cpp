#include "Platform/UuidText.h"

#include <QtEndian>

#include <algorithm>

namespace Talvo {

namespace {

constexpr qsizetype canonicalLength = 36;
constexpr std::size_t byteCount = 16; // of an identifier

/// Where the two digits of each byte stand in the text.
constexpr std::array<qsizetype, byteCount> digitPositions = {0,  2,  4,  6,  9,  11, 14, 16,
                                                             19, 21, 24, 26, 28, 30, 32, 34};

constexpr std::array<qsizetype, 4> dashPositions = {8, 13, 18, 23};

constexpr quint8 noDigit = 0xff;

/// The value of each character as a hexadecimal digit in either case.
constexpr std::array<quint8, 256> digitValues = [] {
    std::array<quint8, 256> values{};
    values.fill(noDigit);
    for (quint8 value = 0; value < 16; ++value) {
        values[static_cast<uchar>("0123456789ABCDEF"[value])] = value;
        values[static_cast<uchar>("0123456789abcdef"[value])] = value;
    }
    return values;
}();

/// The bytes of RFC 4122. QUuid::toRfc4122() would allocate an array for them.
std::array<uchar, byteCount> rfc4122Bytes(const QUuid &id)
{
    std::array<uchar, byteCount> bytes{};
    qToBigEndian(id.data1, bytes.data());
    qToBigEndian(id.data2, bytes.data() + 4);
    qToBigEndian(id.data3, bytes.data() + 6);
    std::ranges::copy(id.data4, bytes.data() + 8);
    return bytes;
}

} // namespace

QString uuidText(const QUuid &id)
{
    return QString::fromLatin1(QByteArrayView(asciiUuidText(id)));
}

std::array<char, canonicalLength> asciiUuidText(const QUuid &id)
{
    constexpr auto digits = "0123456789ABCDEF";
    std::array<char, canonicalLength> text{};
    text.fill('-');
    const auto bytes = rfc4122Bytes(id);
    for (std::size_t i = 0; i < byteCount; ++i) {
        char *pair = text.data() + digitPositions[i];
        pair[0] = digits[bytes[i] >> 4];
        pair[1] = digits[bytes[i] & 0xf];
    }
    return text;
}

std::optional<QUuid> uuidFromText(QByteArrayView text)
{
    const auto isDash = [text](qsizetype position) { return text[position] == '-'; };
    if (text.size() != canonicalLength || !std::ranges::all_of(dashPositions, isDash)) {
        return std::nullopt;
    }
    const auto digitAt = [text](qsizetype i) { return digitValues[static_cast<uchar>(text[i])]; };
    std::array<char, byteCount> bytes{};
    quint8 allDigits = 0;
    for (std::size_t i = 0; i < byteCount; ++i) {
        const quint8 high = digitAt(digitPositions[i]);
        const quint8 low = digitAt(digitPositions[i] + 1);
        allDigits |= high | low;
        bytes[i] = static_cast<char>(high << 4 | low);
    }
    if (allDigits == noDigit) {
        return std::nullopt;
    }
    return QUuid::fromRfc4122(bytes);
}

} // namespace Talvo

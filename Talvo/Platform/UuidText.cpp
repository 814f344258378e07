#include "Platform/UuidText.h"

#include <algorithm>
#include <array>

namespace Talvo {

namespace {

constexpr qsizetype canonicalLength = 36;
constexpr std::size_t byteCount = 16; // of an identifier

/// Where the two digits of each byte stand in the text.
constexpr std::array<qsizetype, byteCount> digitPositions = {0,  2,  4,  6,  9,  11, 14, 16,
                                                             19, 21, 24, 26, 28, 30, 32, 34};

constexpr std::array<qsizetype, 4> dashPositions = {8, 13, 18, 23};

/// The value of a hexadecimal digit, -1 for any other character.
int digitValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const int letter = c | 0x20; // lower case
    return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

std::array<char, canonicalLength> canonicalText(const QUuid &id)
{
    constexpr auto digits = "0123456789ABCDEF";
    std::array<char, canonicalLength> text{};
    text.fill('-');
    const QByteArray bytes = id.toRfc4122();
    for (std::size_t i = 0; i < byteCount; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[static_cast<qsizetype>(i)]);
        char *pair = text.data() + digitPositions[i];
        pair[0] = digits[byte >> 4];
        pair[1] = digits[byte & 0xf];
    }
    return text;
}

} // namespace

QString uuidText(const QUuid &id)
{
    return QString::fromLatin1(QByteArrayView(canonicalText(id)));
}

void appendUuidText(QByteArray &out, const QUuid &id)
{
    out.append(QByteArrayView(canonicalText(id)));
}

std::optional<QUuid> uuidFromText(QByteArrayView text)
{
    const auto isDash = [text](qsizetype position) { return text[position] == '-'; };
    if (text.size() != canonicalLength || !std::ranges::all_of(dashPositions, isDash)) {
        return std::nullopt;
    }
    std::array<char, byteCount> bytes{};
    for (std::size_t i = 0; i < byteCount; ++i) {
        const int high = digitValue(text[digitPositions[i]]);
        const int low = digitValue(text[digitPositions[i] + 1]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        bytes[i] = static_cast<char>(high << 4 | low);
    }
    return QUuid::fromRfc4122(bytes);
}

} // namespace Talvo

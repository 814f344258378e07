#include "Chat/BigIntegers.h"

#include <algorithm>

namespace Talvo {

namespace {

/// The end of the string whose opening quote stands at `from`: behind the closing quote, or the end
/// of the text when there is none.
const char *endOfString(const char *from, const char *end)
{
    for (const char *p = from + 1; p < end; ++p) {
        if (*p == '"') {
            return p + 1;
        }
        if (*p == '\\') {
            ++p;
        }
    }
    return end;
}

/// The end of the run of characters of which numbers are made.
const char *endOfNumber(const char *from, const char *end)
{
    constexpr QByteArrayView numberCharacters = "0123456789+-.eE";
    return std::find_if_not(from, end, [&](char c) { return numberCharacters.contains(c); });
}

bool isBigInteger(QByteArrayView number)
{
    constexpr qsizetype firstLength = 19; // of 2^63
    const auto isFractionOrExponent = [](char c) { return c == '.' || c == 'e' || c == 'E'; };
    return number.size() >= firstLength && std::ranges::none_of(number, isFractionOrExponent);
}

} // namespace

QByteArray withBigIntegersAsDoubles(QByteArrayView json)
{
    QByteArray result;
    result.reserve(json.size());
    const char *const end = json.end();
    for (const char *from = json.begin(); from != end;) {
        const bool isNumber = *from == '-' || (*from >= '0' && *from <= '9');
        const char *const to = *from == '"' ? endOfString(from, end)
                               : isNumber   ? endOfNumber(from, end)
                                            : from + 1;
        const QByteArrayView token(from, to - from);
        result.append(token);
        if (isNumber && isBigInteger(token)) {
            result.append("e0");
        }
        from = to;
    }
    return result;
}

} // namespace Talvo

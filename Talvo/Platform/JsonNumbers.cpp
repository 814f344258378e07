#include "Platform/JsonNumbers.h"

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

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Takes the digits at the beginning of a text away; false when there are none.
bool takeDigits(QByteArrayView &text)
{
    const auto end = std::ranges::find_if_not(text, isDigit);
    const bool hasDigits = end != text.begin();
    text = text.sliced(end - text.begin());
    return hasDigits;
}

/// Takes one of these characters at the beginning of a text away; false when there is none.
bool takeOneOf(QByteArrayView characters, QByteArrayView &text)
{
    if (text.isEmpty() || !characters.contains(text.front())) {
        return false;
    }
    text = text.sliced(1);
    return true;
}

/// Whether a text is a number by RFC 8259.
bool isNumber(QByteArrayView text)
{
    takeOneOf("-", text);
    const bool hasInteger = takeOneOf("0", text) || takeDigits(text);
    if (!hasInteger || (takeOneOf(".", text) && !takeDigits(text))) {
        return false;
    }
    if (takeOneOf("eE", text)) {
        takeOneOf("+-", text);
        return takeDigits(text) && text.isEmpty();
    }
    return text.isEmpty();
}

/// A copy of a JSON text to which `appendNumber` adds whatever begins like a number.
template <class AppendNumber>
QByteArray withNumbersRewritten(QByteArrayView json, AppendNumber appendNumber)
{
    QByteArray result;
    result.reserve(json.size());
    const char *const end = json.end();
    for (const char *from = json.begin(); from != end;) {
        const bool beginsNumber = *from == '-' || isDigit(*from);
        const char *const to = *from == '"'   ? endOfString(from, end)
                               : beginsNumber ? endOfNumber(from, end)
                                              : from + 1;
        const QByteArrayView token(from, to - from);
        if (beginsNumber) {
            appendNumber(result, token);
        } else {
            result.append(token);
        }
        from = to;
    }
    return result;
}

} // namespace

QByteArray withBigIntegersAsDoubles(QByteArrayView json)
{
    return withNumbersRewritten(json, [](QByteArray &result, QByteArrayView number) {
        result.append(number);
        if (isBigInteger(number)) {
            result.append("e0");
        }
    });
}

QByteArray withNumbersAsZero(QByteArrayView json)
{
    return withNumbersRewritten(json, [](QByteArray &result, QByteArrayView number) {
        result.append(isNumber(number) ? QByteArrayView("0") : number);
    });
}

} // namespace Talvo

#include "Platform/JsonText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace Talvo {

namespace {

/// For each byte the letter after the backslash, 'u' for the \u form, 0 for a plain copy.
constexpr std::array<char, 256> escapeLetters = [] {
    std::array<char, 256> letters{};
    for (std::size_t control = 0; control < 0x20; ++control) {
        letters[control] = 'u';
    }
    letters['\b'] = 'b';
    letters['\f'] = 'f';
    letters['\n'] = 'n';
    letters['\r'] = 'r';
    letters['\t'] = 't';
    letters['"'] = '"';
    letters['\\'] = '\\';
    letters['/'] = '/';
    return letters;
}();

char escapeLetter(char c)
{
    return escapeLetters[static_cast<unsigned char>(c)];
}

void appendEscaped(QByteArray &out, char c)
{
    constexpr auto hexDigits = "0123456789abcdef";
    const char letter = escapeLetter(c);
    out.append('\\').append(letter);
    if (letter == 'u') {
        out.append("00").append(hexDigits[c >> 4]).append(hexDigits[c & 0xf]);
    }
}

} // namespace

void appendJsonString(QByteArray &out, QByteArrayView utf8)
{
    out.append('"');
    const char *plainStart = utf8.begin();
    for (const char *p = utf8.begin(); p != utf8.end(); ++p) {
        if (escapeLetter(*p) == 0) {
            continue;
        }
        out.append(plainStart, p - plainStart);
        appendEscaped(out, *p);
        plainStart = p + 1;
    }
    out.append(plainStart, utf8.end() - plainStart);
    out.append('"');
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

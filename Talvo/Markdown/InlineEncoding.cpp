#include "Markdown/InlineEncoding.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace Talvo::InlineEncoding {

namespace {

constexpr std::string_view tab = "\t  ";
constexpr std::string_view lineEnding = "\t\t";
constexpr std::string_view lineEndingAfterBackslash = "\t \t";

/// Characters that make a text more than plain wherever they stand.
constexpr std::array<bool, 128> makeMarkupTable()
{
    std::array<bool, 128> table{};
    for (const char c : std::string_view("\0\r&*<@[\\_`~", 11)) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}
constexpr std::array<bool, 128> isMarkup = makeMarkupTable();

bool isPairAt(QStringView text, qsizetype index)
{
    return text[index].isHighSurrogate() && index + 1 < text.size() &&
           text[index + 1].isLowSurrogate();
}

/// A writer of UTF-8 into memory that was made large enough.
class Utf8Writer
{
public:
    explicit Utf8Writer(char *out)
        : m_out(out)
    {
    }

    void put(std::string_view bytes) { m_out = std::copy(bytes.begin(), bytes.end(), m_out); }
    void put(char byte) { *m_out++ = byte; }
    void put(char32_t c)
    {
        if (c < 0x80) {
            put(static_cast<char>(c));
        } else if (c < 0x800) {
            put(static_cast<char>(0xC0 | (c >> 6)));
            put(continuation(c));
        } else if (c < 0x10000) {
            put(static_cast<char>(0xE0 | (c >> 12)));
            put(continuation(c >> 6));
            put(continuation(c));
        } else {
            put(static_cast<char>(0xF0 | (c >> 18)));
            put(continuation(c >> 12));
            put(continuation(c >> 6));
            put(continuation(c));
        }
    }
    [[nodiscard]] char *end() const { return m_out; }

private:
    static char continuation(char32_t c) { return static_cast<char>(0x80 | (c & 0x3F)); }

    char *m_out;
};

/// The code point that begins at `in`, which is moved past it. The library keeps UTF-8 valid; a
/// truncated sequence cannot be read past the end all the same.
char32_t nextCodePoint(const char *&in, const char *end)
{
    const auto lead = static_cast<unsigned char>(*in++);
    if (lead < 0x80) {
        return lead;
    }
    const int continuations = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    char32_t c = lead & (0x3Fu >> continuations);
    for (int i = 0; i < continuations && in < end; ++i) {
        c = (c << 6) | (static_cast<unsigned char>(*in++) & 0x3F);
    }
    return c;
}

Characters decodedWith(std::string_view utf8, QChar lineEndingCharacter)
{
    Characters result(static_cast<qsizetype>(utf8.size()));
    QChar *out = result.data();
    const char *in = utf8.data();
    const char *const end = in + utf8.size();
    const auto startsWith = [&in, end](std::string_view prefix) {
        return std::string_view(in, end).starts_with(prefix);
    };
    while (in < end) {
        if (*in == '\t') {
            if (startsWith(lineEnding)) {
                in += lineEnding.size();
                *out++ = lineEndingCharacter;
            } else if (startsWith(lineEndingAfterBackslash)) {
                in += lineEndingAfterBackslash.size();
                *out++ = lineEndingCharacter;
            } else {
                in += startsWith(tab) ? tab.size() : 1; // one alone was an entity
                *out++ = u'\t';
            }
            continue;
        }
        const char32_t c = nextCodePoint(in, end);
        if (QChar::requiresSurrogates(c)) {
            *out++ = QChar(QChar::highSurrogate(c));
            *out++ = QChar(QChar::lowSurrogate(c));
        } else {
            *out++ = QChar(static_cast<char16_t>(c));
        }
    }
    result.resize(out - result.data());
    return result;
}

} // namespace

bool isPlain(QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c < isMarkup.size()) {
            if (isMarkup[c] || (c == u':' && text.sliced(i).startsWith(u"://")) ||
                (c == u'w' && text.sliced(i).startsWith(u"www."))) {
                return false;
            }
        } else if (QChar::isSurrogate(c)) {
            if (!isPairAt(text, i)) {
                return false;
            }
            ++i;
        }
    }
    return true;
}

Bytes encoded(QStringView text)
{
    constexpr qsizetype bytesPerCodeUnit = 3;
    Bytes result(text.size() * bytesPerCodeUnit +
                 static_cast<qsizetype>(leadingGuard.size() + trailingGuard.size()) + 1);
    Utf8Writer out(result.data());
    out.put(leadingGuard);
    bool isAfterOddBackslash = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        switch (c) {
        case u'\\':
            out.put('\\');
            isAfterOddBackslash = !isAfterOddBackslash;
            continue;
        case u'\r':
            if (i + 1 < text.size() && text[i + 1] == u'\n') {
                ++i;
            }
            [[fallthrough]];
        case u'\n':
            out.put(isAfterOddBackslash ? lineEndingAfterBackslash : lineEnding);
            break;
        case u'\t':
            out.put(tab);
            break;
        case u'\0':
            out.put(char32_t(QChar::ReplacementCharacter));
            break;
        default:
            if (!QChar::isSurrogate(c)) {
                out.put(char32_t(c));
            } else if (isPairAt(text, i)) {
                out.put(char32_t(QChar::surrogateToUcs4(c, text[i + 1].unicode())));
                ++i;
            } else {
                out.put(char32_t(QChar::ReplacementCharacter));
            }
        }
        isAfterOddBackslash = false;
    }
    out.put(trailingGuard);
    out.put('\n'); // saves the library a copy of an unfinished line
    result.resize(out.end() - result.data());
    return result;
}

bool holdsLineEnding(std::string_view utf8)
{
    return utf8.find(lineEnding) != utf8.npos || utf8.find(lineEndingAfterBackslash) != utf8.npos;
}

Characters decoded(std::string_view utf8)
{
    return decodedWith(utf8, u'\n');
}

Characters decodedCode(std::string_view utf8)
{
    Characters result = decodedWith(utf8, u' ');
    const auto isBlank = [](QChar c) { return c == u' '; };
    if (result.size() > 2 && isBlank(result.front()) && isBlank(result.back()) &&
        !std::all_of(result.cbegin(), result.cend(), isBlank)) {
        result.removeLast();
        result.erase(result.cbegin());
    }
    return result;
}

} // namespace Talvo::InlineEncoding

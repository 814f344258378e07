#include "Markdown/GraphemeMarkers.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

namespace Talvo {

namespace {

int32_t clusterBreak(char32_t c)
{
    return u_getIntPropertyValue(static_cast<UChar32>(c), UCHAR_GRAPHEME_CLUSTER_BREAK);
}

/// Whether the code point at an index belongs to the character before it (rules GB9 and GB9a).
bool extendsPrevious(QStringView text, qsizetype index)
{
    constexpr char16_t firstThatExtends = 0x300;
    if (index >= text.size() || text[index] < firstThatExtends) {
        return false;
    }
    UChar32 c = 0;
    U16_GET(text.utf16(), 0, index, text.size(), c);
    const int32_t kind = clusterBreak(static_cast<char32_t>(c));
    return kind == U_GCB_EXTEND || kind == U_GCB_ZWJ || kind == U_GCB_SPACING_MARK;
}

/// Whether the code point before an index takes what follows into its character (rule GB9b).
bool isPrepended(QStringView text, qsizetype index)
{
    constexpr char16_t firstThatPrepends = 0x600;
    if (index == 0 || text[index - 1] < firstThatPrepends) {
        return false;
    }
    UChar32 c = 0;
    U16_GET(text.utf16(), 0, index - 1, text.size(), c);
    return clusterBreak(static_cast<char32_t>(c)) == U_GCB_PREPEND;
}

} // namespace

bool isCharacterAt(QStringView text, qsizetype index, char16_t ascii)
{
    return index < text.size() && text[index] == ascii && !extendsPrevious(text, index + 1) &&
           !isPrepended(text, index);
}

qsizetype indexOfCharacter(QStringView text, char16_t ascii, qsizetype from)
{
    for (qsizetype index = text.indexOf(QChar(ascii), from); index >= 0;
         index = text.indexOf(QChar(ascii), index + 1)) {
        if (isCharacterAt(text, index, ascii)) {
            return index;
        }
    }
    return -1;
}

} // namespace Talvo

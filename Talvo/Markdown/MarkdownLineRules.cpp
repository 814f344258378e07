#include "Markdown/MarkdownLineRules.h"

#include "Markdown/GraphemeMarkers.h"
#include "Platform/Text.h"

#include <limits>

namespace Talvo {

namespace {

struct Digits
{
    qint64 value = 0;
    qsizetype end = 0; ///< index after the last digit
};

/// The integer at the start of a line: an optional sign and at least one decimal digit.
std::optional<Digits> leadingInteger(QStringView line)
{
    const bool isNegative = line.startsWith(u'-');
    const qsizetype first = isNegative || line.startsWith(u'+') ? 1 : 0;
    // Counted downwards, because there is one more negative number than positive ones.
    constexpr qint64 lowest = std::numeric_limits<qint64>::min();
    qint64 negated = 0;
    qsizetype i = first;
    for (; i < line.size() && line[i] >= u'0' && line[i] <= u'9'; ++i) {
        const qint64 digit = line[i].unicode() - u'0';
        if (negated < (lowest + digit) / 10) {
            return std::nullopt;
        }
        negated = negated * 10 - digit;
    }
    if (i == first || (!isNegative && negated == lowest)) {
        return std::nullopt;
    }
    return Digits{isNegative ? negated : -negated, i};
}

} // namespace

bool isDivider(QStringView line)
{
    if (line.isEmpty()) {
        return false;
    }
    // The line is trimmed, so a divider begins with its marker. No combining mark can be
    // overlooked: it would itself be a character that is neither the marker nor a blank.
    const QChar marker = line.front();
    if (marker != u'-' && marker != u'*' && marker != u'_') {
        return false;
    }
    qsizetype count = 0;
    for (const QChar c : line) {
        if (c == marker) {
            ++count;
        } else if (c != u' ') {
            return false;
        }
    }
    return count >= 3;
}

std::optional<HeadingLine> parseHeading(QStringView line)
{
    constexpr qsizetype deepest = 6;
    qsizetype level = 0;
    while (level <= deepest && isCharacterAt(line, level, u'#')) {
        ++level;
    }
    if (level == 0 || level > deepest || !isCharacterAt(line, level, u' ')) {
        return std::nullopt;
    }
    return HeadingLine{level, trimmedOfWhitespace(line.sliced(level + 1))};
}

std::optional<QStringView> bulletText(QStringView line)
{
    for (const char16_t marker : {u'-', u'*', u'+'}) {
        if (isCharacterAt(line, 0, marker) && isCharacterAt(line, 1, u' ')) {
            return line.sliced(2);
        }
    }
    return std::nullopt;
}

std::optional<NumberedLine> parseNumberedItem(QStringView line)
{
    // Only a sign and digits may stand before the first full stop: it directly follows them.
    const auto digits = leadingInteger(line);
    if (!digits || !isCharacterAt(line, digits->end, u'.')) {
        return std::nullopt;
    }
    const QStringView text = trimmedOfWhitespace(line.sliced(digits->end + 1));
    if (text.isEmpty()) {
        return std::nullopt;
    }
    return NumberedLine{digits->value, text};
}

} // namespace Talvo

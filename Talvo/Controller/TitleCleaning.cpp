#include "Controller/TitleCleaning.h"

#include "Markdown/MarkdownTitle.h"
#include "Platform/Text.h"

namespace Talvo {

namespace {

constexpr QStringView markupCharacters = u"#*_`~";
constexpr QStringView edgeCharacters = u"\"\u201C\u201D' ";

QString withSingleSpaces(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        const char32_t character = c.unicode();
        const bool isBlank = isWhitespace(character) || isNewline(character);
        if (!isBlank) {
            result += c;
        } else if (!result.isEmpty() && !result.endsWith(u' ')) {
            result += u' ';
        }
    }
    return result;
}

QString withoutEdges(const QString &text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && edgeCharacters.contains(text[first])) {
        ++first;
    }
    while (last > first && edgeCharacters.contains(text[last - 1])) {
        --last;
    }
    return text.sliced(first, last - first);
}

} // namespace

QString defaultSessionTitle()
{
    return QStringLiteral("Yeni Sohbet");
}

QString cleanTitle(const QString &title)
{
    QString line = title;
    line.replace(u'\n', u' ');
    QString visible = visibleMarkdownText(line).value_or(line);
    visible.removeIf([](QChar c) { return markupCharacters.contains(c); });
    return withoutEdges(withSingleSpaces(visible));
}

QString storedTitle(const QString &cleanedTitle)
{
    return firstCharacters(cleanedTitle, titleLengthLimit);
}

} // namespace Talvo

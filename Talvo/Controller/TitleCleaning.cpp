#include "Controller/TitleCleaning.h"

#include "Markdown/GraphemeMarkers.h"
#include "Markdown/MarkdownTitle.h"
#include "Platform/Text.h"

namespace Talvo {

namespace {

constexpr QStringView markupCharacters = u"#*_`~";
constexpr QStringView edgeCharacters = u"\"\u201C\u201D' ";

/// A markup character that carries a mark, as in the emoji "#️⃣", is another character and
/// stays.
QString withoutMarkup(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (!markupCharacters.contains(c) || !isCharacterAt(text, i, c.unicode())) {
            result += c;
        }
    }
    return result;
}

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
    const QString visible = visibleMarkdownTitle(line).value_or(line);
    return withoutEdges(withSingleSpaces(withoutMarkup(visible)));
}

QString storedTitle(const QString &cleanedTitle)
{
    return firstCharacters(cleanedTitle, titleLengthLimit);
}

} // namespace Talvo

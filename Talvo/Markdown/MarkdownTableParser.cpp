#include "Markdown/MarkdownTableParser.h"

#include "Markdown/GraphemeMarkers.h"
#include "Markdown/InlineMarkdown.h"
#include "Platform/Text.h"

#include <algorithm>

namespace Talvo {

namespace {

bool holdsPipe(QStringView line)
{
    return indexOfCharacter(line, u'|') >= 0;
}

/// Three or more "-" once every ":" is gone. A combining mark is neither, so none is overlooked.
bool isSeparatorCell(QStringView cell)
{
    const auto dashes = std::count(cell.begin(), cell.end(), QChar(u'-'));
    const auto colons = std::count(cell.begin(), cell.end(), QChar(u':'));
    return dashes >= 3 && dashes + colons == cell.size();
}

QStringView withoutOuterPipes(QStringView line)
{
    if (isCharacterAt(line, 0, u'|')) {
        line = line.sliced(1);
    }
    if (!line.isEmpty() && isCharacterAt(line, line.size() - 1, u'|')) {
        line.chop(1);
    }
    return line;
}

} // namespace

std::vector<QStringView> splitTableRow(QStringView line)
{
    const QStringView row = withoutOuterPipes(trimmedOfWhitespace(line));
    std::vector<QStringView> cells;
    qsizetype begin = 0;
    for (qsizetype pipe = indexOfCharacter(row, u'|'); pipe >= 0;
         pipe = indexOfCharacter(row, u'|', begin)) {
        cells.push_back(trimmedOfWhitespace(row.sliced(begin, pipe - begin)));
        begin = pipe + 1;
    }
    cells.push_back(trimmedOfWhitespace(row.sliced(begin)));
    return cells;
}

bool isTableSeparator(QStringView line)
{
    // Most lines are told by their first character, without being split.
    const QStringView row = trimmedOfWhitespace(line);
    if (row.isEmpty() || !QStringView(u"|-:").contains(row.front())) {
        return false;
    }
    const auto cells = splitTableRow(row);
    return std::all_of(cells.begin(), cells.end(), isSeparatorCell);
}

bool tableBegins(const MarkdownLines &lines, std::size_t start)
{
    return start + 1 < lines.size() && holdsPipe(lines[start]) &&
           isTableSeparator(lines[start + 1]);
}

std::vector<MarkdownTable::Cell> makeCells(const std::vector<QStringView> &strings)
{
    std::vector<MarkdownTable::Cell> cells;
    cells.reserve(strings.size());
    for (const QStringView string : strings) {
        cells.push_back({static_cast<qint64>(cells.size()), inlineText(string)});
    }
    return cells;
}

std::optional<ParsedTable> parseTable(const MarkdownLines &lines, std::size_t start)
{
    if (!tableBegins(lines, start)) {
        return std::nullopt;
    }
    ParsedTable result{{makeCells(splitTableRow(lines[start])), {}}, start + 2};
    auto &rows = result.table.rows;
    for (; result.next < lines.size() && holdsPipe(lines[result.next]); ++result.next) {
        rows.push_back(
            {static_cast<qint64>(rows.size()), makeCells(splitTableRow(lines[result.next]))});
    }
    return result;
}

} // namespace Talvo

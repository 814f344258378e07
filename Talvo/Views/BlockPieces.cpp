#include "Views/BlockPieces.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <optional>
#include <utility>

namespace Talvo {

namespace {

constexpr qint64 charactersPerEffort = 200;

/// An emoji takes as long as this many letters: its glyph is a picture.
constexpr qint64 charactersPerEmoji = 100;

/// Effort of one piece of a large table.
constexpr qint64 tablePiece = 300;

/// Laying out one character takes time by the square of its joiners and marks. No writing system
/// needs characters of this many code units; a text with one is cut into small pieces.
constexpr qsizetype longestCharacter = 100;
constexpr qsizetype smallPiece = 500;

bool hasEndlessCharacter(const QString &text)
{
    if (text.size() <= smallPiece) {
        return false;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype start = 0, end = 0; (end = finder.toNextBoundary()) >= 0; start = end) {
        if (end - start > longestCharacter) {
            return true;
        }
    }
    return false;
}

/// How long a piece of the text may be, if it has to be cut at all.
std::optional<qsizetype> pieceLengthFor(const QString &text)
{
    if (hasEndlessCharacter(text)) {
        return smallPiece;
    }
    if (text.size() > BlockPieces::longestText) {
        return BlockPieces::pieceLength;
    }
    return std::nullopt;
}

struct Cut
{
    qsizetype end = 0;  ///< of the piece
    qsizetype next = 0; ///< where the next piece begins: a line feed between them is left out
};

/// Where the last character that is whole within the window ends.
qsizetype lastCharacterEnd(QStringView text, qsizetype start, qsizetype end)
{
    constexpr qsizetype context = 64; // what follows decides whether a character ends there
    const QStringView window = text.mid(start, end - start + context);
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, window.data(), window.size());
    finder.setPosition(end - start);
    const qsizetype boundary = finder.isAtBoundary() ? end - start : finder.toPreviousBoundary();
    if (boundary > (end - start) / 2) {
        return start + boundary;
    }
    // One character without end, of joiners or combining marks.
    return text.at(end).isLowSurrogate() ? end - 1 : end;
}

Cut nextCut(QStringView text, qsizetype start, qsizetype length)
{
    if (text.size() - start <= length) {
        return {text.size(), text.size()};
    }
    const qsizetype end = start + length;
    const QStringView window = text.mid(start, length);
    const qsizetype lineEnd = window.lastIndexOf(u'\n');
    if (lineEnd > 0) {
        return {start + lineEnd, start + lineEnd + 1};
    }
    const qsizetype blank = window.lastIndexOf(u' ');
    if (blank > window.size() / 2) {
        return {start + blank + 1, start + blank + 1};
    }
    const qsizetype characterEnd = lastCharacterEnd(text, start, end);
    return {characterEnd, characterEnd};
}

/// @param firstRun moves on to the first run that reaches beyond the part
AttributedString part(const AttributedString &whole, qsizetype start, qsizetype end,
                      std::size_t &firstRun)
{
    AttributedString result;
    result.text = whole.text.mid(start, end - start);
    for (std::size_t i = firstRun; i < whole.runs.size(); ++i) {
        const AttributedString::Run &run = whole.runs[i];
        const qsizetype from = std::max(run.start, start);
        const qsizetype to = std::min(run.start + run.length, end);
        if (from < to) {
            AttributedString::Run cut = run;
            cut.start = from - start;
            cut.length = to - from;
            result.runs.push_back(std::move(cut));
        }
        firstRun = i;
        if (run.start + run.length > end) {
            break;
        }
    }
    return result;
}

std::vector<AttributedString> piecesOf(const AttributedString &text, qsizetype length)
{
    std::vector<AttributedString> pieces;
    std::size_t firstRun = 0;
    for (qsizetype start = 0; start < text.text.size();) {
        const Cut cut = nextCut(text.text, start, length);
        pieces.push_back(part(text, start, cut.end, firstRun));
        start = cut.next;
    }
    return pieces;
}

void cutOff(MarkdownTable::Cell &cell)
{
    const std::optional<qsizetype> length = pieceLengthFor(cell.text.text);
    if (!length) {
        return;
    }
    std::size_t firstRun = 0;
    const qsizetype end = nextCut(cell.text.text, 0, *length).end;
    AttributedString beginning = part(cell.text, 0, end, firstRun);
    beginning.text += u'…';
    if (beginning.runs.empty()) {
        beginning.runs.emplace_back();
    }
    ++beginning.runs.back().length;
    cell.text = std::move(beginning);
}

const AttributedString *textOf(const MarkdownBlock::Content &content)
{
    return std::visit(
        [](const auto &block) -> const AttributedString * {
            if constexpr (requires { block.text; }) {
                return &block.text;
            } else {
                return nullptr;
            }
        },
        content);
}

/// The same kind of block with another text.
MarkdownBlock::Content withText(const MarkdownBlock::Content &content, AttributedString text)
{
    MarkdownBlock::Content result = MarkdownBlock::Paragraph();
    if (const auto *heading = std::get_if<MarkdownBlock::Heading>(&content)) {
        result = MarkdownBlock::Heading{heading->level, {}};
    } else if (const auto *numbered = std::get_if<MarkdownBlock::Numbered>(&content)) {
        result = MarkdownBlock::Numbered{numbered->number, {}};
    } else if (std::holds_alternative<MarkdownBlock::Bullet>(content)) {
        result = MarkdownBlock::Bullet();
    }
    std::visit(
        [&](auto &block) {
            if constexpr (requires { block.text; }) {
                block.text = std::move(text);
            }
        },
        result);
    return result;
}

qint64 effortOf(const AttributedString &text)
{
    const QString &characters = text.text;
    const auto emoji = std::count_if(characters.begin(), characters.end(),
                                     [](QChar unit) { return unit.isHighSurrogate(); });
    return 1 + (characters.size() + emoji * charactersPerEmoji) / charactersPerEffort;
}

qint64 effortOf(const std::vector<MarkdownTable::Cell> &cells)
{
    qint64 effort = 0;
    for (const MarkdownTable::Cell &cell : cells) {
        effort += effortOf(cell.text);
    }
    return effort;
}

qint64 effortOf(const MarkdownTable &table)
{
    qint64 effort = 1 + effortOf(table.headers);
    for (const MarkdownTable::Row &row : table.rows) {
        effort += effortOf(row.cells);
    }
    return effort;
}

qint64 effortOf(const MarkdownBlock::Content &content)
{
    return std::visit(
        [](const auto &block) -> qint64 {
            if constexpr (requires { block.text; }) {
                return effortOf(block.text);
            } else if constexpr (requires { block.rows; }) {
                return effortOf(block);
            } else {
                return 1;
            }
        },
        content);
}

} // namespace

BlockPieces::BlockPieces(std::vector<MarkdownBlock> blocks)
{
    m_blocks.reserve(blocks.size());
    m_effort.reserve(blocks.size());
    for (MarkdownBlock &block : blocks) {
        if (auto *table = std::get_if<MarkdownTable>(&block.content)) {
            addTable(*table);
        } else {
            addText(std::move(block.content));
        }
    }
}

void BlockPieces::addText(MarkdownBlock::Content content)
{
    const AttributedString *text = textOf(content);
    const auto length = text ? pieceLengthFor(text->text) : std::nullopt;
    if (!length) {
        add(std::move(content));
        return;
    }
    std::vector<AttributedString> pieces = piecesOf(*text, *length);
    add(withText(content, std::move(pieces.front())));
    const bool isHeading = std::holds_alternative<MarkdownBlock::Heading>(content);
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        add(isHeading ? withText(content, std::move(pieces[i]))
                      : MarkdownBlock::Paragraph{std::move(pieces[i])});
    }
}

bool BlockPieces::isOne(const QString &text)
{
    return !pieceLengthFor(text);
}

BlockPieces BlockPieces::ofPlainText(const QString &text)
{
    AttributedString whole;
    whole.text = text;
    whole.runs.resize(1);
    whole.runs.front().length = text.size();
    BlockPieces result;
    const qsizetype length = pieceLengthFor(text).value_or(pieceLength);
    for (AttributedString &piece : piecesOf(whole, length)) {
        result.add(MarkdownBlock::Paragraph{std::move(piece)});
    }
    return result;
}

std::size_t BlockPieces::countWithin(std::size_t first, qint64 effort) const
{
    if (first >= m_effort.size()) {
        return 0;
    }
    const qint64 before = first == 0 ? 0 : m_effort[first - 1];
    const auto begin = m_effort.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = std::upper_bound(begin, m_effort.end(), before + effort);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(1, end - begin));
}

std::size_t BlockPieces::countBackWithin(std::size_t end, qint64 effort) const
{
    if (end == 0 || end > m_effort.size()) {
        return 0;
    }
    const qint64 allowed = m_effort[end - 1] - effort;
    if (allowed <= 0) {
        return end;
    }
    const auto last = m_effort.begin() + static_cast<std::ptrdiff_t>(end);
    const auto before = std::lower_bound(m_effort.begin(), last, allowed);
    return static_cast<std::size_t>(std::max<std::ptrdiff_t>(1, last - before - 1));
}

void BlockPieces::add(MarkdownBlock::Content content)
{
    const qint64 before = m_effort.empty() ? 0 : m_effort.back();
    m_effort.push_back(before + effortOf(content));
    m_blocks.push_back({static_cast<qint64>(m_blocks.size()), std::move(content)});
}

void BlockPieces::addTable(const MarkdownTable &table)
{
    MarkdownTable piece;
    piece.headers = table.headers;
    std::for_each(piece.headers.begin(), piece.headers.end(), cutOff);
    const bool isCut = effortOf(table) > largestTable;
    qint64 effort = effortOf(piece.headers);
    for (MarkdownTable::Row row : table.rows) {
        std::for_each(row.cells.begin(), row.cells.end(), cutOff);
        const qint64 more = effortOf(row.cells);
        if (isCut && effort > 0 && effort + more > tablePiece) {
            add(std::exchange(piece, {}));
            effort = 0;
        }
        piece.rows.push_back(std::move(row));
        effort += more;
    }
    add(std::move(piece));
}

} // namespace Talvo

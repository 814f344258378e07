#include "Views/BlockPieces.h"

#include "Markdown/MarkdownBlockParser.h"

#include <QStringList>
#include <gtest/gtest.h>

#include <stdexcept>

namespace Talvo {
namespace {

BlockPieces piecesOf(const QString &markdown)
{
    return BlockPieces(parseBlocks(markdown));
}

const AttributedString &textOf(const MarkdownBlock &block)
{
    return std::visit(
        [](const auto &content) -> const AttributedString & {
            if constexpr (requires { content.text; }) {
                return content.text;
            }
            throw std::logic_error("a block without text");
        },
        block.content);
}

QString joined(const BlockPieces &pieces, const QString &separator)
{
    QStringList texts;
    for (const MarkdownBlock &block : pieces.blocks()) {
        texts.append(textOf(block).text);
    }
    return texts.join(separator);
}

void expectSoundPieces(const BlockPieces &pieces)
{
    qint64 id = 0;
    for (const MarkdownBlock &block : pieces.blocks()) {
        EXPECT_EQ(block.id, id++);
        const AttributedString &text = textOf(block);
        EXPECT_LE(text.text.size(), BlockPieces::pieceLength);
        EXPECT_FALSE(text.text.isEmpty());
        qsizetype covered = 0;
        for (const AttributedString::Run &run : text.runs) {
            EXPECT_EQ(run.start, covered);
            EXPECT_GE(run.length, 1);
            covered += run.length;
        }
        EXPECT_EQ(covered, text.text.size());
    }
}

TEST(BlockPieces, LeavesUsualBlocksAsTheyAre)
{
    const QString markdown =
        QStringLiteral("# B\n\nbir\n\n- iki\n\n---\n\n| A |\n|---|\n| 1 |\n\n") +
        QString(BlockPieces::longestText, u'x');
    EXPECT_EQ(piecesOf(markdown).blocks(), parseBlocks(markdown));
    EXPECT_TRUE(piecesOf({}).blocks().empty());
}

TEST(BlockPieces, CutsOneLineAnywhere)
{
    const QString text(BlockPieces::longestText + 1, u'x');
    const BlockPieces pieces = piecesOf(text);
    expectSoundPieces(pieces);
    EXPECT_EQ(pieces.blocks().size(), 5U);
    EXPECT_EQ(joined(pieces, {}), text);
}

TEST(BlockPieces, CutsBetweenWords)
{
    const QString text = QStringLiteral("kelime ").repeated(4'000).trimmed();
    const BlockPieces pieces = piecesOf(text);
    expectSoundPieces(pieces);
    EXPECT_EQ(joined(pieces, {}), text);
    for (const MarkdownBlock &block : pieces.blocks()) {
        EXPECT_TRUE(textOf(block).text.startsWith(QStringLiteral("kelime")));
    }
}

TEST(BlockPieces, CutsAtLineEndsAndLeavesThemOut)
{
    const QString text = QStringLiteral("bir satır\n").repeated(4'000).trimmed();
    const BlockPieces pieces = piecesOf(text);
    expectSoundPieces(pieces);
    EXPECT_EQ(joined(pieces, QStringLiteral("\n")), text);
}

TEST(BlockPieces, KeepsCharactersWhole)
{
    const QString family = QStringLiteral("👩\u200D👩\u200D👧");
    const BlockPieces pieces = piecesOf(family.repeated(4'000));
    expectSoundPieces(pieces);
    for (const MarkdownBlock &block : pieces.blocks()) {
        EXPECT_EQ(textOf(block).text.size() % family.size(), 0);
    }
}

TEST(BlockPieces, CutsACharacterWithoutEndBetweenItsCodePoints)
{
    const BlockPieces pieces = piecesOf(QStringLiteral("👩\u200D").repeated(1'000));
    expectSoundPieces(pieces);
    EXPECT_GE(pieces.blocks().size(), 6U) << "short, but slow to lay out";
    for (const MarkdownBlock &block : pieces.blocks()) {
        const QString &text = textOf(block).text;
        EXPECT_FALSE(text.front().isLowSurrogate());
        EXPECT_FALSE(text.back().isHighSurrogate());
    }
}

TEST(BlockPieces, LeavesAThousandUsualMarksAlone)
{
    const QString text = QStringLiteral("e\u0301").repeated(1'000);
    EXPECT_EQ(piecesOf(text).blocks(), parseBlocks(text));
}

TEST(BlockPieces, CutsAnEndlessPileOfMarks)
{
    const QString text = u'e' + QStringLiteral("\u0301").repeated(1'000);
    const BlockPieces pieces = piecesOf(text);
    expectSoundPieces(pieces);
    EXPECT_GE(pieces.blocks().size(), 2U);
    EXPECT_EQ(joined(pieces, {}), text);
}

TEST(BlockPieces, KeepsTheStylesOfEachPart)
{
    const QString text = QStringLiteral("**kalın** düz ").repeated(3'000).trimmed();
    const BlockPieces pieces = piecesOf(text);
    expectSoundPieces(pieces);
    using Style = AttributedString::Style;
    for (const MarkdownBlock &block : pieces.blocks()) {
        for (const AttributedString::Run &run : textOf(block).runs) {
            const QString part = textOf(block).text.mid(run.start, run.length);
            EXPECT_EQ(run.styles.testFlag(Style::strong), part.contains(QStringLiteral("kalın")));
        }
    }
}

TEST(BlockPieces, GivesOnlyTheFirstPieceOfAnItemItsMarker)
{
    const BlockPieces pieces =
        piecesOf(QStringLiteral("7. ") + QString(BlockPieces::longestText + 1, u'x'));
    ASSERT_EQ(pieces.blocks().size(), 5U);
    EXPECT_TRUE(std::holds_alternative<MarkdownBlock::Numbered>(pieces.blocks()[0].content));
    for (std::size_t i = 1; i < pieces.blocks().size(); ++i) {
        EXPECT_TRUE(std::holds_alternative<MarkdownBlock::Paragraph>(pieces.blocks()[i].content));
    }
}

TEST(BlockPieces, GivesALargeTableItsHeaderOnce)
{
    const QString markdown =
        QStringLiteral("| A | B |\n|---|---|\n") + QStringLiteral("| 1 | 2 |\n").repeated(1'000);
    const BlockPieces pieces = piecesOf(markdown);
    EXPECT_GT(pieces.blocks().size(), 1U);
    std::size_t rows = 0;
    for (const MarkdownBlock &block : pieces.blocks()) {
        const auto &table = std::get<MarkdownTable>(block.content);
        EXPECT_EQ(table.headers.empty(), block.id > 0);
        rows += table.rows.size();
    }
    EXPECT_EQ(rows, 1'000U);
}

TEST(BlockPieces, DividesATableOfLongTexts)
{
    const QString cell(15'000, u'x');
    const BlockPieces pieces = piecesOf(QStringLiteral("| A |\n|---|\n") +
                                        QStringLiteral("| %1 |\n").arg(cell).repeated(40));
    EXPECT_GE(pieces.blocks().size(), 10U);
    EXPECT_EQ(pieces.countWithin(0, 300), 1U) << "its texts take their time";
    for (const MarkdownBlock &block : pieces.blocks()) {
        EXPECT_LE(std::get<MarkdownTable>(block.content).rows.size(), 4U);
    }
}

TEST(BlockPieces, CutsOffAnEndlessCell)
{
    const BlockPieces pieces = piecesOf(QStringLiteral("| A |\n|---|\n| ") +
                                        QString(100'000, u'x') + QStringLiteral(" |"));
    const auto &table = std::get<MarkdownTable>(pieces.blocks().at(0).content);
    const AttributedString &cell = table.rows.at(0).cells.at(0).text;
    EXPECT_EQ(cell.text, QString(BlockPieces::pieceLength, u'x') + u'…');
    EXPECT_EQ(cell.runs.back().start + cell.runs.back().length, cell.text.size());
}

TEST(BlockPieces, CountsWhatAnEffortAllows)
{
    const BlockPieces pieces = piecesOf(QStringLiteral("a\n\n").repeated(100));
    ASSERT_EQ(pieces.blocks().size(), 100U);
    EXPECT_EQ(pieces.countWithin(0, 40), 40U);
    EXPECT_EQ(pieces.countWithin(90, 40), 10U);
    EXPECT_EQ(pieces.countWithin(100, 40), 0U);
    EXPECT_EQ(piecesOf(QString(15'000, u'x')).countWithin(0, 1), 1U) << "else nothing ever shows";
}

TEST(BlockPieces, CountsBackwardsToo)
{
    const BlockPieces pieces = piecesOf(QStringLiteral("a\n\n").repeated(100));
    EXPECT_EQ(pieces.countBackWithin(100, 40), 40U);
    EXPECT_EQ(pieces.countBackWithin(41, 40), 40U);
    EXPECT_EQ(pieces.countBackWithin(40, 40), 40U);
    EXPECT_EQ(pieces.countBackWithin(10, 40), 10U);
    EXPECT_EQ(pieces.countBackWithin(0, 40), 0U);
    EXPECT_EQ(piecesOf(QString(15'000, u'x')).countBackWithin(1, 1), 1U)
        << "else nothing ever shows";
}

TEST(BlockPieces, TakesPlainTextAsItStands)
{
    const QString text = QStringLiteral("# **x** ").repeated(5'000);
    const BlockPieces pieces = BlockPieces::ofPlainText(text);
    expectSoundPieces(pieces);
    EXPECT_EQ(joined(pieces, {}), text);
    EXPECT_TRUE(BlockPieces::ofPlainText({}).blocks().empty());
}

} // namespace
} // namespace Talvo

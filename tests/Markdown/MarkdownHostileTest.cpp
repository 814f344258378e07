#include "Markdown/InlineMarkdown.h"
#include "Markdown/MarkdownBlockParser.h"
#include "Markdown/MarkdownProperties.h"
#include "Markdown/MarkdownTitle.h"

#include <gtest/gtest.h>

using namespace Talvo;

// Inputs that make careless parsers slow or overflow their stack. A quadratic rule would not fail
// an assertion here but would keep the suite from ending.

namespace {

QString repeatedTo(qsizetype size, const QString &piece)
{
    return piece.repeated(size / piece.size() + 1).first(size);
}

class MarkdownHostile : public testing::TestWithParam<const char *>
{
};

} // namespace

TEST_P(MarkdownHostile, inlineTextOfOneLine)
{
    for (const qsizetype size : {50'000, 500'000}) {
        const QString source = repeatedTo(size, QString::fromUtf8(GetParam()));
        const AttributedString result = inlineText(source);
        EXPECT_EQ(violation(result, source), "");
        EXPECT_FALSE(result.text.isEmpty());
    }
}

TEST_P(MarkdownHostile, blocksAndTitle)
{
    const QString line = repeatedTo(200, QString::fromUtf8(GetParam())) + u'\n';
    const QString source = repeatedTo(100'000, line);
    const auto blocks = parseBlocks(source);
    EXPECT_EQ(violation(blocks, source), "");
    EXPECT_EQ(blocks.empty(), source.trimmed().isEmpty());
    EXPECT_TRUE(visibleMarkdownText(source).has_value());
    EXPECT_TRUE(visibleMarkdownText(repeatedTo(8192, QString::fromUtf8(GetParam()))).has_value());
}

INSTANTIATE_TEST_SUITE_P(Pieces, MarkdownHostile,
                         testing::Values("*a ", "_a", "**a", "*a_ ", "[", "![", "[a](", "[a](<b",
                                         "]", "`", "`a``", "<", "<?a", "<!A", "<!--a", "<a b='",
                                         "<http://a", "&", "&#", "~", "~a", "~~a~", "\\", "(",
                                         "[a]((", "[a](b)", "www.a.b)))", "a@b.c", "@", "a_@",
                                         "http://", "|", "> ", "- ", "1. ", "#", "-", " ", "\t",
                                         "\u0301", "|\u0301", "\u2003", "😀", "[a]: b "));

TEST(MarkdownHostileShapes, oneLineOfOneMegabyte)
{
    const QString source = repeatedTo(1 << 20, QStringLiteral("kelime **kalın** `kod` "));
    const auto blocks = parseBlocks(source);
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(violation(blocks, source), "");
    const auto &text = std::get<MarkdownBlock::Paragraph>(blocks[0].content).text;
    EXPECT_GT(text.runs.size(), 100'000u);
}

TEST(MarkdownHostileShapes, aTableOfTenThousandColumns)
{
    constexpr int columns = 10'000;
    const QString source = QStringLiteral("|*a*").repeated(columns) + QStringLiteral("|\n") +
                           QStringLiteral("|---").repeated(columns) + QStringLiteral("|\n") +
                           QStringLiteral("|b").repeated(columns) + u'|';
    const auto blocks = parseBlocks(source);
    ASSERT_EQ(blocks.size(), 1u);
    const auto &table = std::get<MarkdownTable>(blocks[0].content);
    EXPECT_EQ(table.headers.size(), std::size_t(columns));
    ASSERT_EQ(table.rows.size(), 1u);
    EXPECT_EQ(table.rows[0].cells.size(), std::size_t(columns));
    EXPECT_EQ(violation(blocks, source), "");
}

TEST(MarkdownHostileShapes, aTableOfAHundredThousandRows)
{
    const QString source =
        QStringLiteral("a|b\n---|---\n") + QStringLiteral("1|2\n").repeated(100'000);
    const auto blocks = parseBlocks(source);
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(std::get<MarkdownTable>(blocks[0].content).rows.size(), 100'000u);
}

TEST(MarkdownHostileShapes, aMillionBlocks)
{
    const QString source = QStringLiteral("---\n").repeated(1'000'000);
    const auto blocks = parseBlocks(source);
    ASSERT_EQ(blocks.size(), 1'000'000u);
    EXPECT_EQ(blocks.back().id, 999'999);
}

TEST(MarkdownHostileShapes, almostTablesAllTheWay)
{
    // Every line is a table's header but for the separator, which has one dash too few.
    const QString source = QStringLiteral("|a|b|c|d|\n|---|---|---|--|\n").repeated(20'000);
    const auto blocks = parseBlocks(source);
    ASSERT_EQ(blocks.size(), 1u);
    EXPECT_EQ(violation(blocks, source), "");
}

TEST(MarkdownHostileShapes, tablesRightAfterEachOther)
{
    const QString source = QStringLiteral("x\n|a|\n|---|\n").repeated(20'000);
    EXPECT_EQ(parseBlocks(source).size(), 40'000u);
}

#include "Markdown/InlineMarkdown.h"

#include "Markdown/MarkdownDump.h"
#include "Markdown/MarkdownProperties.h"

#include <gtest/gtest.h>

using namespace Talvo;

namespace {

struct InlineRow
{
    const char *what;
    QString input;
    const char *expected; ///< as dumped() writes it
};

void expectInlineRows(const std::vector<InlineRow> &rows)
{
    for (const auto &row : rows) {
        const AttributedString result = inlineText(row.input);
        EXPECT_EQ(dumped(result), row.expected) << row.what;
        EXPECT_EQ(violation(result, row.input), "") << row.what;
    }
}

} // namespace

TEST(InlineMarkdown, lineEndings)
{
    expectInlineRows({
        {"a backslash at the very end", QStringLiteral("a\\"), "a\\"},
        {"three backslashes", QStringLiteral("a\\\\\\\nb"), "a\\{lineBreak|\\n}b"},
        {"two, then two breaks", QStringLiteral("a\\\\\n\nb"), "a\\\\n\\nb"},
        {"in code it breaks nothing", QStringLiteral("`a\\\nb`"), "{code|a\\ b}"},
        {"after a bare link", QStringLiteral("https://e.x\nwww.e.x\na"),
         "{link=https://e.x|https://e.x}\\n{link=http://www.e.x|www.e.x}\\na"},
        {"after a bare link and a backslash", QStringLiteral("www.e.x/\\\nb"),
         "{link=http://www.e.x/\\|www.e.x/\\}\\nb"},
        {"after a backslash in a link", QStringLiteral("[a](u\\\n\"t\")"), "{link=u\\ title=t|a}"},
        {"within a link", QStringLiteral("[a\nb](u\n\"t\")"), "{link=u title=t|a\\nb}"},
        {"a backslash before one in a tag", QStringLiteral("<a b='\\\n'>"), "{html|<a b='\\\\n'>}"},
        {"in a tag", QStringLiteral("<a\nb>x"), "{html|<a\\nb>}x"},
        {"in a link's title", QStringLiteral("[a](u \"b\nc\")"), "{link=u title=b\\nc|a}"},
        {"CR LF in code", QStringLiteral("`a\r\nb`"), "{code|a b}"},
        {"as an entity", QStringLiteral("a&#10;b"), "a\\nb"},
        {"a backslash written as an entity", QStringLiteral("a&#92;\nb"), "a\\\\nb"},
        {"vertical tab and form feed end no line here", QStringLiteral("a\v*b*\fc"),
         "a\v{emphasis|b}\fc"},
    });
}

TEST(InlineMarkdown, tabsAndBlanksStay)
{
    expectInlineRows({
        {"tab as an entity", QStringLiteral("&Tab;a"), "\ta"},
        {"tabs and line endings", QStringLiteral("*a*\t\n\t \t\n\n\t*b*"),
         "{emphasis|a}\t\\n\t \t\\n\\n\t{emphasis|b}"},
        {"tab before a bare link", QStringLiteral("\twww.e.x\ta"),
         "\t{link=http://www.e.x|www.e.x}\ta"},
        {"tabs in a link", QStringLiteral("[a](u\t\"t\tt\")"), "{link=u title=t\tt|a}"},
        {"tab in an address", QStringLiteral("[a](<u\tv>)"), "{link=u\tv|a}"},
        {"tab in code", QStringLiteral("`a\tb`"), "{code|a\tb}"},
        {"em spaces, which the disguise uses too", QStringLiteral("\u2003*a*\u2003"),
         "\u2003{emphasis|a}\u2003"},
        {"em space as an entity", QStringLiteral("&emsp;a"), "\u2003a"},
        {"code of blanks only", QStringLiteral("`  `"), "{code|  }"},
        {"code loses one blank at each end", QStringLiteral("`  a  `"), "{code| a }"},
        {"but none when only one end has one", QStringLiteral("` a`"), "{code| a}"},
    });
}

TEST(InlineMarkdown, nestedAttributes)
{
    expectInlineRows({
        {"an image in a link", QStringLiteral("[![a](i \"t\")](u)"), "{link=u image=i title=t|a}"},
        {"strike in strong", QStringLiteral("**a ~~b~~**"), "{strong|a }{strong strikethrough|b}"},
        {"code in emphasis", QStringLiteral("*a `b`*"), "{emphasis|a }{emphasis code|b}"},
        {"a bare link in strong", QStringLiteral("**https://e.x**"),
         "{strong link=https://e.x|https://e.x}"},
        {"neighbours of the same style merge", QStringLiteral("*a*_b_"), "{emphasis|ab}"},
        {"a link without an address", QStringLiteral("[a]()"), "a"},
    });
}

TEST(InlineMarkdown, whatNoTextCanHoldBecomesTheReplacementCharacter)
{
    const QString loneHigh = QString(QChar(0xD83D)) + QStringLiteral(" a");
    const QString loneLow = QStringLiteral("*a*") + QChar(0xDE00);
    expectInlineRows({
        {"high surrogate alone", loneHigh, "\uFFFD a"},
        {"low surrogate alone", loneLow, "{emphasis|a}\uFFFD"},
        {"a pair stays", QStringLiteral("😀 *😀*"), "😀 {emphasis|😀}"},
    });
}

TEST(InlineMarkdown, byteOrderMarkIsDroppedAtTheStartOnly)
{
    expectInlineRows({
        {"before markup", QStringLiteral("\uFEFF*a*"), "{emphasis|a}"},
        {"inside", QStringLiteral("a\uFEFFb"), "a\uFEFFb"},
        {"alone", QStringLiteral("\uFEFF"), ""},
    });
}

TEST(InlineMarkdown, whatCannotBeInterpretedIsPlain)
{
    // No address holds a line ending; the whole text then shows its characters.
    for (const QString &source :
         {QStringLiteral("**a** [b](<c\nd>)"), QStringLiteral("**a** [b](<c\\\nd>)")}) {
        const AttributedString result = inlineText(source);
        EXPECT_EQ(result.text, source);
        ASSERT_EQ(result.runs.size(), 1u);
        EXPECT_EQ(result.runs.front(), (AttributedString::Run{0, source.size(), {}, {}, {}, {}}));
    }
}

TEST(InlineMarkdown, runsCountUtf16CodeUnits)
{
    const AttributedString result = inlineText(QStringLiteral("ş😀**ğ**"));
    ASSERT_EQ(result.runs.size(), 2u);
    EXPECT_EQ(result.runs[1].start, 3);
    EXPECT_EQ(result.runs[1].length, 1);
}

TEST(InlineMarkdown, longTextsAreCutAtLineEndings)
{
    // Each line is styled although the whole is many times as long as what is interpreted at once.
    const QString line = QStringLiteral("satır **kalın** ve `kod`\n");
    constexpr int count = 5000;
    const QString source = line.repeated(count);
    const AttributedString result = inlineText(source);
    EXPECT_EQ(result.text, QStringLiteral("satır kalın ve kod\n").repeated(count));
    EXPECT_EQ(result.runs.size(), std::size_t(count) * 4 + 1);
    EXPECT_EQ(violation(result, source), "");
}

TEST(InlineMarkdown, oneLongLineIsCutAtBlanks)
{
    constexpr int count = 5000;
    const AttributedString result = inlineText(QStringLiteral("a **bc** ").repeated(count));
    EXPECT_EQ(result.text, QStringLiteral("a bc ").repeated(count));
    EXPECT_EQ(result.runs.size(), std::size_t(count) * 2 + 1);
}

TEST(InlineMarkdown, aCutWithoutAnyBlankKeepsPairs)
{
    // The odd first character puts a pair across every even boundary.
    const QString source = QStringLiteral("*") + QStringLiteral("😀").repeated(40'000);
    EXPECT_EQ(inlineText(source).text, source);
}

#include "Markdown/MarkdownTitle.h"

#include <gtest/gtest.h>

using namespace Talvo;

TEST(MarkdownTitle, visibleCharacters)
{
    struct Row
    {
        const char *what;
        QString input;
        QString expected;
    };
    for (const Row &row : std::initializer_list<Row>{
             {"empty", {}, QStringLiteral("")},
             {"plain", QStringLiteral("Ankara gezisi"), QStringLiteral("Ankara gezisi")},
             {"emphasis and strong", QStringLiteral("*a* **b** __c__"), QStringLiteral("a b c")},
             {"strikethrough", QStringLiteral("~~a~~ b"), QStringLiteral("a b")},
             {"code", QStringLiteral("`x = 1`"), QStringLiteral("x = 1")},
             {"heading", QStringLiteral("## Başlık ##"), QStringLiteral("Başlık")},
             {"list", QStringLiteral("- a"), QStringLiteral("a")},
             {"numbered list", QStringLiteral("1. a"), QStringLiteral("a")},
             {"quote", QStringLiteral("> a"), QStringLiteral("a")},
             {"link", QStringLiteral("[a](https://e.x)"), QStringLiteral("a")},
             {"bare link", QStringLiteral("see www.e.x"), QStringLiteral("see www.e.x")},
             {"image", QStringLiteral("![a](i.png) b"), QStringLiteral("a b")},
             {"HTML", QStringLiteral("a <b>c</b>"), QStringLiteral("a c")},
             {"HTML block", QStringLiteral("<div>a</div>"), QStringLiteral("")},
             {"divider", QStringLiteral("---"), QStringLiteral("")},
             {"link definition", QStringLiteral("[a]: /u"), QStringLiteral("")},
             {"entity", QStringLiteral("a &amp; b"), QStringLiteral("a & b")},
             {"blocks are a blank apart", QStringLiteral("# a\r\rb\r\r- c\r- d"),
              QStringLiteral("a b c d")},
             {"so are lines", QStringLiteral("a\rb  \rc"), QStringLiteral("a b c")},
             {"unclosed markers stay", QStringLiteral("**a"), QStringLiteral("**a")},
             {"four blanks make code", QStringLiteral("    a *b*"), QStringLiteral("a *b*\n")},
             {"fence", QStringLiteral("```\ra\r```\rb"), QStringLiteral("a\n b")},
             {"byte-order mark", QStringLiteral("*a*\uFEFFb"), QStringLiteral("a\uFEFFb")},
             {"NUL", QStringLiteral("a") + QChar(0) + u'b', QStringLiteral("a\uFFFDb")},
         }) {
        const auto visible = visibleMarkdownText(row.input);
        ASSERT_TRUE(visible.has_value()) << row.what;
        EXPECT_EQ(visible->toStdString(), row.expected.toStdString()) << row.what;
    }
}

TEST(MarkdownTitle, onlyTheFirstPartIsRead)
{
    const QString text = QStringLiteral("a").repeated(100'000);
    const auto visible = visibleMarkdownText(text);
    ASSERT_TRUE(visible.has_value());
    EXPECT_GE(visible->size(), 1024);
    EXPECT_LE(visible->size(), 8192);
}

TEST(MarkdownTitle, theCutKeepsPairs)
{
    for (const QString &start : {QString(), QStringLiteral("a")}) {
        const auto visible = visibleMarkdownText(start + QStringLiteral("😀").repeated(10'000));
        ASSERT_TRUE(visible.has_value());
        EXPECT_TRUE(visible->isValidUtf16());
        EXPECT_FALSE(visible->contains(QChar::ReplacementCharacter));
    }
}

TEST(MarkdownTitle, theUnreadRestOfATitleStaysAsItIs)
{
    struct Row
    {
        const char *what;
        QString start;
        QString visibleStart;
    };
    const QString words = QStringLiteral("a b ").repeated(5'000) + QStringLiteral("**c**\n# d ");
    for (const Row &row : std::initializer_list<Row>{
             {"plain", {}, {}},
             {"a cut elsewhere", QStringLiteral("a"), QStringLiteral("a")},
             {"heading", QStringLiteral("# "), {}},
             {"code", QStringLiteral("    "), {}},
             {"closed before", QStringLiteral("*a* "), QStringLiteral("a ")},
         }) {
        EXPECT_EQ(visibleMarkdownTitle(row.start + words), row.visibleStart + words) << row.what;
    }
    EXPECT_EQ(visibleMarkdownTitle(u"**a**"), QStringLiteral("a"));
    EXPECT_EQ(visibleMarkdownTitle(u"    a"), QStringLiteral("a\n"));
}

TEST(MarkdownTitle, aLongTitleKeepsItsPairs)
{
    const QString pairs = QStringLiteral("a") + QStringLiteral("😀").repeated(10'000);
    EXPECT_EQ(visibleMarkdownTitle(pairs), pairs);
}

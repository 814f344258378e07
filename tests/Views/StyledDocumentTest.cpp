#include "Views/StyledDocument.h"

#include "Markdown/InlineMarkdown.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <gtest/gtest.h>

namespace Talvo {
namespace {

const InlineLooks looks{Qt::blue, Qt::lightGray, QStringLiteral("Mono")};

QTextCharFormat formatAt(const QTextDocument &document, int position)
{
    QTextCursor cursor(document.findBlock(position));
    cursor.setPosition(position + 1);
    return cursor.charFormat();
}

void fill(QTextDocument &document, const char *markdown)
{
    fillDocument(document, inlineText(QString::fromUtf8(markdown)), looks);
}

TEST(StyledDocument, DrawsEveryInlineStyle)
{
    QTextDocument document;
    fill(document, "a**b***c*~~d~~`e`***f***");
    ASSERT_EQ(document.toRawText(), QStringLiteral("abcdef"));
    EXPECT_EQ(formatAt(document, 0), QTextCharFormat());
    EXPECT_EQ(formatAt(document, 1).fontWeight(), QFont::Bold);
    EXPECT_TRUE(formatAt(document, 2).fontItalic());
    EXPECT_TRUE(formatAt(document, 3).fontStrikeOut());
    EXPECT_EQ(formatAt(document, 4).fontFamilies().toStringList(),
              QStringList(QStringLiteral("Mono")));
    EXPECT_EQ(formatAt(document, 4).background().color(), QColor(Qt::lightGray));
    EXPECT_EQ(formatAt(document, 5).fontWeight(), QFont::Bold);
    EXPECT_TRUE(formatAt(document, 5).fontItalic());
}

TEST(StyledDocument, MarksLinksThatCanBeOpened)
{
    QTextDocument document;
    fill(document, "[a](https://example.com)[b](file:///etc/passwd)");
    ASSERT_EQ(document.toRawText(), QStringLiteral("ab"));
    EXPECT_EQ(formatAt(document, 0).anchorHref(), QStringLiteral("https://example.com"));
    EXPECT_EQ(formatAt(document, 0).foreground().color(), QColor(Qt::blue));
    EXPECT_TRUE(formatAt(document, 0).fontUnderline());
    EXPECT_FALSE(formatAt(document, 1).isAnchor());
}

TEST(StyledDocument, NeverReadsMarkup)
{
    QTextDocument document;
    fill(document,
         "<b>x</b> <img src=\"http://example.com/x.png\"> ![y](http://example.com/y.png)");
    EXPECT_EQ(document.toRawText(),
              QStringLiteral("<b>x</b> <img src=\"http://example.com/x.png\"> y"));
    for (int position = 0; position + 1 < document.characterCount(); ++position) {
        EXPECT_FALSE(formatAt(document, position).isImageFormat());
        EXPECT_NE(document.characterAt(position), QChar::ObjectReplacementCharacter);
    }
}

TEST(StyledDocument, KeepsPositionsOfTheText)
{
    QTextDocument document;
    AttributedString text;
    text.text = QStringLiteral("a\u00A0b\nc\uFFFCd\uFDD0e");
    text.runs.push_back({0, text.text.size(), {}, {}, {}, {}});
    fillDocument(document, text, looks);
    EXPECT_EQ(document.toRawText(), QStringLiteral("a\u00A0b\u2029c\uFFFDd\uFFFDe"));
    EXPECT_EQ(document.characterCount() - 1, text.text.size());
}

TEST(StyledDocument, IsDrawnWithTheGlyphsOfItsLayout)
{
    QTextDocument document;
    fill(document, "bir\niki");
    ASSERT_EQ(document.blockCount(), 2);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        EXPECT_TRUE(block.layout()->cacheEnabled()) << block.blockNumber();
    }
}

TEST(StyledDocument, TakesOtherLooksInPlace)
{
    QTextDocument document;
    const AttributedString text = inlineText(QStringLiteral("x [a](https://example.com) `b`"));
    fillDocument(document, text, looks);
    restyleDocument(document, text, {Qt::red, Qt::black, QStringLiteral("Other")});
    EXPECT_EQ(document.toRawText(), QStringLiteral("x a b"));
    EXPECT_EQ(formatAt(document, 2).foreground().color(), QColor(Qt::red));
    EXPECT_EQ(formatAt(document, 4).background().color(), QColor(Qt::black));
    EXPECT_EQ(formatAt(document, 0), QTextCharFormat());
}

TEST(StyledDocument, WritesLineEndingsAsLineFeeds)
{
    EXPECT_EQ(withPlainLineEndings(QStringLiteral("a\r\nb\rc\nd")), QStringLiteral("a\nb\nc\nd"));
}

} // namespace
} // namespace Talvo

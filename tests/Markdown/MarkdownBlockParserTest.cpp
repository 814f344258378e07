#include "Markdown/MarkdownBlockParser.h"

#include "Markdown/MarkdownDump.h"
#include "Markdown/MarkdownProperties.h"

#include <QString>
#include <gtest/gtest.h>

using namespace Talvo;

namespace {

struct BlockRow
{
    const char *what;
    const char16_t *input;
    const char *expected; ///< as dumped() writes it
};

void expectBlockRows(std::initializer_list<BlockRow> rows)
{
    for (const BlockRow &row : rows) {
        const auto blocks = parseBlocks(row.input);
        EXPECT_EQ(dumped(blocks), row.expected) << row.what;
        EXPECT_EQ(violation(blocks, row.input), "") << row.what;
        EXPECT_EQ(blocks, parseBlocks(row.input)) << row.what;
    }
}

} // namespace

TEST(MarkdownBlocks, nothing)
{
    expectBlockRows({
        {"empty", u"", ""},
        {"blanks and breaks", u" \t\n\u00A0\r\n\u2003\u2028\u0085 ", ""},
    });
}

TEST(MarkdownBlocks, linesAreCutAtEveryNewlineCharacter)
{
    expectBlockRows({
        {"line feed keeps the paragraph", u"Merhaba\ndünya", "paragraph 'Merhaba\\ndünya'"},
        {"CR LF makes two", u"Merhaba\r\ndünya", "paragraph 'Merhaba'\nparagraph 'dünya'"},
        {"CR alone reads as a line feed", u"a\rb", "paragraph 'a\\nb'"},
        {"every newline character", u"a\vb\fc\u0085d\u2028e\u2029f\ng",
         "paragraph 'a\\nb\\nc\\nd\\ne\\nf\\ng'"},
        {"headings cut by NEL", u"# a\u0085# b", "heading 1 'a'\nheading 1 'b'"},
        {"a zero width space is no blank", u"\u200B", "paragraph '\u200B'"},
        {"CR LF tears a table apart", u"|a|\r\n|---|\r\n", "paragraph '|a|'\nparagraph '|---|'"},
        {"but CR alone does not", u"|a|\r|---|\r|1|", "table [a] [1]"},
    });
}

TEST(MarkdownBlocks, headings)
{
    expectBlockRows({
        {"level 1", u"# Başlık", "heading 1 'Başlık'"},
        {"level 6", u"###### x", "heading 6 'x'"},
        {"seven are too many", u"####### x", "paragraph '####### x'"},
        {"no blank", u"#x", "paragraph '#x'"},
        {"a tab is no blank", u"#\tx", "paragraph '#\tx'"},
        {"closing hashes stay", u"## Özet ##", "heading 2 'Özet ##'"},
        {"indented", u"\t  # x  ", "heading 1 'x'"},
        {"without text", u"#  ", "paragraph '#  '"},
        {"inline text", u"### **a** b", "heading 3 '{strong|a} b'"},
        {"a hash with an accent", u"#\u0301 x", "paragraph '#\u0301 x'"},
        {"no setext headings", u"Giriş\n---", "paragraph 'Giriş'\ndivider"},
        {"no setext headings with =", u"Giriş\n===", "paragraph 'Giriş\\n==='"},
    });
}

TEST(MarkdownBlocks, dividers)
{
    expectBlockRows({
        {"dashes", u"---", "divider"},
        {"spaced stars, not a bullet", u"* * *", "divider"},
        {"underscores, indented", u"   ___ ", "divider"},
        {"a bullet of two dashes", u"- -", "bullet '-'"},
        {"mixed", u"-*-", "paragraph '-*-'"},
        {"two", u"--", "paragraph '--'"},
        {"one with an accent", u"---\u0301", "paragraph '---\u0301'"},
        {"two dividers", u"---\n---", "divider\ndivider"},
    });
}

TEST(MarkdownBlocks, bullets)
{
    expectBlockRows({
        {"all markers", u"- a\n* b\n+ c", "bullet 'a'\nbullet 'b'\nbullet 'c'"},
        {"no blank", u"-a", "paragraph '-a'"},
        {"further blanks stay", u"-   a", "bullet '  a'"},
        {"nested lists are flat", u"- a\n  - b\n\t- c", "bullet 'a'\nbullet 'b'\nbullet 'c'"},
        {"no lazy continuation", u"- a\nb", "bullet 'a'\nparagraph 'b'"},
        {"a marker with an accent", u"-\u0301 a", "paragraph '-\u0301 a'"},
        {"a blank with an accent", u"- \u0301a", "paragraph '- \u0301a'"},
        {"inline text", u"- [a](u) `b`", "bullet '{link=u|a} {code|b}'"},
        {"a task", u"- [x] done", "bullet '[x] done'"},
        {"an item that looks like a heading", u"- # x", "bullet '# x'"},
    });
}

TEST(MarkdownBlocks, numberedItems)
{
    expectBlockRows({
        {"two items", u"1. Bir\n2. İki", "numbered 1 'Bir'\nnumbered 2 'İki'"},
        {"numbers are kept", u"7. a\n7. b\n3. c", "numbered 7 'a'\nnumbered 7 'b'\nnumbered 3 'c'"},
        {"a decimal fraction", u"3.14 sayısı", "numbered 3 '14 sayısı'"},
        {"no blank", u"2.Madde", "numbered 2 'Madde'"},
        {"negative", u"-1. x", "numbered -1 'x'"},
        {"no text", u"10.", "paragraph '10.'"},
        {"out of range", u"9223372036854775808. x", "paragraph '9223372036854775808. x'"},
        {"the last in range", u"9223372036854775807. x", "numbered 9223372036854775807 'x'"},
        {"a full stop with an accent", u"1.\u0301 x", "paragraph '1.\u0301 x'"},
        {"a date", u"21.11.2026", "numbered 21 '11.2026'"},
    });
}

TEST(MarkdownBlocks, tables)
{
    expectBlockRows({
        {"rows stay as short as they are", u"| A | B |\n|---|---|\n| 1 | 2 |\n| 3 |",
         "table [A|B] [1|2] [3]"},
        {"and as long", u"|A|\n|---|\n|1|2|3|", "table [A] [1|2|3]"},
        {"a line without a pipe ends it", u"|A|\n|---|\n|1|\nson",
         "table [A] [1]\nparagraph 'son'"},
        {"so does a blank line", u"|A|\n|---|\n\n|1|", "table [A]\nparagraph '|1|'"},
        {"no rows, no pipes in the separator", u"A | B\n---", "table [A|B]"},
        {"two dashes separate nothing", u"| A |\n|:-|", "paragraph '| A |\\n|:-|'"},
        {"alignment is ignored", u"|A|B|\n|:---:|---:|\n|1|2|", "table [A|B] [1|2]"},
        {"counts are not compared", u"|A|B|C|\n|---|", "table [A|B|C]"},
        {"empty cells", u"|a||b|\n|---|\n|||", "table [a||b] [|]"},
        {"one pipe alone", u"|\n---", "table []"},
        {"no escape", u"|a\\|b|\n|---|", "table [a\\|b]"},
        {"code does not protect a pipe", u"|`a|b`|\n|---|", "table [`a|b`]"},
        {"inline text in cells", u"|**a**|\n|---|\n|`b`|", "table [{strong|a}] [{code|b}]"},
        {"a heading line with a pipe", u"# a|b\n---", "table [# a|b]"},
        {"a bullet with a pipe", u"- a|b\n---|---", "table [- a|b]"},
        {"rows take anything with a pipe", u"a|b\n---\n# c|d\n---|---\n- e|f",
         "table [a|b] [# c|d] [---|---] [- e|f]"},
        {"indented", u"   a|b\n   ---", "table [a|b]"},
        {"the separator is the last line", u"x\n|---|", "paragraph 'x\\n|---|'"},
        {"the header is the last line", u"|a|", "paragraph '|a|'"},
        {"a pipe with an accent is none", u"a|\u0301b\n---", "paragraph 'a|\u0301b'\ndivider"},
        {"two tables", u"|a|\n|---|\n\n|b|\n|---|", "table [a]\ntable [b]"},
        {"a separator can be a header", u"|---|\n|---|\n|---|", "table [---] [---]"},
    });
}

TEST(MarkdownBlocks, paragraphs)
{
    expectBlockRows({
        {"white space stays", u"  a  \n\tb ", "paragraph '  a  \\n\tb '"},
        {"a blank line ends it", u"a\n \t\nb", "paragraph 'a'\nparagraph 'b'"},
        {"a heading ends it", u"a\n  ## b", "paragraph 'a'\nheading 2 'b'"},
        {"a bullet ends it", u"a\n- b", "paragraph 'a'\nbullet 'b'"},
        {"a numbered item ends it", u"a\n5. x", "paragraph 'a'\nnumbered 5 'x'"},
        {"a divider ends it", u"a\n***", "paragraph 'a'\ndivider"},
        {"a table ends it", u"a\n|b|\n|---|\n|c|", "paragraph 'a'\ntable [b] [c]"},
        {"a table right below a line with pipes", u"|x|\n|a|\n|---|", "paragraph '|x|'\ntable [a]"},
        {"block quotes and fences are text", u"> a\n```\nb\n```", "paragraph '> a\\n{code|b}'"},
        {"styles span lines", u"**a\nb**", "paragraph '{strong|a\\nb}'"},
        {"but not blocks", u"**a\n\nb**", "paragraph '**a'\nparagraph 'b**'"},
        {"a byte-order mark", u"\uFEFF# a", "paragraph '# a'"},
        {"what inline text rejects is literal", u"[a](<b\nc>)", "paragraph '[a](<b\\nc>)'"},
        {"no HTML", u"<b>a</b>", "paragraph '{html|<b>}a{html|</b>}'"},
        {"an image is its alternative text", u"![a](http://e.x/i.png)",
         "paragraph '{image=http://e.x/i.png|a}'"},
    });
}

TEST(MarkdownBlocks, aWholeReply)
{
    expectBlockRows({{"reply",
                      u"# Özet\n\nİlk satır\nikinci **satır**\n- bir\n  * iki\n1. üç\n\n"
                      u"| Ad | Yaş |\n|:---|---:|\n| Ali | 5 |\nson\n---\nbitti",
                      "heading 1 'Özet'\n"
                      "paragraph 'İlk satır\\nikinci {strong|satır}'\n"
                      "bullet 'bir'\n"
                      "bullet 'iki'\n"
                      "numbered 1 'üç'\n"
                      "table [Ad|Yaş] [Ali|5]\n"
                      "paragraph 'son'\n"
                      "divider\n"
                      "paragraph 'bitti'"}});
}

TEST(MarkdownBlocks, theTextMayEndBeforeItsResult)
{
    auto text = std::make_unique<QString>(QStringLiteral("plain\ntext\n\n- *a*\n\n|b|\n|---|"));
    const auto blocks = parseBlocks(*text);
    text->fill(u'!');
    text.reset();
    EXPECT_EQ(dumped(blocks), "paragraph 'plain\\ntext'\nbullet '{emphasis|a}'\ntable [b]");
}

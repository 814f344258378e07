#include "Markdown/MarkdownLineRules.h"

#include "Markdown/GraphemeMarkers.h"
#include "Markdown/MarkdownTableParser.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <unicode/brkiter.h>

#include <random>
#include <set>

using namespace Talvo;

namespace {

std::string shown(QStringView line)
{
    return line.toString().toStdString();
}

} // namespace

TEST(LineRules, divider)
{
    for (const char16_t *line :
         {u"---", u"***", u"___", u"- - -", u"* * * *", u"----------", u"-  --", u"_ _ _"}) {
        EXPECT_TRUE(isDivider(line)) << shown(line);
    }
    for (const char16_t *line : {u"", u"-", u"--", u"-*-", u"-- -x", u"-\t--", u"===", u"- -",
                                 u"---\u0301", u"-\u0301--", u"+++", u"- \u0301--", u"\u00A0---"}) {
        EXPECT_FALSE(isDivider(line)) << shown(line);
    }
}

TEST(LineRules, heading)
{
    struct Row
    {
        const char16_t *line;
        qint64 level; ///< 0 for none
        const char16_t *text;
    };
    for (const Row &row : std::initializer_list<Row>{
             {u"# Başlık", 1, u"Başlık"},
             {u"###### x", 6, u"x"},
             {u"####### x", 0, u""},
             {u"## Özet ##", 2, u"Özet ##"},
             {u"#   x", 1, u"x"},
             {u"#  \t x", 1, u"x"},
             {u"#Başlık", 0, u""},
             {u"#\tx", 0, u""},
             {u"#\u00A0x", 0, u""},
             {u"#", 0, u""},
             {u"", 0, u""},
             {u"#\u0301 x", 0, u""},       // the hash carries an accent
             {u"##\u0301 x", 0, u""},      // so does the second
             {u"# \u0301x", 0, u""},       // the blank does
             {u"#\uFE0F\u20E3 x", 0, u""}, // keycap emoji
             {u"# \u200Dx", 0, u""},       // joined
             {u"# \u00ADx", 1, u"\u00ADx"},
         }) {
        const auto heading = parseHeading(row.line);
        const std::string line = shown(row.line);
        ASSERT_EQ(heading.has_value(), row.level != 0) << line;
        if (heading) {
            EXPECT_EQ(heading->level, row.level) << line;
            EXPECT_EQ(heading->text, row.text) << line;
        }
    }
}

TEST(LineRules, bullet)
{
    struct Row
    {
        const char16_t *line;
        const char16_t *text; ///< null for none
    };
    for (const Row &row : std::initializer_list<Row>{
             {u"- a", u"a"},
             {u"* b", u"b"},
             {u"+ c", u"c"},
             {u"-   a", u"  a"},
             {u"- - a", u"- a"},
             {u"-a", nullptr},
             {u"-", nullptr},
             {u"-\ta", nullptr},
             {u"\u2022 a", nullptr},
             {u"-\u0301 a", nullptr},
             {u"- \u0301a", nullptr},
             {u"*\uFE0F a", nullptr},
             {u"", nullptr},
         }) {
        const auto text = bulletText(row.line);
        const std::string line = shown(row.line);
        ASSERT_EQ(text.has_value(), row.text != nullptr) << line;
        if (text) {
            EXPECT_EQ(*text, row.text) << line;
        }
    }
}

TEST(LineRules, numberedItem)
{
    struct Row
    {
        const char16_t *line;
        const char16_t *text; ///< null for none
        qint64 number;
    };
    for (const Row &row : std::initializer_list<Row>{
             {u"1. Bir", u"Bir", 1},
             {u"2.Madde", u"Madde", 2},
             {u"3.14 sayısı", u"14 sayısı", 3},
             {u"-1. x", u"x", -1},
             {u"+5. x", u"x", 5},
             {u"-0. x", u"x", 0},
             {u"007. x", u"x", 7},
             {u"1.. x", u". x", 1},
             {u"1.\t x", u"x", 1},
             {u"9223372036854775807. x", u"x", std::numeric_limits<qint64>::max()},
             {u"-9223372036854775808. x", u"x", std::numeric_limits<qint64>::min()},
             {u"9223372036854775808. x", nullptr, 0},
             {u"-9223372036854775809. x", nullptr, 0},
             {u"99999999999999999999999. x", nullptr, 0},
             {u"0000000000000000000000009. x", u"x", 9},
             {u"10.", nullptr, 0},
             {u"10. ", nullptr, 0},
             {u". x", nullptr, 0},
             {u"+. x", nullptr, 0},
             {u"-. x", nullptr, 0},
             {u"--1. x", nullptr, 0},
             {u"1 . x", nullptr, 0},
             {u"1) x", nullptr, 0},
             {u"1a. x", nullptr, 0},
             {u"1,5. x", nullptr, 0},
             {u"x 1. y", nullptr, 0},
             {u"\u0661. x", nullptr, 0}, // an Arabic digit
             {u"1\u0301. x", nullptr, 0},
             {u"1.\u0301 x", nullptr, 0},
             {u"1.\u0301.x", nullptr, 0}, // the first full stop of its own comes too late
             {u"1. \u0301", u"\u0301", 1},
             {u"", nullptr, 0},
         }) {
        const auto item = parseNumberedItem(row.line);
        const std::string line = shown(row.line);
        ASSERT_EQ(item.has_value(), row.text != nullptr) << line;
        if (item) {
            EXPECT_EQ(item->number, row.number) << line;
            EXPECT_EQ(item->text, row.text) << line;
        }
    }
}

TEST(LineRules, splitTableRow)
{
    struct Row
    {
        const char16_t *line;
        QStringList cells;
    };
    const auto list = [](const char16_t *cells) {
        return QStringView(cells).toString().split(u',');
    };
    for (const Row &row : std::initializer_list<Row>{
             {u"| A | B |", list(u"A,B")},
             {u"A | B", list(u"A,B")},
             {u"  |a|b  ", list(u"a,b")},
             {u"a||b", list(u"a,,b")},
             {u"||a||", list(u",a,")},
             {u"|", list(u"")},
             {u"||", list(u"")},
             {u"|||", list(u",")},
             {u"", list(u"")},
             {u"a\\|b", list(u"a\\,b")},
             {u"`a|b`", list(u"`a,b`")},
             {u"|\t\u00A0a\u3000|", list(u"a")},
             {u"a|\u0301b|c", list(u"a|\u0301b,c")},
             {u"|\u0301a|", list(u"|\u0301a")},
             {u"a\u0600|b|c", list(u"a\u0600|b,c")}, // a sign that takes in what follows it
             {u"a|\u200Db", list(u"a|\u200Db")},
             {u"a|\U0001F3FBb", list(u"a|\U0001F3FBb")}, // a skin tone extends as well
         }) {
        QStringList cells;
        for (const QStringView cell : splitTableRow(row.line)) {
            cells += cell.toString();
        }
        EXPECT_EQ(cells, row.cells) << shown(row.line);
    }
}

TEST(LineRules, tableSeparator)
{
    for (const char16_t *line : {u"|---|:---:|---:|", u"-----", u"---", u"  | --- |---  ",
                                 u"---|---", u":---", u"-:--", u"|---", u"|\t---\t|"}) {
        EXPECT_TRUE(isTableSeparator(line)) << shown(line);
    }
    for (const char16_t *line :
         {u"|:--|", u"|- -|", u"|---||", u"", u"|", u":", u"|::::|", u"--", u"|---|x|",
          u"|---|\u0301---|", u"---\u0301", u"- - -", u"***", u"|---| |", u"|--- -|"}) {
        EXPECT_FALSE(isTableSeparator(line)) << shown(line);
    }
}

// The quick look at a marker's neighbours agrees with a full segmentation into clusters.
TEST(LineRules, markersAreTheClustersOfTheBreakIterator)
{
    const QStringList alphabet = QStringList{
        QStringLiteral("|"),          QStringLiteral("a"),      QStringLiteral(" "),
        QStringLiteral("\u0301"),     QStringLiteral("\u200D"), QStringLiteral("\uFE0F"),
        QStringLiteral("\u0600"),     QStringLiteral("\u0903"), QStringLiteral("\u1100"),
        QStringLiteral("\U0001F468"), QStringLiteral("\u00AD"), QStringLiteral("\U0001F1F9"),
        QStringLiteral("\U000110BD"), QStringLiteral("ş"),      QStringLiteral("\U0001F3FB"),
        QStringLiteral("\u200B"),     QStringLiteral("\u0E33"), QStringLiteral("\U000E0020")};
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> clusters(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    ASSERT_TRUE(U_SUCCESS(status));
    std::mt19937 random(1);
    int markers = 0;
    for (int round = 0; round < 5000; ++round) {
        QString text;
        for (int i = 0; i < 8; ++i) {
            text += alphabet[qsizetype(random() % std::size_t(alphabet.size()))];
        }
        const icu::UnicodeString alias(false, QStringView(text).utf16(), int32_t(text.size()));
        clusters->setText(alias);
        std::set<int32_t> boundaries;
        for (int32_t at = clusters->first(); at != icu::BreakIterator::DONE;
             at = clusters->next()) {
            boundaries.insert(at);
        }
        for (int i = 0; i < text.size(); ++i) {
            const bool isMarker =
                text[i] == u'|' && boundaries.contains(i) && boundaries.contains(i + 1);
            markers += isMarker;
            EXPECT_EQ(isCharacterAt(text, i, u'|'), isMarker) << text.toStdString() << " at " << i;
        }
    }
    EXPECT_GT(markers, 100);
}

#include "Controller/TitleCleaning.h"

#include <gtest/gtest.h>

using namespace Talvo;

namespace {

struct TitleCase
{
    const char *name;
    QString input;
    QString cleaned;
};

const TitleCase titleCases[] = {
    {"plain", QStringLiteral("Hava durumu"), QStringLiteral("Hava durumu")},
    {"boldLineBreakAndCode", QStringLiteral("**Kalın**\nve `kod` parçası"),
     QStringLiteral("Kalın ve kod parçası")},
    {"heading", QStringLiteral("# Başlık"), QStringLiteral("Başlık")},
    {"boldHeading", QStringLiteral("# **Başlık**"), QStringLiteral("Başlık")},
    {"curlyQuotes", QStringLiteral("“Tırnaklı başlık” "), QStringLiteral("Tırnaklı başlık")},
    {"straightQuotes", QStringLiteral("\"Düz\""), QStringLiteral("Düz")},
    {"apostrophes", QStringLiteral("'Kesme'"), QStringLiteral("Kesme")},
    {"innerQuotesStay", QStringLiteral("Ali'nin \"evi\" nerede"),
     QStringLiteral("Ali'nin \"evi\" nerede")},
    {"surplusBlanks", QStringLiteral("  çok   boşluklu\t başlık \r "),
     QStringLiteral("çok boşluklu başlık")},
    {"linkKeepsItsText", QStringLiteral("[Bağlantı](https://ornek.test/yol) metni"),
     QStringLiteral("Bağlantı metni")},
    {"strikethrough", QStringLiteral("~~eski~~ yeni"), QStringLiteral("eski yeni")},
    {"labelAndFullStopStay", QStringLiteral("Başlık: Deneme."), QStringLiteral("Başlık: Deneme.")},
    {"exclamationMarkStays", QStringLiteral("Ne oluyor!"), QStringLiteral("Ne oluyor!")},
    {"listMarker", QStringLiteral("- madde"), QStringLiteral("madde")},
    {"severalLines", QStringLiteral("Bir\nİki\n\nÜç"), QStringLiteral("Bir İki Üç")},
    {"leftOverMarkup", QStringLiteral("a*b_c#d`e~f"), QStringLiteral("abcdef")},
    {"onlyAsterisks", QStringLiteral("** **"), QString()},
    {"onlyBlanks", QStringLiteral("  \t "), QString()},
    {"empty", QString(), QString()},
    {"keycapsStay", QStringLiteral("#️⃣ Etiket *️⃣"),
     QStringLiteral("#️⃣ Etiket *️⃣")},
    {"markersWithAMarkStay", QStringLiteral("a_\u0301b*\u0301c~\u200Dd`\uFE0Fe"),
     QStringLiteral("a_\u0301b*\u0301c~\u200Dd`\uFE0Fe")},
    {"markersBesideSuchGo", QStringLiteral("#*#️⃣*_a"), QStringLiteral("#️⃣a")},
    {"singleCurlyQuotesStay", QStringLiteral("‘tek’"), QStringLiteral("‘tek’")},
};

class CleanTitle : public testing::TestWithParam<TitleCase>
{
};

} // namespace

TEST_P(CleanTitle, removesMarkupAndQuotesOnly)
{
    EXPECT_EQ(cleanTitle(GetParam().input), GetParam().cleaned);
}

INSTANTIATE_TEST_SUITE_P(Titles, CleanTitle, testing::ValuesIn(titleCases),
                         [](const auto &test) { return std::string(test.param.name); });

TEST(CleanTitle, cutsNoTitle)
{
    EXPECT_EQ(cleanTitle(QString(100'000, u'a')), QString(100'000, u'a'));
}

TEST(CleanTitle, keepsTheEndOfALongTitle)
{
    const QString words = QStringLiteral("bir iki üç ").repeated(2000).chopped(1);
    EXPECT_EQ(cleanTitle(words), words);
    EXPECT_EQ(cleanTitle(QStringLiteral("# **") + words + QStringLiteral("**")), words);
    const QString emoji = QStringLiteral("a") + QStringLiteral("😀").repeated(10'000);
    EXPECT_EQ(cleanTitle(emoji), emoji);
}

TEST(StoredTitle, isCutToSixtyCharacters)
{
    const QString family = QStringLiteral("👩‍👩‍👧");
    EXPECT_EQ(storedTitle(QString(70, u'a')), QString(60, u'a'));
    EXPECT_EQ(storedTitle(QString(59, u'a') + family + u'b'), QString(59, u'a') + family);
    EXPECT_EQ(storedTitle(QStringLiteral("kısa")), QStringLiteral("kısa"));
}

#include "Markdown/SpokenReply.h"

#include <gtest/gtest.h>

using namespace Talvo;

TEST(SpokenReply, isTheTextOfTheBlocksInTheirOrder)
{
    EXPECT_EQ(
        spokenReply(
            u"# Başlık\n\nBir **vurgulu** söz,\niki satır.\n\n- ilk\n- `ikinci`\n\n---\n\nson"),
        QStringLiteral("Başlık Bir vurgulu söz,\niki satır. ilk ikinci son"));
}

TEST(SpokenReply, keepsTheNumbersOfItems)
{
    EXPECT_EQ(spokenReply(u"3. üç\n4. dört"), QStringLiteral("3. üç 4. dört"));
}

TEST(SpokenReply, takesTextThatLooksLikeAPlaceholderAsItIs)
{
    EXPECT_EQ(spokenReply(u"1. %1 ve %2"), QStringLiteral("1. %1 ve %2"));
}

TEST(SpokenReply, keepsHtmlAsTheScreenDoes)
{
    EXPECT_EQ(spokenReply(u"Şöyle yazılır:\n\n<p>Metin</p>"),
              QStringLiteral("Şöyle yazılır: <p>Metin</p>"));
    EXPECT_EQ(spokenReply(u"<br>"), QStringLiteral("<br>"));
}

TEST(SpokenReply, readsTablesRowByRow)
{
    EXPECT_EQ(spokenReply(u"| A | B |\n|---|---|\n| 1 | **2** |\n| 3 | 4 |"),
              QStringLiteral("A B 1 2 3 4"));
}

TEST(SpokenReply, endsWhereNobodyListensAnyMore)
{
    const QString longReply = QStringLiteral("a").repeated(4'095) + QStringLiteral("😀 son");
    EXPECT_EQ(spokenReply(longReply), QStringLiteral("a").repeated(4'095));
    EXPECT_EQ(spokenReply(u""), QString());
}

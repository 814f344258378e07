#include "Platform/Text.h"

#include <gtest/gtest.h>

using namespace Talvo;

TEST(Text, whitespaceIsTabAndSpaceSeparators)
{
    for (const char32_t c : {U'\t', U' ', U'\u00A0', U'\u2003', U'\u3000'}) {
        EXPECT_TRUE(isWhitespace(c)) << std::hex << uint32_t(c);
        EXPECT_FALSE(isNewline(c)) << std::hex << uint32_t(c);
    }
    for (const char32_t c : {U'\n', U'a', U'\u200B', U'\uFEFF'}) {
        EXPECT_FALSE(isWhitespace(c)) << std::hex << uint32_t(c);
    }
}

TEST(Text, newlines)
{
    for (const char32_t c : {U'\n', U'\v', U'\f', U'\r', U'\u0085', U'\u2028', U'\u2029'}) {
        EXPECT_TRUE(isNewline(c)) << std::hex << uint32_t(c);
    }
}

TEST(Text, trimmingTakesBothEndsOnly)
{
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines(u" \n\u00A0a b\u2028\t"), u"a b");
    EXPECT_EQ(trimmedOfWhitespace(u" \ta\n "), u"a\n");
    EXPECT_TRUE(trimmedOfWhitespaceAndNewlines(u" \r\n ").isEmpty());
}

TEST(Text, blankUtf8)
{
    EXPECT_TRUE(isBlankUtf8(""));
    EXPECT_TRUE(isBlankUtf8(" \n\t\xC2\xA0\xE2\x80\xA8"));
    EXPECT_FALSE(isBlankUtf8(" x "));
    EXPECT_FALSE(isBlankUtf8("\xE2\x80\x8B")); // zero width space is no white space
    EXPECT_FALSE(isBlankUtf8("\xEF\xBB\xBF")); // nor is this one, wherever it stands
    EXPECT_FALSE(isBlankUtf8("\n\xEF\xBB\xBF "));
}

TEST(Text, firstCodeUnitsNeverCutAPair)
{
    const QString text = QStringLiteral("a😀b");
    EXPECT_EQ(firstCodeUnits(text, 0), u"");
    EXPECT_EQ(firstCodeUnits(text, 1), u"a");
    EXPECT_EQ(firstCodeUnits(text, 2), u"a");
    EXPECT_EQ(firstCodeUnits(text, 3), u"a😀");
    EXPECT_EQ(firstCodeUnits(text, 4), text);
    EXPECT_EQ(firstCodeUnits(text, 5), text);
    const QString half = text.first(2);
    EXPECT_EQ(firstCodeUnits(half, 2), half) << "a half without its other half stays";
}

TEST(Text, firstCharactersNeverCutsACluster)
{
    const QString family = QStringLiteral("👩‍👩‍👧");
    EXPECT_EQ(firstCharacters(family + QStringLiteral("ab"), 2), family + QStringLiteral("a"));
    const QString combined = QStringLiteral("e\u0301x");
    EXPECT_EQ(firstCharacters(combined, 1), QStringLiteral("e\u0301"));
    EXPECT_EQ(firstCharacters(QStringLiteral("abc"), 60), QStringLiteral("abc"));
    EXPECT_EQ(firstCharacters(QString(70, u'x'), 60).size(), 60);
}

TEST(Text, canonicalEquality)
{
    EXPECT_TRUE(isCanonicallyEqual(u"\u00E9", u"e\u0301"));
    EXPECT_FALSE(isCanonicallyEqual(u"e", u"\u00E9"));
    EXPECT_TRUE(isCanonicallyEqualUtf8("\xC3\xA9", "e\xCC\x81"));
    EXPECT_FALSE(isCanonicallyEqual(u"a", u"A"));
}

TEST(Text, fromUtf8KeepsEveryCharacter)
{
    EXPECT_EQ(textFromUtf8("\xEF\xBB\xBFığ😀"), QStringLiteral("\uFEFFığ😀"));
    EXPECT_EQ(textFromUtf8(QByteArrayView("a\0b", 3)).size(), 3);
    EXPECT_EQ(textFromUtf8("a\xFF"), QStringLiteral("a\uFFFD"));
    EXPECT_EQ(textFromUtf8(""), QString());
    EXPECT_FALSE(isCanonicallyEqualUtf8("\xEF\xBB\xBFx", "x"));
}

#include "Platform/JsonText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace Talvo;

namespace {

QByteArray string(QByteArrayView text)
{
    QByteArray out;
    appendJsonString(out, text);
    return out;
}

QByteArray number(double value)
{
    QByteArray out;
    appendJsonNumber(out, value);
    return out;
}

} // namespace

TEST(JsonText, escapesWhatMustBeEscaped)
{
    EXPECT_EQ(string("a\"b\\c/d"), R"("a\"b\\c\/d")");
    EXPECT_EQ(string("\b\f\n\r\t"), R"("\b\f\n\r\t")");
    EXPECT_EQ(string(QByteArrayView("\x00\x01\x1f", 3)), R"("\u0000\u0001\u001f")");
}

TEST(JsonText, copiesEverythingElse)
{
    EXPECT_EQ(string("\x7f ış \xE2\x80\xA8 😀"), "\"\x7f ış \xE2\x80\xA8 😀\"");
    EXPECT_EQ(string(""), "\"\"");
}

TEST(JsonText, numbersAreShortestAndPlain)
{
    EXPECT_EQ(number(763637415), "763637415");
    EXPECT_EQ(number(700000000), "700000000");
    EXPECT_EQ(number(763637415.25), "763637415.25");
    EXPECT_EQ(number(0.1), "0.1");
    EXPECT_EQ(number(-0.0), "-0");
    EXPECT_EQ(number(0.0001), "0.0001");
    EXPECT_EQ(number(0.00001), "1e-05");
    EXPECT_EQ(number(9007199254740993.0), "9007199254740992");
    EXPECT_EQ(number(1e20), "1e+20");
}

TEST(JsonText, numbersReadBackAsTheSameDouble)
{
    for (const double value :
         {785432109.123456789, 1.0 / 3, -63114076800.000001, std::numeric_limits<double>::max(),
          std::numeric_limits<double>::denorm_min()}) {
        EXPECT_EQ(std::strtod(number(value).constData(), nullptr), value);
    }
}

TEST(JsonText, findsEveryByteAtEveryPlace)
{
    // Eight bytes are looked at together: no byte may hide or feign its neighbour.
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const QByteArray alone = string(QByteArrayView(&c, 1)).mid(1).chopped(1);
        for (qsizetype place = 0; place < 20; ++place) {
            for (const char neighbour : {'a', '\x20', '\x21', '\x23', '\x2e', '\x30', '\x5b',
                                         '\x5d', '\x7f', '\x80', '\xff'}) {
                QByteArray text(20, neighbour);
                text[place] = c;
                const QByteArray expected = "\"" + QByteArray(place, neighbour) + alone +
                                            QByteArray(19 - place, neighbour) + "\"";
                ASSERT_EQ(string(text), expected) << byte << " at " << place;
            }
        }
    }
}

TEST(JsonText, escapesLongTexts)
{
    for (const qsizetype size : {16383, 16384, 16385, 100000}) {
        EXPECT_EQ(string(QByteArray(size, '\x01')),
                  "\"" + QByteArray("\\u0001").repeated(size) + "\"");
        EXPECT_EQ(string(QByteArray(size, 'x')), "\"" + QByteArray(size, 'x') + "\"");
    }
}

TEST(JsonText, oneByteOrderMarkIsNoPartOfADocument)
{
    EXPECT_EQ(withoutByteOrderMark("\xEF\xBB\xBF{}"), "{}");
    EXPECT_EQ(withoutByteOrderMark("\xEF\xBB\xBF\xEF\xBB\xBF{}"), "\xEF\xBB\xBF{}");
    EXPECT_EQ(withoutByteOrderMark("\xEF\xBB{}"), "\xEF\xBB{}");
    EXPECT_EQ(withoutByteOrderMark("{\"\xEF\xBB\xBF\":0}"), "{\"\xEF\xBB\xBF\":0}");
    EXPECT_EQ(withoutByteOrderMark(""), "");
}

TEST(JsonText, piecesJoinToTheWhole)
{
    const QByteArray text = "ağ/\"\\\n\x1f 😀";
    QByteArray whole;
    appendJsonStringContent(whole, text);
    for (qsizetype cut = 0; cut <= text.size(); ++cut) {
        QByteArray joined;
        appendJsonStringContent(joined, QByteArrayView(text).first(cut));
        appendJsonStringContent(joined, QByteArrayView(text).sliced(cut));
        EXPECT_EQ(joined, whole);
    }
}

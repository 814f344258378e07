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

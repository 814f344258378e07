#include "Completion/CompletionResponse.h"

#include "Completion/JsonBody.h"
#include "Platform/PlatformError.h"

#include <QList>
#include <gtest/gtest.h>

using namespace Talvo;

namespace {

QByteArray nested(std::size_t depth)
{
    const auto count = static_cast<qsizetype>(depth);
    return QByteArray("[").repeated(count) + QByteArray("]").repeated(count);
}

/// A valid body with one more member.
QByteArray bodyWith(const QByteArray &value)
{
    return R"({"more":)" + value + R"(,"choices":[{"message":{"content":"x"}}]})";
}

struct DecodedBody
{
    const char *name;
    QByteArray body;
    QList<QByteArray> contents;
};

const DecodedBody decodedBodies[] = {
    {"noChoices", R"({"choices":[]})", {}},
    {"oneChoice", R"({"choices":[{"message":{"content":"Merhaba"}}]})", {"Merhaba"}},
    {"twoChoices",
     R"({"choices":[{"message":{"content":"a"}},{"message":{"content":"b"}}]})",
     {"a", "b"}},
    {"emptyContent", R"({"choices":[{"message":{"content":""}}]})", {""}},
    {"otherMembers",
     R"({"id":"1","choices":[{"index":0,"message":{"role":"assistant","content":"x","a":[1]},)"
     R"("finish_reason":null}],"usage":{"total_tokens":7,"queue_time":1.5e-3}})",
     {"x"}},
    {"anyWhiteSpace",
     " \r\n\t{ \"choices\" :\n[ { \"message\":{\"content\" : \"x\" } } ] } \n",
     {"x"}},
    {"byteOrderMark", "\xEF\xBB\xBF{\"choices\":[]}", {}},
    {"escapes",
     R"({"choices":[{"message":{"content":"\u00e7\n\ud83d\ude00\/"}}]})",
     {"ç\n\U0001F600/"}},
    {"escapedKey", R"({"ch\u006fices":[]})", {}},
    {"zeroCharacter",
     R"({"choices":[{"message":{"content":"a\u0000b"}}]})",
     {QByteArray("a\0b", 3)}},
    {"integerBeyond64Bits",
     bodyWith("[123456789012345678901234567890,-9223372036854775809]"),
     {"x"}},
    {"numberAboveTheLargestDouble", bodyWith("[1e400,-1.5E+999999999]"), {"x"}},
    {"longNumberAboveTheLargestDouble", bodyWith("1" + QByteArray(400, '0')), {"x"}},
    {"hugeNumberBehindAByteOrderMark", "\xEF\xBB\xBF{\"a\":1e400,\"choices\":[]}", {}},
    {"hugeNumberBesideOneInAText",
     R"({"a":1e400,"choices":[{"message":{"content":"1e400 \"1e400"}}]})",
     {"1e400 \"1e400"}},
    {"nestingBelowTheBound", bodyWith(nested(JsonBody::maximumDepth - 2)), {"x"}},
};

struct UndecodableBody
{
    const char *name;
    QByteArray body;
};

const UndecodableBody undecodableBodies[] = {
    {"empty", ""},
    {"onlyAByteOrderMark", "\xEF\xBB\xBF"},
    {"onlyBlanks", "  \n"},
    {"html", "<html><body>Bad gateway</body></html>"},
    {"choicesMissing", R"({"id":"1"})"},
    {"choicesNull", R"({"choices":null})"},
    {"choicesNoArray", R"({"choices":{"message":{"content":"x"}}})"},
    {"topLevelArray", R"([{"choices":[]}])"},
    {"topLevelString", R"("choices")"},
    {"choiceNoObject", R"({"choices":["x"]})"},
    {"messageMissing", R"({"choices":[{"text":"x"}]})"},
    {"messageNull", R"({"choices":[{"message":null}]})"},
    {"contentMissing", R"({"choices":[{"message":{"role":"assistant"}}]})"},
    {"contentNull", R"({"choices":[{"message":{"content":null}}]})"},
    {"contentNumber", R"({"choices":[{"message":{"content":5}}]})"},
    {"contentList", R"({"choices":[{"message":{"content":[{"text":"x"}]}}]})"},
    {"secondContentNull",
     R"({"choices":[{"message":{"content":"x"}},{"message":{"content":null}}]})"},
    {"keyInOtherCase", R"({"Choices":[]})"},
    {"cutOff", R"({"choices":[{"message":{"content":"Merh)"},
    {"moreBehind", R"({"choices":[]} {})"},
    {"trailingComma", R"({"choices":[],})"},
    {"comment", R"({"choices":[]/**/})"},
    {"rawLineBreak", "{\"choices\":[{\"message\":{\"content\":\"a\nb\"}}]}"},
    {"invalidUtf8", "{\"choices\":[{\"message\":{\"content\":\"a\xff\"}}]}"},
    {"overlongUtf8", "{\"choices\":[{\"message\":{\"content\":\"\xc0\xaf\"}}]}"},
    {"surrogateInUtf8", "{\"choices\":[{\"message\":{\"content\":\"\xed\xa0\x80\"}}]}"},
    {"loneHighSurrogate", R"({"choices":[{"message":{"content":"\ud83d"}}]})"},
    {"loneLowSurrogate", R"({"choices":[{"message":{"content":"\ude00"}}]})"},
    {"unknownEscape", R"({"choices":[{"message":{"content":"\x"}}]})"},
    {"gzip", QByteArray("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03", 10)},
    {"contentHugeNumber", R"({"choices":[{"message":{"content":1e400}}]})"},
    {"notANumberBesideAHugeOne", bodyWith("[1e400,01]")},
    {"fractionMissingBesideAHugeNumber", bodyWith("[1e400,1.]")},
    {"exponentMissingBesideAHugeNumber", bodyWith("[1e400,1e]")},
    {"hugeNumberWithASign", bodyWith("+1e400")},
    {"twoHugeNumbersInOne", bodyWith("1e400-1e400")},
    {"cutOffBehindAHugeNumber", R"({"a":1e400,"choices":[{"message":{"content":"Merh)"},
    {"nestingAtTheBound", bodyWith(nested(JsonBody::maximumDepth))},
    {"hostileNesting", QByteArray("[").repeated(1'000'000)},
    {"hostileObjects", QByteArray(R"({"a":)").repeated(200'000)},
};

} // namespace

TEST(CompletionResponse, decodes)
{
    for (const auto &[name, body, contents] : decodedBodies) {
        SCOPED_TRACE(name);
        CompletionResponse response;
        ASSERT_NO_THROW(response = CompletionResponse::decoded(body));
        ASSERT_EQ(response.choices.size(), static_cast<std::size_t>(contents.size()));
        for (qsizetype i = 0; i < contents.size(); ++i) {
            EXPECT_EQ(response.choices[static_cast<std::size_t>(i)].message.content, contents[i]);
        }
    }
}

TEST(CompletionResponse, refusesToDecode)
{
    for (const auto &[name, body] : undecodableBodies) {
        SCOPED_TRACE(name);
        try {
            (void)CompletionResponse::decoded(body);
            ADD_FAILURE() << "decoded";
        } catch (const PlatformError &error) {
            EXPECT_EQ(error.failure(), PlatformFailure::replyNotDecodable);
            EXPECT_EQ(error.localizedDescription(),
                      QStringLiteral("Sunucunun yanıtı çözümlenemedi."));
        }
    }
}

TEST(CompletionResponse, leavesASharedBodyAlone)
{
    const QByteArray body = R"({"choices":[{"message":{"content":"a\nb"}}]})";
    const QByteArray copy(body.constData(), body.size());
    (void)CompletionResponse::decoded(body);
    EXPECT_EQ(body, copy);
}

TEST(CompletionResponse, decodesALargeBody)
{
    const QByteArray content = QByteArray("ö").repeated(8LL * 1024 * 1024);
    const auto response = CompletionResponse::decoded(R"({"choices":[{"message":{"content":")" +
                                                      content + R"("}}]})");
    EXPECT_TRUE(response.choices.at(0).message.content == content);
}

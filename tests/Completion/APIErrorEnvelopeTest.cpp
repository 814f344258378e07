#include "Completion/APIErrorEnvelope.h"

#include <gtest/gtest.h>

using namespace Talvo;

namespace {

struct ErrorBody
{
    const char *name;
    QByteArray body;
    /// Absent when the body is no envelope.
    std::optional<QString> message;
};

const ErrorBody errorBodies[] = {
    {"message", R"({"error":{"message":"Invalid API Key"}})", QStringLiteral("Invalid API Key")},
    {"furtherMembers",
     R"({"error":{"type":"auth","message":"Anahtar geçersiz","code":401},"id":"x"})",
     QStringLiteral("Anahtar geçersiz")},
    {"emptyMessage", R"({"error":{"message":""}})", QString()},
    {"messageIsNotTrimmed", R"({"error":{"message":" a\n"}})", QStringLiteral(" a\n")},
    {"integerBeyond64Bits", R"({"error":{"message":"a","code":123456789012345678901}})",
     QStringLiteral("a")},
    {"numberAboveTheLargestDouble", R"({"error":{"message":"a","code":1e400}})",
     QStringLiteral("a")},
    {"byteOrderMark", "\xEF\xBB\xBF{\"error\":{\"message\":\"a\"}}", QStringLiteral("a")},
    {"byteOrderMarkInTheMessage", R"({"error":{"message":"\ufeffa"}})", QStringLiteral("\uFEFFa")},
    {"empty", "", std::nullopt},
    {"html", "<html>", std::nullopt},
    {"noError", R"({"message":"a"})", std::nullopt},
    {"errorIsAString", R"({"error":"a"})", std::nullopt},
    {"errorIsNull", R"({"error":null})", std::nullopt},
    {"errorIsAList", R"({"error":[{"message":"a"}]})", std::nullopt},
    {"noMessage", R"({"error":{"code":1}})", std::nullopt},
    {"messageIsANumber", R"({"error":{"message":1}})", std::nullopt},
    {"messageIsNull", R"({"error":{"message":null}})", std::nullopt},
    {"cutOff", R"({"error":{"message":"a")", std::nullopt},
    {"invalidUtf8", "{\"error\":{\"message\":\"\xff\"}}", std::nullopt},
    {"loneSurrogate", R"({"error":{"message":"\ud800"}})", std::nullopt},
    {"hostileNesting", QByteArray("[").repeated(1'000'000), std::nullopt},
};

} // namespace

TEST(APIErrorEnvelope, holdsTheServicesMessageOrNothing)
{
    for (const auto &[name, body, message] : errorBodies) {
        SCOPED_TRACE(name);
        const auto envelope = APIErrorEnvelope::decoded(body);
        ASSERT_EQ(envelope.has_value(), message.has_value());
        if (envelope) {
            EXPECT_EQ(envelope->error.message, *message);
        }
    }
}

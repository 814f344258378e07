#include "Completion/CompletionRequest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

using namespace Talvo;

namespace {

using Role = ChatMessage::Role;

QJsonObject decodedBody(const CompletionRequest &request)
{
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(request.encoded(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << qPrintable(error.errorString());
    return document.object();
}

CompletionRequest requestWith(const QByteArray &content)
{
    return {QStringLiteral("m"),
            requestMessages({ChatMessage::make(Role::user, content)}, std::nullopt), 0.7};
}

} // namespace

TEST(RequestMessages, keepTheConversationsOrderAndContent)
{
    const auto messages = requestMessages(
        {ChatMessage::make(Role::user, "  Merhaba \n"), ChatMessage::make(Role::assistant, "")},
        std::nullopt);
    ASSERT_EQ(messages.size(), 2U);
    EXPECT_EQ(messages[0].role, QLatin1StringView("user"));
    EXPECT_EQ(messages[0].content, "  Merhaba \n");
    EXPECT_EQ(messages[1].role, QLatin1StringView("assistant"));
    EXPECT_EQ(messages[1].content, "");
}

TEST(RequestMessages, beginWithTheSystemPrompt)
{
    const auto messages = requestMessages(
        {ChatMessage::make(Role::user, "a"), ChatMessage::make(Role::assistant, "b")},
        QStringLiteral("Kısa yanıt ver."));
    ASSERT_EQ(messages.size(), 3U);
    EXPECT_EQ(messages[0].role, QLatin1StringView("system"));
    EXPECT_EQ(messages[0].content, "Kısa yanıt ver.");
    EXPECT_EQ(messages[1].content, "a");
}

TEST(RequestMessages, haveNoSystemMessageForAnEmptyPrompt)
{
    const auto messages =
        requestMessages({ChatMessage::make(Role::user, "a")}, std::optional<QString>(QString()));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].role, QLatin1StringView("user"));
}

TEST(RequestMessages, keepABlankPrompt)
{
    const auto messages = requestMessages({}, QStringLiteral(" "));
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].content, " ");
}

TEST(CompletionRequest, isCompactJsonWithItsThreeMembers)
{
    const CompletionRequest request{
        QStringLiteral("llama-3.1-8b-instant"),
        {{QLatin1StringView("system"), "s"}, {QLatin1StringView("user"), "Selam \"dünya\""}},
        0.7};
    EXPECT_EQ(request.encoded(),
              R"({"model":"llama-3.1-8b-instant","messages":[{"role":"system","content":"s"},)"
              R"({"role":"user","content":"Selam \"dünya\""}],"temperature":0.7})");
}

TEST(CompletionRequest, encodesAnEmptyConversation)
{
    const auto body = decodedBody({QStringLiteral("m"), {}, 0.7});
    EXPECT_TRUE(body[u"messages"].isArray());
    EXPECT_TRUE(body[u"messages"].toArray().isEmpty());
    EXPECT_EQ(body[u"temperature"].toDouble(), 0.7);
}

TEST(CompletionRequest, keepsEveryCharacterOfAContent)
{
    QByteArray everyAscii;
    for (char character = 0; character < 0x7f; ++character) {
        everyAscii.append(character);
    }
    const QByteArray contents[] = {
        everyAscii,     "\x7f",    "ğüşöçıİ",  "👩‍👩‍👧‍👦",
        "\xE2\x80\xA8", "\\u0041", "a/b\\c\"d"};
    for (const QByteArray &content : contents) {
        const auto body = decodedBody(requestWith(content));
        const auto message = body[u"messages"].toArray().at(0).toObject();
        EXPECT_EQ(message[u"content"].toString().toUtf8(), content);
    }
}

TEST(CompletionRequest, staysJsonForHalfACharacterInTheModelOrPrompt)
{
    const QString half(QChar(0xd83d));
    const CompletionRequest request{half, requestMessages({}, half), 0.7};
    EXPECT_EQ(decodedBody(request).size(), 3);
}

TEST(CompletionRequest, encodesThousandsOfMessages)
{
    ChatMessageList conversation;
    const QByteArray content = QByteArray("Satır \"bir\"\n").repeated(50);
    for (int i = 0; i < 5000; ++i) {
        conversation.append(ChatMessage::make(i % 2 == 0 ? Role::user : Role::assistant, content));
    }
    const CompletionRequest request{QStringLiteral("m"),
                                    requestMessages(conversation, std::nullopt), 0.7};
    const auto messages = decodedBody(request)[u"messages"].toArray();
    ASSERT_EQ(messages.size(), 5000);
    EXPECT_EQ(messages.at(4999).toObject()[u"content"].toString().toUtf8(), content);
    EXPECT_EQ(messages.at(4999).toObject()[u"role"].toString(), u"assistant");
}

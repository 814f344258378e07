#include "Controller/ControllerFixture.h"

#include "Chat/ChatArchiveCoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

namespace Talvo::Testing {

ControllerTest::ControllerTest()
{
    makeModel();
}

ControllerTest::~ControllerTest()
{
    files->release();
    items->openGate();
    model.reset();
    settle();
}

void ControllerTest::makeModel()
{
    ChatModel::Services services;
    services.client = std::make_unique<GroqClient>(
        network, QUrl(QStringLiteral("https://service.test/openai/v1/chat/completions")));
    services.keychain = std::make_unique<KeychainStore>(items);
    services.archiveStore = std::make_unique<ChatArchiveStore>(files);
    model = std::make_unique<ChatModel>(std::move(services));
}

void ControllerTest::load()
{
    const std::size_t before = saveCount();
    model->startLoadingArchive();
    waitForSaves(before + 1);
}

void ControllerTest::putArchive(const ChatArchive &archive)
{
    files->put(QString::fromUtf16(path), encodeArchive(archive));
}

void ControllerTest::storeKey(const QString &key)
{
    KeychainStore(items).save(key);
}

ChatArchive ControllerTest::saved() const
{
    return decodeArchive(files->saves().back());
}

void ControllerTest::waitForSaves(std::size_t count)
{
    ASSERT_TRUE(waitUntil([&] { return saveCount() >= count; })) << saveCount() << " of " << count;
    settle();
}

void ControllerTest::beginSend(const QString &text)
{
    const std::size_t number = network->count();
    model->setDraft(text);
    model->startSending();
    ASSERT_NE(request(number), nullptr);
}

ScriptedReply *ControllerTest::request(std::size_t number)
{
    const bool isThere = waitUntil([&] { return network->count() > number; });
    EXPECT_TRUE(isThere) << "request " << number << " never came";
    return isThere ? network->replies()[number].data() : nullptr;
}

std::vector<SentMessage> ControllerTest::messagesOf(const ScriptedReply *reply)
{
    const QJsonObject body = QJsonDocument::fromJson(reply->requestBody()).object();
    std::vector<SentMessage> messages;
    for (const auto &value : body[QStringLiteral("messages")].toArray()) {
        const QJsonObject message = value.toObject();
        messages.push_back({message[QStringLiteral("role")].toString(),
                            message[QStringLiteral("content")].toString()});
    }
    return messages;
}

QString ControllerTest::modelOf(const ScriptedReply *reply)
{
    const QJsonObject body = QJsonDocument::fromJson(reply->requestBody()).object();
    return body[QStringLiteral("model")].toString();
}

void ControllerTest::answer(ScriptedReply *reply, const QString &text)
{
    const QJsonObject message{{QStringLiteral("content"), text}};
    const QJsonArray choices{QJsonObject{{QStringLiteral("message"), message}}};
    reply->answer(200, QJsonDocument(QJsonObject{{QStringLiteral("choices"), choices}}).toJson());
}

void ControllerTest::waitUntilIdle()
{
    ASSERT_TRUE(waitUntil([this] { return !model->isSending(); }));
    settle();
}

void ControllerTest::waitUntilNothingIsUnderWay()
{
    ASSERT_TRUE(waitUntilAtRest(
        [this] { return !model->isLoadingArchive() && !model->isSavingArchive(); }));
}

ChatSession session(const QString &title, double updatedAt)
{
    ChatSession made;
    made.id = QUuid::createUuid();
    made.title = title;
    made.messages = {ChatMessage::make(ChatMessage::Role::assistant, title.toUtf8() + " merhaba")};
    made.updatedAt = {updatedAt};
    return made;
}

ChatArchive threeSessions()
{
    return {{session(QStringLiteral("Bir"), 300), session(QStringLiteral("İki"), 200),
             session(QStringLiteral("Üç"), 100)},
            std::nullopt,
            QString(),
            QStringLiteral("llama-3.3-70b-versatile")};
}

QStringList titles(const std::vector<ChatSession> &sessions)
{
    QStringList all;
    for (const ChatSession &one : sessions) {
        all.append(one.title);
    }
    return all;
}

} // namespace Talvo::Testing

#include "ChatFixture.h"

#include "Chat/ChatArchiveCoding.h"
#include "support/EventLoop.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Talvo::Testing {

namespace {

constexpr auto archivePath = u"/data/Talvo/chat-archive.json";

ChatSession session(const QVariantMap &conversation, double updatedAt)
{
    ChatMessageList messages;
    auto role = ChatMessage::Role::assistant;
    const QStringList texts = conversation[QStringLiteral("messages")].toStringList();
    for (const QString &text : texts) {
        messages.append(ChatMessage::make(role, text.toUtf8()));
        role = role == ChatMessage::Role::user ? ChatMessage::Role::assistant
                                               : ChatMessage::Role::user;
    }
    return {QUuid::createUuid(),
            conversation[QStringLiteral("title")].toString(),
            std::move(messages),
            {updatedAt}};
}

InMemoryItemOperations::Operation operationNamed(const QString &name)
{
    using Operation = InMemoryItemOperations::Operation;
    if (name == u"read") {
        return Operation::copyMatching;
    }
    return name == u"save" ? Operation::update : Operation::remove;
}

} // namespace

ChatFixture::ChatFixture(QObject *parent)
    : QObject(parent)
{
    ChatModel::Services services;
    services.client = std::make_unique<GroqClient>(
        m_network, QUrl(QStringLiteral("https://service.test/openai/v1/chat/completions")));
    services.keychain = std::make_unique<KeychainStore>(m_items);
    services.archiveStore = std::make_unique<ChatArchiveStore>(m_files);
    m_model = std::make_unique<ChatModel>(std::move(services));
}

ChatFixture::~ChatFixture()
{
    m_items->openGate();
    m_files->release();
    m_model.reset();
    settle();
}

KeychainHandle ChatFixture::keychain() const
{
    return {KeychainStore(m_items)};
}

void ChatFixture::load(const QVariantList &conversations)
{
    ChatArchive archive;
    double updatedAt = 1'000'000;
    for (const QVariant &conversation : conversations) {
        archive.sessions.push_back(session(conversation.toMap(), updatedAt--));
    }
    archive.selectedModel = ChatModel::availableModels().constFirst();
    m_files->put(QString::fromUtf16(archivePath), encodeArchive(archive));
    m_model->startLoadingArchive();
    waitForLoad();
}

void ChatFixture::waitForLoad()
{
    if (!waitUntil([this] { return !m_files->saves().empty() && !m_model->isLoadingArchive(); })) {
        qFatal("The archive was never loaded.");
    }
    settle();
}

QStringList ChatFixture::titles() const
{
    QStringList titles;
    for (const ChatSession &one : m_model->sessions()) {
        titles.append(one.title);
    }
    return titles;
}

QStringList ChatFixture::messages() const
{
    QStringList texts;
    for (const ChatMessage &message : m_model->selectedMessages()) {
        texts.append(QString::fromUtf8(message.content));
    }
    return texts;
}

QUuid ChatFixture::idAt(int index) const
{
    return m_model->sessions().at(static_cast<std::size_t>(index)).id;
}

void ChatFixture::waitUntilAtRest() const
{
    const auto isAtRest = [this] {
        return !m_model->isLoadingArchive() && !m_model->isSavingArchive();
    };
    if (!Testing::waitUntilAtRest(isAtRest)) {
        qFatal("Something that was started has not ended.");
    }
}

void ChatFixture::fillDisk() const
{
    m_files->breakWriting(PlatformFailure::diskFull);
}

int ChatFixture::saveCount() const
{
    waitUntilAtRest();
    return static_cast<int>(m_files->saves().size());
}

void ChatFixture::storeKey(const QString &key) const
{
    KeychainStore(m_items).save(key);
}

QString ChatFixture::storedKey() const
{
    const auto item =
        m_items->item({QStringLiteral("com.talvo.groq"), QStringLiteral("groq-api-key")});
    return QString::fromUtf8(item.value_or(QByteArray()));
}

void ChatFixture::failKeychain(const QString &operation, int status) const
{
    m_items->script(operationNamed(operation), status);
}

QString ChatFixture::keychainFailure(int status) const
{
    return KeychainStore::KeychainError::unhandled(status).localizedDescription();
}

void ChatFixture::answer(int request, const QString &text) const
{
    const QJsonObject message{{QStringLiteral("content"), text}};
    const QJsonArray choices{QJsonObject{{QStringLiteral("message"), message}}};
    const QJsonObject body{{QStringLiteral("choices"), choices}};
    m_network->replies()
        .at(static_cast<std::size_t>(request))
        ->answer(200, QJsonDocument(body).toJson());
}

void ChatFixture::refuse(int request, int status, const QString &message) const
{
    const QJsonObject error{{QStringLiteral("message"), message}};
    const QJsonObject body{{QStringLiteral("error"), error}};
    m_network->replies()
        .at(static_cast<std::size_t>(request))
        ->answer(status, QJsonDocument(body).toJson());
}

} // namespace Talvo::Testing

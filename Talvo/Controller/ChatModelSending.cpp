// The part of ChatModel that sends a message: one exchange with the service and its two follow-up
// requests.

#include "Controller/ChatModel.h"

#include "Controller/Prompts.h"
#include "Controller/RunningTask.h"
#include "Controller/TitleCleaning.h"
#include "Platform/SecretMemory.h"
#include "Platform/Text.h"

#include <QCoroFuture>
#include <QtConcurrentRun>

#include <algorithm>
#include <utility>

namespace Talvo {

namespace {

/// What is stored as the title for a reply to the title request; empty when nothing is left of it.
QString titleFromReply(const QByteArray &reply)
{
    return storedTitle(cleanTitle(textFromUtf8(reply)));
}

} // namespace

// A parameter of a coroutine is there until whoever awaits it has gone on, and perhaps ended: so
// these take the key out of theirs, and none of them keeps a copy when sendText() wipes the last
// one.
//
// What is awaited has a name in all of these coroutines: gcc 12 destroys some temporaries of an
// expression with co_await twice.

QCoro::Task<> ChatModel::send()
{
    const QString text = trimmedOfWhitespaceAndNewlines(m_draft).toString();
    if (text.isEmpty() || m_isSending || m_isPreparingSend || !m_selectedChatID) {
        co_return;
    }
    if (isDeferredByLoad([this, text] { sendText(text, std::nullopt); })) {
        setDraft({});
        co_return;
    }
    QCoro::Task<> sending = sendText(text, m_draft);
    co_await sending;
}

/// @param composerText the untrimmed text as it stands in the composer, absent when the text was
///                     taken from there before, while the archive was being loaded
QCoro::Task<> ChatModel::sendText(QString text, std::optional<QString> composerText)
{
    const RunningTask task(this);
    const QPointer<ChatModel> self(this);
    if (m_isSending || m_isPreparingSend || !m_selectedChatID) {
        giveBackToDraft(text);
        co_return;
    }
    const QUuid sessionID = *m_selectedChatID;
    clearErrorMessage();
    m_isPreparingSend = true;
    std::optional<QString> apiKey;
    {
        // Ends, with a copy that it may hold, before this one is wiped.
        QCoro::Task<std::optional<QString>> reading = readKey();
        apiKey = co_await reading;
    }
    // The coroutines below share this copy and are done with it by then.
    const WipedAtEnd wiped(apiKey);
    if (!self) {
        co_return;
    }
    // Without a key, or when the conversation was deleted while a keyring asked for its password,
    // the text stays with the user.
    if (!apiKey || findSession(sessionID) == m_sessions.end()) {
        m_isPreparingSend = false;
        if (!composerText) {
            giveBackToDraft(text);
        }
        co_return;
    }
    if (composerText) {
        takeFromDraft(*composerText);
    }
    const ChatMessage userMessage = ChatMessage::make(ChatMessage::Role::user, text.toUtf8());
    QCoro::Task<> saving = appendAndSave(userMessage, sessionID);
    co_await saving;
    if (!self) {
        co_return;
    }
    // Until here another send would come into its requests beside this one: no flag is up yet.
    m_isPreparingSend = false;
    if (!m_isClosing) {
        QCoro::Task<> exchanging = exchange(sessionID, userMessage, *apiKey);
        co_await exchanging;
    }
}

/// The stored key; absent, with the reason in errorMessage(), when there is none to use.
QCoro::Task<std::optional<QString>> ChatModel::readKey()
{
    const QPointer<ChatModel> self(this);
    std::optional<QString> apiKey;
    QString failure = QStringLiteral("Önce Ayarlar’dan Groq API anahtarını kaydet.");
    try {
        // Not on this thread: a keyring may ask the user for its password before it answers.
        QFuture<std::optional<QString>> reading = m_keychain->startReading();
        apiKey = co_await reading;
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
    }
    if (apiKey && !apiKey->isEmpty()) {
        co_return apiKey;
    }
    if (self) {
        setErrorMessage(failure);
    }
    co_return std::nullopt;
}

QCoro::Task<> ChatModel::exchange(QUuid sessionID, ChatMessage userMessage, QString apiKey)
{
    const QString key = std::exchange(apiKey, {});
    const QPointer<ChatModel> self(this);
    const std::optional<ChatSession> session = sessionWithID(sessionID);
    if (!session) {
        co_return;
    }
    const ChatMessageList history = session->messages;
    setIsSending(true);
    setIsAwaitingResponse(true);

    QByteArray reply;
    std::optional<QString> failure;
    try {
        QCoro::Task<QByteArray> completion =
            m_client->complete(history, key, m_selectedModel, Prompts::system(m_memory));
        reply = co_await completion;
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
    }
    if (!self || m_isClosing) {
        co_return;
    }
    if (failure) {
        finishSending();
        setErrorMessage(failure);
        co_return;
    }

    const ChatMessage assistantMessage = ChatMessage::make(ChatMessage::Role::assistant, reply);
    QCoro::Task<> saving = appendAndSave(assistantMessage, sessionID);
    setIsAwaitingResponse(false);
    co_await saving;
    if (!self || m_isClosing) {
        co_return;
    }
    ChatMessageList conversation = history;
    conversation.append(assistantMessage);
    QCoro::Task<> titling = generateTitleIfNeeded(sessionID, conversation, key);
    co_await titling;
    if (!self || m_isClosing) {
        co_return;
    }
    QCoro::Task<> remembering = updateMemory(userMessage, assistantMessage, key);
    co_await remembering;
    if (self) {
        finishSending();
    }
}

QCoro::Task<> ChatModel::generateTitleIfNeeded(QUuid sessionID, ChatMessageList conversation,
                                               QString apiKey)
{
    const QString key = std::exchange(apiKey, {});
    const QPointer<ChatModel> self(this);
    const auto hasDefaultTitle = [this, sessionID] {
        const auto session = findSession(sessionID);
        return session != m_sessions.end() && session->title == defaultSessionTitle();
    };
    if (!hasDefaultTitle()) {
        co_return;
    }
    QString title;
    try {
        QCoro::Task<QByteArray> completion =
            m_client->complete(conversation, key, m_selectedModel, Prompts::titleInstruction());
        QByteArray reply = co_await completion;
        if (!self || m_isClosing) {
            co_return;
        }
        // Not on this thread: nothing bounds what a model answers, and a megabyte takes longer to
        // clean than the window takes for several frames.
        QFuture<QString> cleaning = QtConcurrent::run(titleFromReply, std::move(reply));
        title = co_await cleaning;
    } catch (const std::exception &) {
        // A conversation without a title of its own is no reason to disturb the user; the next
        // exchange asks again.
        co_return;
    }
    if (!self || m_isClosing) {
        co_return;
    }
    // The user may have renamed or lost the conversation meanwhile: that choice stands.
    if (title.isEmpty() || !hasDefaultTitle()) {
        co_return;
    }
    if (std::exchange(findSession(sessionID)->title, title) != title) {
        Q_EMIT sessionsChanged();
    }
    QCoro::Task<> saving = saveArchive();
    co_await saving;
}

QCoro::Task<> ChatModel::updateMemory(ChatMessage userMessage, ChatMessage assistantMessage,
                                      QString apiKey)
{
    const QString key = std::exchange(apiKey, {});
    const QPointer<ChatModel> self(this);
    const ChatMessageList request{ChatMessage::make(
        ChatMessage::Role::user, Prompts::memoryRequest(m_memory, userMessage, assistantMessage))};
    QByteArray reply;
    try {
        QCoro::Task<QByteArray> completion =
            m_client->complete(request, key, m_selectedModel, Prompts::memoryInstruction());
        reply = co_await completion;
    } catch (const std::exception &) {
        // The memory keeps its value; the exchange itself is already saved.
        co_return;
    }
    if (!self || m_isClosing) {
        co_return;
    }
    const QString text = trimmedOfWhitespaceAndNewlines(textFromUtf8(reply)).toString();
    setMemory(isCanonicallyEqual(text, Prompts::emptyMemoryMarker()) ? QString() : text);
    QCoro::Task<> saving = saveArchive();
    co_await saving;
}

/// Gives back the save, which has begun before anything is told to the views: however long they
/// take to draw the message, it is on its way to the disk.
QCoro::Task<> ChatModel::appendAndSave(const ChatMessage &message, const QUuid &sessionID)
{
    const auto session = findSession(sessionID);
    if (session == m_sessions.end()) {
        return saveArchive();
    }
    session->messages.append(message);
    session->updatedAt = Instant::now();
    std::rotate(m_sessions.begin(), session, session + 1);
    QCoro::Task<> saving = saveArchive();
    Q_EMIT sessionsChanged();
    if (m_selectedChatID == sessionID) {
        Q_EMIT selectedMessagesChanged();
        if (message.role == ChatMessage::Role::assistant) {
            Q_EMIT replyArrived(textFromUtf8(message.content));
        }
    }
    return saving;
}

/// Empties the composer of the text that is being sent, and of that only: what was typed while the
/// key was read stays.
void ChatModel::takeFromDraft(const QString &composerText)
{
    if (m_draft.startsWith(composerText)) {
        setDraft(m_draft.sliced(composerText.size()));
    }
}

/// Puts a text that could not be sent in front of whatever the composer holds by now.
void ChatModel::giveBackToDraft(const QString &text)
{
    setDraft(m_draft.isEmpty() ? text : text + u'\n' + m_draft);
}

void ChatModel::finishSending()
{
    setIsSending(false);
    setIsAwaitingResponse(false);
}

} // namespace Talvo

#include "Controller/ChatModel.h"

#include "Controller/ArchiveNormalization.h"
#include "Controller/Prompts.h"
#include "Controller/RunningTask.h"
#include "Controller/TitleCleaning.h"
#include "Platform/Text.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QLoggingCategory>
#include <QThread>
#include <QtConcurrent>

#include <algorithm>
#include <utility>

namespace Talvo {

namespace {

Q_LOGGING_CATEGORY(chatModelLog, "Talvo/ChatModel")

bool isMainThread()
{
    const QCoreApplication *const application = QCoreApplication::instance();
    return !application || application->thread() == QThread::currentThread();
}

template <class Service>
std::unique_ptr<Service> orDefault(std::unique_ptr<Service> service)
{
    return service ? std::move(service) : std::make_unique<Service>();
}

} // namespace

ChatModel::ChatModel(QObject *parent)
    : ChatModel(Services{}, parent)
{
}

ChatModel::ChatModel(Services services, QObject *parent)
    : QObject(parent)
    , m_client(orDefault(std::move(services.client)))
    , m_keychain(orDefault(std::move(services.keychain)))
    , m_archiveStore(orDefault(std::move(services.archiveStore)))
{
    insertFreshSession(Prompts::firstGreeting());
}

ChatModel::~ChatModel()
{
    if (!isMainThread()) {
        qCCritical(chatModelLog, "Torn down on another thread than the main one.");
    }
    // A cancelled request resumes its coroutine at once: that must not begin the next one.
    m_isClosing = true;
    m_client->cancelRequests();
}

QStringList ChatModel::availableModels()
{
    return {QStringLiteral("llama-3.3-70b-versatile"), QStringLiteral("llama-3.1-8b-instant"),
            QStringLiteral("openai/gpt-oss-120b")};
}

const ChatMessageList &ChatModel::selectedMessages() const
{
    static const ChatMessageList none;
    if (!m_selectedChatID) {
        return none;
    }
    const auto session = std::ranges::find(m_sessions, *m_selectedChatID, &ChatSession::id);
    return session == m_sessions.end() ? none : session->messages;
}

// ---- loading and saving ----------------------------------------------------------------------

QCoro::Task<> ChatModel::loadArchive()
{
    if (m_loadPhase != LoadPhase::notStarted) {
        co_return;
    }
    setLoadPhase(LoadPhase::loading);
    const RunningTask task(this);
    const QPointer<ChatModel> self(this);
    std::optional<ChatArchive> archive;
    std::optional<QString> failure;
    try {
        // Awaited for its end only: a result that is awaited would be copied, on this thread.
        QFuture<std::optional<ChatArchive>> loading = m_archiveStore->load();
        const QFuture<void> loaded(loading);
        co_await loaded;
        archive = loading.takeResult();
        if (self && archive) {
            QFuture<ChatArchive> normalizing =
                QtConcurrent::run(normalizedArchive, std::move(*archive));
            const QFuture<void> normalized(normalizing);
            co_await normalized;
            archive = normalizing.takeResult();
        }
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
    }
    if (!self) {
        co_return;
    }
    if (archive) {
        adopt(std::move(*archive));
    }
    setLoadPhase(LoadPhase::ended);
    if (failure) {
        const std::optional<QString> before = m_errorMessage;
        runDeferredOperations();
        // Behind them, since some begin with taking an error away: the user is to learn why the
        // conversations are missing. An error that one of them has met by now is later, and stays.
        if (!m_errorMessage || m_errorMessage == before) {
            setErrorMessage(failure);
        }
        co_return;
    }
    // Its snapshot is taken here, before the deferred operations change anything.
    saveInBackground();
    runDeferredOperations();
}

void ChatModel::adopt(ChatArchive archive)
{
    setMemory(archive.memory);
    if (std::exchange(m_selectedModel, archive.selectedModel) != archive.selectedModel) {
        Q_EMIT selectedModelChanged();
    }
    if (archive.sessions.empty()) {
        return;
    }
    m_sessions = std::move(archive.sessions);
    Q_EMIT sessionsChanged();
    setSelectedChatID(archive.selectedSessionID);
}

ChatArchive ChatModel::snapshot() const
{
    return {m_sessions, m_selectedChatID, m_memory, m_selectedModel};
}

QCoro::Task<> ChatModel::saveArchive()
{
    const RunningTask task(this);
    const QPointer<ChatModel> self(this);
    std::optional<QString> failure;
    countSaves(1);
    try {
        QFuture<void> saving = m_archiveStore->save(snapshot());
        co_await saving;
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
    }
    if (!self) {
        co_return;
    }
    countSaves(-1);
    if (failure) {
        setErrorMessage(failure);
    }
}

bool ChatModel::isDeferredByLoad(std::function<void()> operation)
{
    if (!isLoadingArchive()) {
        return false;
    }
    m_deferredOperations.push_back(std::move(operation));
    return true;
}

void ChatModel::runDeferredOperations()
{
    for (const auto &operation : std::exchange(m_deferredOperations, {})) {
        operation();
    }
}

// ---- session operations ----------------------------------------------------------------------

void ChatModel::newChat()
{
    if (m_isSending) {
        return;
    }
    clearDraftAndError();
    if (!isDeferredByLoad([this] { insertNewChat(); })) {
        insertNewChat();
    }
}

void ChatModel::insertNewChat()
{
    insertFreshSession(Prompts::newChatGreeting());
    saveInBackground();
}

void ChatModel::insertFreshSession(const QString &greeting)
{
    ChatSession session;
    session.id = QUuid::createUuid();
    session.title = defaultSessionTitle();
    session.messages = {ChatMessage::make(ChatMessage::Role::assistant, greeting.toUtf8())};
    session.updatedAt = Instant::now();
    const QUuid id = session.id;
    m_sessions.insert(m_sessions.begin(), std::move(session));
    Q_EMIT sessionsChanged();
    setSelectedChatID(id);
}

void ChatModel::selectChat(const QUuid &id)
{
    if (m_isSending || findSession(id) == m_sessions.end()) {
        return;
    }
    clearDraftAndError();
    const auto select = [this, id] {
        if (findSession(id) != m_sessions.end()) {
            setSelectedChatID(id);
            saveInBackground();
        }
    };
    if (!isDeferredByLoad(select)) {
        select();
    }
}

void ChatModel::renameChat(const QUuid &id, const QString &title)
{
    if (isDeferredByLoad([this, id, title] { renameChat(id, title); })) {
        return;
    }
    const QString cleaned = cleanTitle(title);
    const auto session = findSession(id);
    if (cleaned.isEmpty() || session == m_sessions.end()) {
        return;
    }
    const QString stored = storedTitle(cleaned);
    if (std::exchange(session->title, stored) != stored) {
        Q_EMIT sessionsChanged();
    }
    saveInBackground();
}

void ChatModel::deleteChat(const QUuid &id)
{
    if (m_isSending || isDeferredByLoad([this, id] { deleteChat(id); })) {
        return;
    }
    const auto session = findSession(id);
    if (session == m_sessions.end()) {
        return;
    }
    const bool wasSelected = m_selectedChatID == id;
    m_sessions.erase(session);
    Q_EMIT sessionsChanged();
    if (m_sessions.empty()) {
        setSelectedChatID(std::nullopt);
    } else if (wasSelected) {
        setSelectedChatID(m_sessions.front().id);
    }
    if (wasSelected && m_selectedChatID == id) {
        // An archive may hold another conversation with this identifier.
        Q_EMIT selectedMessagesChanged();
    }
    if (wasSelected) {
        clearDraftAndError();
    }
    saveInBackground();
}

void ChatModel::selectModel(const QString &model)
{
    if (isDeferredByLoad([this, model] { selectModel(model); })) {
        return;
    }
    if (!availableModels().contains(model) || model == m_selectedModel) {
        return;
    }
    m_selectedModel = model;
    Q_EMIT selectedModelChanged();
    saveInBackground();
}

std::vector<ChatSession>::iterator ChatModel::findSession(const QUuid &id)
{
    return std::ranges::find(m_sessions, id, &ChatSession::id);
}

std::optional<ChatSession> ChatModel::sessionWithID(const QUuid &id) const
{
    const auto session = std::ranges::find(m_sessions, id, &ChatSession::id);
    return session == m_sessions.end() ? std::nullopt : std::optional(*session);
}

// ---- life ------------------------------------------------------------------------------------

void ChatModel::close()
{
    m_isClosing = true;
    m_client->cancelRequests();
    m_keychain->stopPrompts();
    announceClosedIfIdle();
}

void ChatModel::announceClosedIfIdle()
{
    if (m_isClosing && m_runningTasks == 0 && !std::exchange(m_hasAnnouncedEnd, true)) {
        Q_EMIT closed();
    }
}

// ---- properties ------------------------------------------------------------------------------

QUuid ChatModel::selectedChatIDOrNull() const
{
    return m_selectedChatID.value_or(QUuid());
}

void ChatModel::setSelectedChatID(const std::optional<QUuid> &id)
{
    if (std::exchange(m_selectedChatID, id) != id) {
        Q_EMIT selectedChatIDChanged();
        Q_EMIT selectedMessagesChanged();
    }
}

void ChatModel::setDraft(const QString &draft)
{
    if (m_draft == draft) {
        return;
    }
    m_draft = draft;
    Q_EMIT draftChanged();
    updateCanSend();
}

void ChatModel::setErrorMessage(const std::optional<QString> &message)
{
    if (m_errorMessage == message) {
        return;
    }
    m_errorMessage = message;
    Q_EMIT errorMessageChanged();
}

void ChatModel::clearDraftAndError()
{
    setDraft({});
    clearErrorMessage();
}

void ChatModel::setIsSending(bool isSending)
{
    if (std::exchange(m_isSending, isSending) != isSending) {
        Q_EMIT isSendingChanged();
        updateCanSend();
    }
}

void ChatModel::setIsAwaitingResponse(bool isAwaiting)
{
    if (std::exchange(m_isAwaitingResponse, isAwaiting) != isAwaiting) {
        Q_EMIT isAwaitingResponseChanged();
    }
}

void ChatModel::setMemory(const QString &memory)
{
    if (std::exchange(m_memory, memory) != memory) {
        Q_EMIT memoryChanged();
    }
}

void ChatModel::setLoadPhase(LoadPhase phase)
{
    const bool wasLoading = isLoadingArchive();
    m_loadPhase = phase;
    if (isLoadingArchive() != wasLoading) {
        Q_EMIT isLoadingArchiveChanged();
    }
}

void ChatModel::countSaves(int change)
{
    const bool wasSaving = isSavingArchive();
    m_savesUnderWay += change;
    if (isSavingArchive() != wasSaving) {
        Q_EMIT isSavingArchiveChanged();
    }
}

void ChatModel::updateCanSend()
{
    const bool canSend = !m_isSending && !trimmedOfWhitespaceAndNewlines(m_draft).isEmpty();
    if (std::exchange(m_canSend, canSend) != canSend) {
        Q_EMIT canSendChanged();
    }
}

} // namespace Talvo

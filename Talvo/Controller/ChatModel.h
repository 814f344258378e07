#pragma once

#include "Chat/ChatArchiveStore.h"
#include "Completion/GroqClient.h"
#include "Keychain/KeychainStore.h"

#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Talvo {

/// The one controller of the application: it owns the conversations, the selection, the composer's
/// text, the sending flags, the error text, the model choice and the memory, drives every exchange
/// and is the only writer of the archive.
///
/// Confined to the GUI thread. Asynchronous operations suspend only while the store, the keychain,
/// the service or a worker works (which puts a loaded archive in order and cleans a title that the
/// service gives), and never resume into a controller that is gone. A property notifies only when
/// its value really changes.
class ChatModel : public QObject
{
    Q_OBJECT
    /// selectedChatID(), null for none.
    Q_PROPERTY(QUuid selectedChatID READ selectedChatIDOrNull NOTIFY selectedChatIDChanged)
    /// True when a conversation is selected.
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectedChatIDChanged)
    /// The composer's text.
    Q_PROPERTY(QString draft READ draft WRITE setDraft NOTIFY draftChanged)
    /// The model that the next requests name.
    Q_PROPERTY(QString selectedModel READ selectedModel NOTIFY selectedModelChanged)
    Q_PROPERTY(bool canSend READ canSend NOTIFY canSendChanged)
    Q_PROPERTY(bool isSending READ isSending NOTIFY isSendingChanged)
    Q_PROPERTY(bool isAwaitingResponse READ isAwaitingResponse NOTIFY isAwaitingResponseChanged)
    /// True from the start of loadArchive() to its end.
    Q_PROPERTY(bool isLoadingArchive READ isLoadingArchive NOTIFY isLoadingArchiveChanged)
    /// True while a save that was started has not ended.
    Q_PROPERTY(bool isSavingArchive READ isSavingArchive NOTIFY isSavingArchiveChanged)
    /// errorMessage(), empty when there is nothing to show.
    Q_PROPERTY(QString errorMessage READ errorMessageOrEmpty NOTIFY errorMessageChanged)
    /// True when there is an error to show, even one with an empty text.
    Q_PROPERTY(bool hasErrorMessage READ hasErrorMessage NOTIFY errorMessageChanged)
    Q_PROPERTY(QStringList availableModels READ availableModels CONSTANT)

public:
    /// The services that the controller drives; an absent one is replaced by its default.
    struct Services
    {
        std::unique_ptr<GroqClient> client;             ///< talks to the service
        std::unique_ptr<KeychainStore> keychain;        ///< where the key is read for every send
        std::unique_ptr<ChatArchiveStore> archiveStore; ///< loads and saves the archive
    };

    /// With the defaults of all three services, and one fresh session with the first greeting.
    explicit ChatModel(QObject *parent = nullptr);
    /// With these services, and one fresh session with the first greeting.
    explicit ChatModel(Services services, QObject *parent = nullptr);
    /// Waits for the saves that were started. On the main thread; elsewhere it is a fault, which
    /// the log tells under "Talvo/ChatModel".
    ~ChatModel() override;
    Q_DISABLE_COPY_MOVE(ChatModel)

    /// All conversations, the most recently active one first.
    [[nodiscard]] const std::vector<ChatSession> &sessions() const { return m_sessions; }
    /// The identifier of the selected session, absent for none.
    [[nodiscard]] const std::optional<QUuid> &selectedChatID() const { return m_selectedChatID; }
    /// The messages of the selected session, none without one.
    [[nodiscard]] const ChatMessageList &selectedMessages() const;
    [[nodiscard]] const QString &draft() const { return m_draft; }
    [[nodiscard]] const QString &selectedModel() const { return m_selectedModel; }
    /// The draft is not blank and no send is running.
    [[nodiscard]] bool canSend() const { return m_canSend; }
    /// A send is in its requests; new sends and all session operations but rename are refused.
    [[nodiscard]] bool isSending() const { return m_isSending; }
    /// The reply itself is still outstanding.
    [[nodiscard]] bool isAwaitingResponse() const { return m_isAwaitingResponse; }
    [[nodiscard]] bool isLoadingArchive() const { return m_loadPhase == LoadPhase::loading; }
    [[nodiscard]] bool isSavingArchive() const { return m_savesUnderWay > 0; }
    /// The one error text that the window shows, absent when there is nothing to show.
    [[nodiscard]] const std::optional<QString> &errorMessage() const { return m_errorMessage; }
    /// The long-term memory about the user, empty when nothing is remembered.
    [[nodiscard]] const QString &memory() const { return m_memory; }
    /// The models offered, the default first; never saved.
    [[nodiscard]] static QStringList availableModels();

    void setDraft(const QString &draft);
    /// Sets the one error text, or makes it absent.
    void setErrorMessage(const std::optional<QString> &message);
    /// Makes the error text absent: the alert was dismissed.
    Q_INVOKABLE void clearErrorMessage() { setErrorMessage(std::nullopt); }

    /// Begins to read a large archive for a loadArchive() that follows. Changes nothing that can be
    /// seen.
    void readArchiveAhead() { m_archiveStore->readAhead(); }

    /// Loads the archive, once in the life of this object. What is asked for meanwhile takes effect
    /// when the load has ended, so that no save can replace an archive that is still being read.
    QCoro::Task<> loadArchive();

    /// Sends the draft to the selected conversation and runs the title and memory requests after
    /// the reply. Problems are reported through errorMessage() only.
    QCoro::Task<> send();

    /// Starts loadArchive() without waiting for it.
    Q_INVOKABLE void startLoadingArchive() { loadArchive(); }
    /// Starts send() without waiting for it.
    Q_INVOKABLE void startSending() { send(); }

    /// Adds a conversation at the top and selects it. Refused while a send is running.
    Q_INVOKABLE void newChat();
    /// Selects a conversation and empties the draft. Refused while a send is running; an unknown
    /// identifier does nothing.
    Q_INVOKABLE void selectChat(const QUuid &id);
    /// Gives a conversation the first characters of the cleaned title, if any are left.
    Q_INVOKABLE void renameChat(const QUuid &id, const QString &title);
    /// Removes a conversation; the top one is selected when it was the selected one. Refused while
    /// a send is running.
    Q_INVOKABLE void deleteChat(const QUuid &id);
    /// Chooses one of availableModels() for the requests that start from now on.
    Q_INVOKABLE void selectModel(const QString &model);

    /// The window is gone: stops the requests under way. closed() follows as soon as every task has
    /// ended and every save that was started is on disk.
    void close();

Q_SIGNALS:
    /// sessions() has changed in anything: order, titles, messages.
    void sessionsChanged();
    void selectedChatIDChanged();
    /// selectedMessages() has changed: another conversation, or a message more.
    void selectedMessagesChanged();
    void draftChanged();
    void selectedModelChanged();
    void canSendChanged();
    void isSendingChanged();
    void isAwaitingResponseChanged();
    void isLoadingArchiveChanged();
    void isSavingArchiveChanged();
    void errorMessageChanged();
    /// memory() has changed.
    void memoryChanged();
    /// A reply was added to the selected conversation (for assistive technology).
    void replyArrived(const QString &text);
    /// After close(), once: nothing is running any more and everything is saved. The process may
    /// end.
    void closed();

private:
    enum class LoadPhase {
        notStarted,
        loading,
        ended,
    };
    class RunningTask;

    [[nodiscard]] QUuid selectedChatIDOrNull() const;
    [[nodiscard]] bool hasSelection() const { return m_selectedChatID.has_value(); }
    [[nodiscard]] QString errorMessageOrEmpty() const { return m_errorMessage.value_or(QString()); }
    [[nodiscard]] bool hasErrorMessage() const { return m_errorMessage.has_value(); }

    void setSelectedChatID(const std::optional<QUuid> &id);
    void setIsSending(bool isSending);
    void setIsAwaitingResponse(bool isAwaiting);
    void setMemory(const QString &memory);
    void setLoadPhase(LoadPhase phase);
    void countSaves(int change);
    void updateCanSend();
    void announceClosedIfIdle();

    [[nodiscard]] std::vector<ChatSession>::iterator findSession(const QUuid &id);
    [[nodiscard]] std::optional<ChatSession> sessionWithID(const QUuid &id) const;
    void insertFreshSession(const QString &greeting);
    void adopt(ChatArchive archive);
    [[nodiscard]] ChatArchive snapshot() const;
    QCoro::Task<> saveArchive();
    void saveInBackground() { saveArchive(); }
    void clearDraftAndError();

    [[nodiscard]] bool isDeferredByLoad(std::function<void()> operation);
    void runDeferredOperations();
    void insertNewChat();

    QCoro::Task<> sendText(QString text, std::optional<QString> composerText);
    QCoro::Task<std::optional<QString>> readKey();
    QCoro::Task<> exchange(QUuid sessionID, ChatMessage userMessage, QString apiKey);
    QCoro::Task<> generateTitleIfNeeded(QUuid sessionID, ChatMessageList conversation,
                                        QString apiKey);
    QCoro::Task<> updateMemory(ChatMessage userMessage, ChatMessage assistantMessage,
                               QString apiKey);
    [[nodiscard]] QCoro::Task<> appendAndSave(const ChatMessage &message, const QUuid &sessionID);
    void takeFromDraft(const QString &composerText);
    void giveBackToDraft(const QString &text);
    void finishSending();

    const std::unique_ptr<GroqClient> m_client;
    const std::unique_ptr<KeychainStore> m_keychain;
    const std::unique_ptr<ChatArchiveStore> m_archiveStore;

    std::vector<ChatSession> m_sessions;
    std::optional<QUuid> m_selectedChatID;
    QString m_draft;
    QString m_selectedModel = availableModels().constFirst();
    QString m_memory;
    std::optional<QString> m_errorMessage;
    bool m_canSend = false;
    bool m_isSending = false;
    bool m_isAwaitingResponse = false;
    bool m_isPreparingSend = false;
    bool m_isClosing = false;
    bool m_hasAnnouncedEnd = false;
    LoadPhase m_loadPhase = LoadPhase::notStarted;
    std::vector<std::function<void()>> m_deferredOperations;
    int m_runningTasks = 0;
    int m_savesUnderWay = 0;
};

} // namespace Talvo

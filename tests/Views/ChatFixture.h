#pragma once

#include "Controller/ChatModel.h"
#include "Views/KeychainHandle.h"
#include "standins/InMemoryItemOperations.h"
#include "support/MemoryFileManager.h"
#include "support/ScriptedNetwork.h"

#include <QObject>
#include <QVariantList>

#include <memory>

namespace Talvo::Testing {

/// A controller on a disk, a keychain and a network that the test holds: the QML tests make one as
/// `ChatFixture {}` and hand its model to a view.
class ChatFixture : public QObject
{
    Q_OBJECT
    Q_PROPERTY(Talvo::ChatModel *model READ model CONSTANT)
    /// The keychain that the controller reads, for the settings.
    Q_PROPERTY(Talvo::KeychainHandle keychain READ keychain CONSTANT)

public:
    explicit ChatFixture(QObject *parent = nullptr);
    ~ChatFixture() override;
    Q_DISABLE_COPY_MOVE(ChatFixture)

    [[nodiscard]] ChatModel *model() const { return m_model.get(); }
    [[nodiscard]] KeychainHandle keychain() const;

    /// Loads an archive of conversations, newest first and the first one selected, and waits for
    /// it. Each is an object with `title` and `messages`, a list of texts of which the assistant
    /// says the first, the user the second and so on.
    Q_INVOKABLE void load(const QVariantList &conversations);
    /// Waits until the archive that the view has begun to load is there and saved.
    Q_INVOKABLE void waitForLoad();
    /// Titles of the controller's conversations, in its order.
    Q_INVOKABLE QStringList titles() const;
    /// Texts of the selected conversation.
    Q_INVOKABLE QStringList messages() const;
    /// Identifier of a conversation.
    Q_INVOKABLE QUuid idAt(int index) const;
    Q_INVOKABLE void setError(const QString &message) { m_model->setErrorMessage(message); }

    /// Waits until everything that was started is done: loads, saves, what the keychain was asked,
    /// and what follows from each. A request without its answer is not waited for.
    Q_INVOKABLE void waitUntilAtRest() const;
    /// From now on the disk takes its time, until it is released.
    Q_INVOKABLE void holdDisk() const { m_files->hold(); }
    Q_INVOKABLE void releaseDisk() const { m_files->release(); }
    /// From now on the disk has no room for an archive.
    Q_INVOKABLE void fillDisk() const;
    /// How often the archive was saved, once everything that was started is done.
    Q_INVOKABLE int saveCount() const;

    Q_INVOKABLE void storeKey(const QString &key) const;
    /// The stored key, empty for none.
    Q_INVOKABLE QString storedKey() const;
    /// The next reading ("read"), saving ("save") or removal ("remove") of the key fails.
    Q_INVOKABLE void failKeychain(const QString &operation, int status) const;
    /// What a failing keychain is reported as.
    Q_INVOKABLE QString keychainFailure(int status) const;
    /// From now on the keychain does not answer.
    Q_INVOKABLE void holdKeychain() const { m_items->closeGate(); }
    Q_INVOKABLE void releaseKeychain() const { m_items->openGate(); }

    /// How many requests were made so far.
    Q_INVOKABLE int requestCount() const { return static_cast<int>(m_network->count()); }
    /// Answers a request with a completion.
    Q_INVOKABLE void answer(int request, const QString &text) const;
    /// Answers a request with a status and the service's words.
    Q_INVOKABLE void refuse(int request, int status, const QString &message) const;

private:
    const std::shared_ptr<MemoryFileManager> m_files = std::make_shared<MemoryFileManager>();
    const std::shared_ptr<InMemoryItemOperations> m_items =
        std::make_shared<InMemoryItemOperations>();
    const std::shared_ptr<ScriptedNetwork> m_network = std::make_shared<ScriptedNetwork>();
    std::unique_ptr<ChatModel> m_model;
};

} // namespace Talvo::Testing

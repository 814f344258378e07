#pragma once

#include "Controller/ChatModel.h"
#include "standins/InMemoryItemOperations.h"
#include "support/EventLoop.h"
#include "support/MemoryFileManager.h"
#include "support/ScriptedNetwork.h"

#include <QJsonObject>
#include <gtest/gtest.h>

namespace Talvo::Testing {

/// One message of a recorded request.
struct SentMessage
{
    QString role;
    QString content;
    friend bool operator==(const SentMessage &, const SentMessage &) = default;
};

/// A ChatModel on the real services, over a network, a disk and a keychain that the test holds.
class ControllerTest : public testing::Test
{
protected:
    ControllerTest();
    ~ControllerTest() override;

    /// A new model on the same network, disk and keychain.
    void makeModel();
    /// Loads and waits for the save that follows.
    void load();
    /// Puts an archive in the file's place.
    void putArchive(const ChatArchive &archive);
    void storeKey(const QString &key);

    /// The archive as it was last written.
    [[nodiscard]] ChatArchive saved() const;
    [[nodiscard]] std::size_t saveCount() const { return files->saves().size(); }
    /// Waits until that many saves were written.
    void waitForSaves(std::size_t count);

    /// Types a text, starts a send and waits for its request.
    void beginSend(const QString &text);
    /// Waits for the request with this number (from 0) and gives its reply to script.
    ScriptedReply *request(std::size_t number);
    /// The messages of a request, its body decoded.
    [[nodiscard]] static std::vector<SentMessage> messagesOf(const ScriptedReply *reply);
    [[nodiscard]] static QString modelOf(const ScriptedReply *reply);
    /// Answers with a completion that holds this text.
    static void answer(ScriptedReply *reply, const QString &text);
    void waitUntilIdle();
    /// Waits until all that could be under way has ended: the load, the saves, what reads the key
    /// or makes a request on a worker, and what follows from each. A request without its answer is
    /// not waited for. For tests in which nothing may happen.
    void waitUntilNothingIsUnderWay();

    static constexpr const char16_t *path = u"/data/Talvo/chat-archive.json";

    std::shared_ptr<ScriptedNetwork> network = std::make_shared<ScriptedNetwork>();
    std::shared_ptr<MemoryFileManager> files = std::make_shared<MemoryFileManager>();
    std::shared_ptr<InMemoryItemOperations> items = std::make_shared<InMemoryItemOperations>();
    std::unique_ptr<ChatModel> model;
};

/// A session with one assistant message and a time.
[[nodiscard]] ChatSession session(const QString &title, double updatedAt);

/// Three sessions, the newest first: "Bir", "İki", "Üç".
[[nodiscard]] ChatArchive threeSessions();

[[nodiscard]] QStringList titles(const std::vector<ChatSession> &sessions);

} // namespace Talvo::Testing

#include "Controller/ControllerFixture.h"
#include "Controller/PromptTexts.h"

#include <QSignalSpy>
#include <QThreadPool>

using namespace Talvo;
using namespace Talvo::Testing;

namespace {

class ChatModelSending : public ControllerTest
{
protected:
    ChatModelSending()
    {
        load();
        storeKey(QStringLiteral("gsk_anahtar"));
    }

    /// The states of a send as seen from outside: isSending, isAwaitingResponse.
    void expectFlags(bool isSending, bool isAwaitingResponse)
    {
        EXPECT_EQ(model->isSending(), isSending);
        EXPECT_EQ(model->isAwaitingResponse(), isAwaitingResponse);
    }
};

} // namespace

TEST_F(ChatModelSending, goesThroughItsPhasesInOrder)
{
    files->hold();
    model->setDraft(QStringLiteral("  selam\n"));
    model->startSending();
    ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
    // The message is recorded and its save runs: no flag is up yet, nothing is on the wire.
    EXPECT_TRUE(model->draft().isEmpty());
    EXPECT_EQ(QString::fromUtf8(model->selectedMessages().back().content), QStringLiteral("selam"));
    expectFlags(false, false);
    EXPECT_EQ(network->count(), 0U);

    files->releaseOne();
    ScriptedReply *chat = request(0);
    expectFlags(true, true);
    EXPECT_EQ(saved().sessions[0].messages.size(), 2U);

    answer(chat, QStringLiteral("yanıt"));
    ASSERT_TRUE(waitUntil([&] { return model->selectedMessages().size() == 3; }));
    expectFlags(true, false);
    files->releaseOne();
    ScriptedReply *title = request(1);
    expectFlags(true, false);
    EXPECT_EQ(saved().sessions[0].messages.size(), 3U);

    title->fail(QNetworkReply::ConnectionRefusedError);
    ScriptedReply *memory = request(2);
    expectFlags(true, false);
    memory->fail(QNetworkReply::ConnectionRefusedError);
    waitUntilIdle();
    expectFlags(false, false);
    EXPECT_FALSE(model->errorMessage());
    EXPECT_EQ(network->count(), 3U);
}

TEST_F(ChatModelSending, announcesTheReplyWithEveryCharacter)
{
    const QSignalSpy replies(model.get(), &ChatModel::replyArrived);
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral("\uFEFFyanıt"));
    ASSERT_TRUE(waitUntil([&] { return replies.size() == 1; }));
    EXPECT_EQ(replies[0][0].toString(), QStringLiteral("\uFEFFyanıt"));
}

TEST_F(ChatModelSending, theFirstRequestHoldsPromptGreetingAndMessage)
{
    beginSend(QStringLiteral("Nasılsın?"));
    EXPECT_EQ(messagesOf(request(0)),
              (std::vector<SentMessage>{{QStringLiteral("system"), basePrompt},
                                        {QStringLiteral("assistant"), greeting},
                                        {QStringLiteral("user"), QStringLiteral("Nasılsın?")}}));
    EXPECT_EQ(modelOf(request(0)), QStringLiteral("llama-3.3-70b-versatile"));
    EXPECT_EQ(request(0)->request().rawHeader("Authorization"), "Bearer gsk_anahtar");
}

TEST_F(ChatModelSending, aBlankDraftDoesNothing)
{
    model->setDraft(QStringLiteral(" \n "));
    model->setErrorMessage(QStringLiteral("eski hata"));
    model->startSending();
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(model->draft(), QStringLiteral(" \n "));
    EXPECT_EQ(model->errorMessage(), QStringLiteral("eski hata"));
    EXPECT_EQ(saveCount(), 1U);
}

TEST_F(ChatModelSending, withoutASelectionNothingHappens)
{
    model->deleteChat(model->sessions()[0].id);
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(model->draft(), QStringLiteral("selam"));
    EXPECT_EQ(network->count(), 0U);
}

TEST_F(ChatModelSending, withoutAKeyTheDraftIsKept)
{
    for (const bool isKeyEmpty : {false, true}) {
        KeychainStore(items).remove();
        if (isKeyEmpty) {
            storeKey({});
        }
        model->clearErrorMessage();
        model->setDraft(QStringLiteral(" selam "));
        model->startSending();
        ASSERT_TRUE(waitUntil([&] { return model->errorMessage().has_value(); }));
        EXPECT_EQ(model->errorMessage(),
                  QStringLiteral("Önce Ayarlar’dan Groq API anahtarını kaydet."));
        EXPECT_EQ(model->draft(), QStringLiteral(" selam "));
        EXPECT_EQ(model->selectedMessages().size(), 1U);
        expectFlags(false, false);
    }
}

TEST_F(ChatModelSending, aFailingKeychainIsReportedAndTheDraftKept)
{
    items->script(InMemoryItemOperations::Operation::copyMatching,
                  KeychainStatuses::interactionNotAllowed);
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    ASSERT_TRUE(waitUntil([&] { return model->errorMessage().has_value(); }));
    EXPECT_EQ(model->errorMessage(),
              QStringLiteral("Anahtar zinciri işlemi başarısız oldu (-25308)."));
    EXPECT_EQ(model->draft(), QStringLiteral("selam"));
}

TEST_F(ChatModelSending, aNewSendClearsTheOldErrorBeforeTheKeyIsRead)
{
    items->closeGate();
    model->setErrorMessage(QStringLiteral("eski"));
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    EXPECT_FALSE(model->errorMessage());
    items->openGate();
    request(0);
}

TEST_F(ChatModelSending, whatIsTypedWhileTheKeyIsReadStays)
{
    items->closeGate();
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    model->startSending();
    EXPECT_EQ(model->draft(), QStringLiteral("selam"));
    model->setDraft(QStringLiteral("selam daha var"));
    items->openGate();
    EXPECT_EQ(messagesOf(request(0)).back().content, QStringLiteral("selam"));
    EXPECT_EQ(model->draft(), QStringLiteral(" daha var"));
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(network->count(), 1U);
}

TEST_F(ChatModelSending, aConversationDeletedWhileTheKeyIsReadKeepsTheDraft)
{
    model->newChat();
    const QUuid target = *model->selectedChatID();
    items->closeGate();
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    model->deleteChat(target);
    model->setDraft(QStringLiteral("selam"));
    items->openGate();
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(model->draft(), QStringLiteral("selam"));
    EXPECT_EQ(network->count(), 0U);
}

TEST_F(ChatModelSending, aSessionGoneAfterTheFirstSaveEndsTheSendSilently)
{
    files->hold();
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
    model->deleteChat(*model->selectedChatID());
    files->release();
    waitForSaves(3);
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(network->count(), 0U);
    EXPECT_FALSE(model->errorMessage());
    expectFlags(false, false);
}

TEST_F(ChatModelSending, aFailureKeepsTheMessageAndClearsTheFlags)
{
    model->newChat();
    const QUuid older = model->sessions()[1].id;
    model->selectChat(older);
    waitForSaves(3);
    beginSend(QStringLiteral("selam"));
    request(0)->answer(401, R"({"error":{"message":"anahtar geçersiz"}})");
    waitUntilIdle();
    expectFlags(false, false);
    EXPECT_EQ(model->errorMessage(), QStringLiteral("anahtar geçersiz"));
    EXPECT_EQ(model->sessions()[0].id, older);
    EXPECT_EQ(QString::fromUtf8(model->selectedMessages().back().content), QStringLiteral("selam"));
    EXPECT_EQ(saveCount(), 4U);
    EXPECT_EQ(network->count(), 1U);
}

TEST_F(ChatModelSending, theFlagsAreDownWhenTheErrorShows)
{
    beginSend(QStringLiteral("selam"));
    bool wasSending = true;
    QObject::connect(model.get(), &ChatModel::errorMessageChanged, model.get(),
                     [&] { wasSending = model->isSending() || model->isAwaitingResponse(); });
    request(0)->fail(QNetworkReply::HostNotFoundError);
    waitUntilIdle();
    EXPECT_FALSE(wasSending);
}

TEST_F(ChatModelSending, theMessageMovesItsSessionUp)
{
    model->newChat();
    const QUuid older = model->sessions()[1].id;
    model->selectChat(older);
    const Instant before = Instant::now();
    beginSend(QStringLiteral("selam"));
    EXPECT_EQ(model->sessions()[0].id, older);
    EXPECT_GE(model->sessions()[0].updatedAt, before);
}

TEST_F(ChatModelSending, theReplyIsKeptExactlyAndMovesItsSessionUp)
{
    const QUuid asked = *model->selectedChatID();
    files->hold();
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
    // While the message is being saved another conversation may still come to the top.
    model->newChat();
    files->release();
    ScriptedReply *chat = request(0);
    ASSERT_EQ(model->sessions()[1].id, asked);
    const Instant before = Instant::now();
    answer(chat, QStringLiteral("  **yanıt** \n"));
    request(1);
    EXPECT_EQ(model->sessions()[0].id, asked);
    EXPECT_GE(model->sessions()[0].updatedAt, before);
    EXPECT_EQ(QString::fromUtf8(model->sessions()[0].messages.back().content),
              QStringLiteral("  **yanıt** \n"));
}

TEST_F(ChatModelSending, aMessageReachesTheDiskHoweverLongTheViewsTakeToDrawIt)
{
    std::vector<bool> wasSavedMeanwhile;
    std::size_t savesBefore = saveCount();
    QObject::connect(model.get(), &ChatModel::selectedMessagesChanged, model.get(), [&] {
        // A view that draws for long: no event is handled until it is done.
        for (int i = 0; i < 10'000 && saveCount() == savesBefore; ++i) {
            QThread::msleep(1);
        }
        wasSavedMeanwhile.push_back(saveCount() > savesBefore);
        savesBefore = saveCount();
    });
    beginSend(QStringLiteral("soru"));
    answer(request(0), QStringLiteral("yanıt"));
    request(1);
    EXPECT_EQ(wasSavedMeanwhile, (std::vector<bool>{true, true}));
}

TEST_F(ChatModelSending, sessionOperationsAreRefusedWhileSendingButNotRename)
{
    model->newChat();
    waitForSaves(2);
    const QUuid other = model->sessions()[1].id;
    const QUuid target = *model->selectedChatID();
    beginSend(QStringLiteral("selam"));
    const auto before = model->sessions();
    model->newChat();
    model->selectChat(other);
    model->deleteChat(other);
    EXPECT_EQ(model->sessions(), before);
    EXPECT_EQ(model->selectedChatID(), target);
    model->setDraft(QStringLiteral("başka"));
    EXPECT_FALSE(model->canSend());
    model->startSending();
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(model->draft(), QStringLiteral("başka"));
    EXPECT_EQ(network->count(), 1U);
    model->renameChat(other, QStringLiteral("Yeni ad"));
    EXPECT_EQ(model->sessions()[1].title, QStringLiteral("Yeni ad"));
}

TEST_F(ChatModelSending, theModelChosenMeanwhileIsForTheNextRequest)
{
    beginSend(QStringLiteral("selam"));
    model->selectModel(QStringLiteral("openai/gpt-oss-120b"));
    EXPECT_EQ(modelOf(request(0)), QStringLiteral("llama-3.3-70b-versatile"));
    answer(request(0), QStringLiteral("yanıt"));
    EXPECT_EQ(modelOf(request(1)), QStringLiteral("openai/gpt-oss-120b"));
}

TEST_F(ChatModelSending, aFailedSaveDoesNotStopTheSend)
{
    files->breakWriting(PlatformFailure::archiveNotWritable);
    beginSend(QStringLiteral("selam"));
    EXPECT_EQ(model->errorMessage(), platformFailureText(PlatformFailure::archiveNotWritable));
    answer(request(0), QStringLiteral("yanıt"));
    request(1);
    EXPECT_EQ(model->selectedMessages().size(), 3U);
}

TEST_F(ChatModelSending, theModelMayGoInEveryPhase)
{
    enum Phase { keyRead, firstSave, reply, secondSave, title, memory };
    for (const Phase phase : {keyRead, firstSave, reply, secondSave, title, memory}) {
        makeModel();
        const std::size_t first = network->count();
        if (phase == keyRead) {
            items->closeGate();
        } else if (phase == firstSave) {
            files->hold();
        }
        model->setDraft(QStringLiteral("selam"));
        model->startSending();
        if (phase == keyRead) {
            items->waitForCallAtGate();
        } else if (phase == firstSave) {
            ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
        }
        if (phase >= reply) {
            ScriptedReply *chat = request(first);
            if (phase == secondSave) {
                files->hold();
            }
            if (phase >= secondSave) {
                answer(chat, QStringLiteral("yanıt"));
            }
            if (phase == secondSave) {
                ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
            }
            if (phase >= title) {
                ScriptedReply *titleRequest = request(first + 1);
                if (phase == memory) {
                    answer(titleRequest, QStringLiteral("Başlık"));
                    request(first + 2);
                }
            }
        }
        items->openGate();
        files->release();
        model.reset();
        settle();
        for (std::size_t i = first; i < network->count(); ++i) {
            const auto &left = network->replies()[i];
            EXPECT_TRUE(left.isNull() || left->isFinished())
                << "phase " << phase << ", request " << i - first;
        }
    }
}

TEST_F(ChatModelSending, aKeyringThatWaitsLeavesTheThreadsOfOthersAlone)
{
    items->closeGate();
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    items->waitForCallAtGate();
    EXPECT_TRUE(waitUntil([] { return QThreadPool::globalInstance()->activeThreadCount() == 0; }));
    items->openGate();
    request(0);
}

/// A slow disk: the first message is still being saved when the user wants to send the next one.
TEST_F(ChatModelSending, oneSendAtATimeIsInItsRequests)
{
    files->hold();
    model->setDraft(QStringLiteral("bir"));
    model->startSending();
    ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
    model->setDraft(QStringLiteral("iki"));
    model->startSending();
    files->release();
    const auto sent = messagesOf(request(0));
    EXPECT_EQ(sent.back().content, QStringLiteral("bir"));
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(network->count(), 1U);
    EXPECT_EQ(model->draft(), QStringLiteral("iki"));

    answer(request(0), QStringLiteral("yanıt"));
    request(1)->answer(500, "bozuk"); // the title
    request(2)->answer(500, "bozuk"); // the memory
    waitUntilIdle();
    model->startSending();
    EXPECT_EQ(messagesOf(request(3)).back().content, QStringLiteral("iki"));
}

TEST_F(ChatModelSending, aRequestHoldsTheWholeConversationAndTheMemoryAsStored)
{
    ChatArchive archive = threeSessions();
    archive.memory = QStringLiteral(" \n");
    std::vector<SentMessage> expected{{QStringLiteral("system"), QString()},
                                      {QStringLiteral("assistant"), QStringLiteral("Bir merhaba")}};
    for (int i = 0; i < 300; ++i) {
        const auto text = QStringLiteral(" mesaj %1\n").arg(i);
        archive.sessions[0].messages.append(
            ChatMessage::make(ChatMessage::Role::user, text.toUtf8()));
        expected.push_back({QStringLiteral("user"), text});
    }
    expected.push_back({QStringLiteral("user"), QStringLiteral("son")});
    putArchive(archive);
    makeModel();
    load();
    beginSend(QStringLiteral("son"));
    const auto sent = messagesOf(request(0));
    EXPECT_TRUE(
        sent[0].content.contains(QStringLiteral("hatırladığın bilgiler:\n \n\n\nBu hafızayı")));
    expected[0].content = sent[0].content;
    EXPECT_EQ(sent, expected);
}

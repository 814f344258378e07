#include "Controller/ControllerFixture.h"
#include "Controller/PromptTexts.h"

#include "Chat/ChatArchiveCoding.h"

#include <QSignalSpy>

using namespace Talvo;
using namespace Talvo::Testing;

using ChatModelLoading = ControllerTest;

TEST_F(ChatModelLoading, beginsWithOneGreetedSession)
{
    ASSERT_EQ(model->sessions().size(), 1U);
    const ChatSession &first = model->sessions()[0];
    EXPECT_EQ(first.title, QStringLiteral("Yeni Sohbet"));
    EXPECT_EQ(model->selectedChatID(), first.id);
    ASSERT_EQ(model->selectedMessages().size(), 1U);
    EXPECT_EQ(model->selectedMessages()[0].role, ChatMessage::Role::assistant);
    EXPECT_EQ(QString::fromUtf8(model->selectedMessages()[0].content), greeting);
    EXPECT_TRUE(model->draft().isEmpty());
    EXPECT_EQ(model->selectedModel(), QStringLiteral("llama-3.3-70b-versatile"));
    EXPECT_FALSE(model->isSending());
    EXPECT_FALSE(model->isAwaitingResponse());
    EXPECT_FALSE(model->errorMessage());
    EXPECT_TRUE(model->memory().isEmpty());
    EXPECT_EQ(saveCount(), 0U);
}

TEST_F(ChatModelLoading, offersThreeModels)
{
    EXPECT_EQ(ChatModel::availableModels(), (QStringList{QStringLiteral("llama-3.3-70b-versatile"),
                                                         QStringLiteral("llama-3.1-8b-instant"),
                                                         QStringLiteral("openai/gpt-oss-120b")}));
}

TEST_F(ChatModelLoading, theFirstRunIsSavedAtOnce)
{
    const auto id = model->sessions()[0].id;
    load();
    EXPECT_EQ(saved().sessions, model->sessions());
    EXPECT_EQ(saved().selectedSessionID, id);
    EXPECT_FALSE(model->errorMessage());
}

TEST_F(ChatModelLoading, anEmptyArchiveGivesMemoryAndModelOnly)
{
    putArchive({{}, std::nullopt, QStringLiteral("- not"), QStringLiteral("eski-model")});
    const auto id = model->sessions()[0].id;
    load();
    EXPECT_EQ(model->sessions()[0].id, id);
    EXPECT_EQ(model->selectedChatID(), id);
    EXPECT_EQ(model->memory(), QStringLiteral("- not"));
    EXPECT_EQ(model->selectedModel(), QStringLiteral("eski-model"));
    EXPECT_EQ(saved().sessions.size(), 1U);
}

TEST_F(ChatModelLoading, isCleanedSortedAndWrittenBack)
{
    ChatArchive archive = threeSessions();
    std::swap(archive.sessions[0], archive.sessions[2]);
    archive.sessions[1].title = QStringLiteral("**İki**\n`kod`");
    archive.selectedSessionID = QUuid::createUuid();
    archive.memory = QStringLiteral("- not");
    archive.selectedModel = QStringLiteral("eski-model/1");
    putArchive(archive);
    load();
    EXPECT_EQ(
        titles(model->sessions()),
        (QStringList{QStringLiteral("Bir"), QStringLiteral("İki kod"), QStringLiteral("Üç")}));
    EXPECT_EQ(model->selectedChatID(), model->sessions()[0].id);
    EXPECT_EQ(model->memory(), QStringLiteral("- not"));
    EXPECT_EQ(model->selectedModel(), QStringLiteral("eski-model/1"));
    EXPECT_EQ(saved().sessions, model->sessions());
    EXPECT_EQ(saved().selectedSessionID, model->sessions()[0].id);
}

TEST_F(ChatModelLoading, aSaveIsKnownToBeUnderWayUntilItEnds)
{
    load();
    ASSERT_TRUE(waitUntil([&] { return !model->isSavingArchive(); }));
    QSignalSpy changes(model.get(), &ChatModel::isSavingArchiveChanged);
    files->hold();
    model->newChat();
    model->newChat();
    EXPECT_TRUE(model->isSavingArchive());
    ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
    EXPECT_TRUE(model->isSavingArchive());
    files->release();
    ASSERT_TRUE(waitUntil([&] { return !model->isSavingArchive(); }));
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(ChatModelLoading, aSaveThatFailsIsNotUnderWayAnyMore)
{
    load();
    ASSERT_TRUE(waitUntil([&] { return !model->isSavingArchive(); }));
    files->breakWriting(PlatformFailure::diskFull);
    model->newChat();
    ASSERT_TRUE(waitUntil([&] { return model->errorMessage().has_value(); }));
    EXPECT_FALSE(model->isSavingArchive());
}

TEST_F(ChatModelLoading, happensOnce)
{
    load();
    putArchive(threeSessions());
    model->startLoadingArchive();
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(model->sessions().size(), 1U);
    EXPECT_EQ(saveCount(), 1U);
}

TEST_F(ChatModelLoading, aFailureShowsItsSentenceAndSavesNothing)
{
    files->put(QString::fromUtf16(path), "{bozuk");
    model->setDraft(QStringLiteral("taslak"));
    model->startLoadingArchive();
    waitUntilNothingIsUnderWay();
    ASSERT_TRUE(model->errorMessage());
    EXPECT_EQ(model->draft(), QStringLiteral("taslak"));
    EXPECT_TRUE(
        model->errorMessage()->startsWith(platformFailureText(PlatformFailure::archiveNotValid)));
    EXPECT_TRUE(model->errorMessage()->contains(QStringLiteral("chat-archive.unreadable")));
    EXPECT_EQ(model->sessions().size(), 1U);
    EXPECT_EQ(saveCount(), 0U);
    EXPECT_EQ(files->content(QString::fromUtf16(path)), "{bozuk");
}

TEST_F(ChatModelLoading, theFirstSaveAfterAFailureKeepsTheOldFile)
{
    files->put(QString::fromUtf16(path), "{bozuk");
    model->startLoadingArchive();
    ASSERT_TRUE(waitUntil([&] { return !model->isLoadingArchive(); }));
    model->newChat();
    waitForSaves(1);
    ASSERT_EQ(files->paths().size(), 2);
    EXPECT_TRUE(files->paths().constLast().contains(QStringLiteral("chat-archive.unreadable-")));
    EXPECT_EQ(files->content(files->paths().constLast()), "{bozuk");
    model->newChat();
    waitForSaves(2);
    EXPECT_EQ(files->paths().size(), 2);
}

TEST_F(ChatModelLoading, nothingIsSavedBeforeTheLoadHasEnded)
{
    putArchive(threeSessions());
    files->hold();
    model->startLoadingArchive();
    EXPECT_TRUE(model->isLoadingArchive());
    model->newChat();
    model->selectModel(QStringLiteral("openai/gpt-oss-120b"));
    ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
    settle();
    EXPECT_EQ(files->waiting(), 1);
    EXPECT_EQ(saveCount(), 0U);
    files->release();
    waitForSaves(3);
    EXPECT_EQ(decodeArchive(files->saves()[0]).sessions.size(), 3U);
    EXPECT_EQ(titles(saved().sessions),
              (QStringList{QStringLiteral("Yeni Sohbet"), QStringLiteral("Bir"),
                           QStringLiteral("İki"), QStringLiteral("Üç")}));
    EXPECT_EQ(saved().selectedModel, QStringLiteral("openai/gpt-oss-120b"));
}

TEST_F(ChatModelLoading, aMessageSentMeanwhileGoesOutAfterwards)
{
    storeKey(QStringLiteral("gsk"));
    putArchive(threeSessions());
    files->hold();
    model->startLoadingArchive();
    model->setDraft(QStringLiteral(" selam "));
    model->startSending();
    EXPECT_TRUE(model->draft().isEmpty());
    model->setDraft(QStringLiteral("sonraki"));
    settle();
    EXPECT_EQ(network->count(), 0U);
    files->release();
    const auto sent = messagesOf(request(0));
    EXPECT_EQ(sent.back(), (SentMessage{QStringLiteral("user"), QStringLiteral("selam")}));
    EXPECT_EQ(sent[1].content, QStringLiteral("Bir merhaba"));
    EXPECT_EQ(model->draft(), QStringLiteral("sonraki"));
}

TEST_F(ChatModelLoading, aMessageThatCannotBeSentAfterwardsIsGivenBack)
{
    files->hold();
    model->startLoadingArchive();
    model->setDraft(QStringLiteral("selam"));
    model->startSending();
    model->setDraft(QStringLiteral("sonraki"));
    files->release();
    ASSERT_TRUE(waitUntil([&] { return model->errorMessage().has_value(); }));
    EXPECT_EQ(model->draft(), QStringLiteral("selam\nsonraki"));
}

TEST_F(ChatModelLoading, aDraftTypedAfterANewChatOutlivesTheLoad)
{
    putArchive(threeSessions());
    files->hold();
    model->startLoadingArchive();
    model->setDraft(QStringLiteral("eski"));
    model->newChat();
    EXPECT_TRUE(model->draft().isEmpty());
    model->setDraft(QStringLiteral("yeni taslak"));
    files->release();
    waitForSaves(2);
    EXPECT_EQ(model->draft(), QStringLiteral("yeni taslak"));
}

TEST_F(ChatModelLoading, theModelMayGoWhileItLoads)
{
    putArchive(threeSessions());
    files->hold();
    model->startLoadingArchive();
    ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
    files->release();
    model.reset();
    settle();
    EXPECT_EQ(saveCount(), 0U);
}

TEST_F(ChatModelLoading, aFailureIsShownWhateverWasAskedForMeanwhile)
{
    storeKey(QStringLiteral("gsk"));
    const std::function<void()> operations[] = {
        [this] { model->newChat(); },
        [this] { model->selectChat(*model->selectedChatID()); },
        [this] { model->deleteChat(*model->selectedChatID()); },
        [this] {
            model->setDraft(QStringLiteral("selam"));
            model->startSending();
        },
    };
    for (const auto &operation : operations) {
        makeModel();
        files->put(QString::fromUtf16(path), "{bozuk");
        files->hold();
        model->startLoadingArchive();
        ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
        operation();
        files->release();
        ASSERT_TRUE(waitUntil([&] { return !model->isLoadingArchive(); }));
        ASSERT_TRUE(waitUntil([&] { return !model->isSavingArchive(); }));
        settle();
        EXPECT_EQ(model->errorMessage().value_or(QString()).section(u'.', 0, 0) + u'.',
                  platformFailureText(PlatformFailure::archiveNotValid));
    }
}

TEST_F(ChatModelLoading, aLaterFailureTakesThePlaceOfTheLoadsFailure)
{
    files->put(QString::fromUtf16(path), "{bozuk");
    files->breakWriting(PlatformFailure::diskFull);
    files->hold();
    model->startLoadingArchive();
    ASSERT_TRUE(waitUntil([&] { return files->waiting() == 1; }));
    model->newChat();
    files->release();
    EXPECT_TRUE(waitUntil(
        [&] { return model->errorMessage() == platformFailureText(PlatformFailure::diskFull); }));
}

TEST_F(ChatModelLoading, aFailureTakesThePlaceOfAnEarlierError)
{
    files->put(QString::fromUtf16(path), "{bozuk");
    model->setErrorMessage(QStringLiteral("eski"));
    model->startLoadingArchive();
    ASSERT_TRUE(waitUntil([&] { return !model->isLoadingArchive(); }));
    EXPECT_TRUE(waitUntil([&] {
        return model->errorMessage().value_or(QString()).startsWith(
            platformFailureText(PlatformFailure::archiveNotValid));
    }));
}

TEST_F(ChatModelLoading, aSuccessLeavesAnErrorThatIsShownAlone)
{
    model->setErrorMessage(QStringLiteral("eski"));
    QSignalSpy changes(model.get(), &ChatModel::errorMessageChanged);
    load();
    EXPECT_EQ(model->errorMessage(), QStringLiteral("eski"));
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(ChatModelLoading, aTextMayBeSetToItself)
{
    model->setErrorMessage(QStringLiteral("hata"));
    model->setErrorMessage(model->errorMessage());
    EXPECT_EQ(model->errorMessage(), QStringLiteral("hata"));
    model->setDraft(QStringLiteral("taslak"));
    model->setDraft(model->draft());
    EXPECT_EQ(model->draft(), QStringLiteral("taslak"));
}

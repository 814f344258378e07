#include "Controller/ControllerFixture.h"

#include <QSignalSpy>

#include <thread>

using namespace Talvo;
using namespace Talvo::Testing;

namespace {

class ChatModelSessions : public ControllerTest
{
protected:
    ChatModelSessions()
    {
        putArchive(threeSessions());
        load();
    }

    QUuid idAt(std::size_t index) { return model->sessions()[index].id; }
};

} // namespace

TEST_F(ChatModelSessions, newChatAddsAtTheTopSelectsAndSaves)
{
    model->setDraft(QStringLiteral("yarım"));
    model->setErrorMessage(QStringLiteral("hata"));
    model->newChat();
    EXPECT_EQ(titles(model->sessions()),
              (QStringList{QStringLiteral("Yeni Sohbet"), QStringLiteral("Bir"),
                           QStringLiteral("İki"), QStringLiteral("Üç")}));
    EXPECT_EQ(model->selectedChatID(), idAt(0));
    EXPECT_EQ(QString::fromUtf8(model->selectedMessages()[0].content),
              QStringLiteral("Yeni sohbet hazır. Ne hakkında konuşalım?"));
    EXPECT_TRUE(model->draft().isEmpty());
    EXPECT_FALSE(model->errorMessage());
    waitForSaves(2);
    EXPECT_EQ(saved().sessions, model->sessions());
}

TEST_F(ChatModelSessions, everyNewChatIsOneMore)
{
    for (int i = 0; i < 3; ++i) {
        model->newChat();
    }
    EXPECT_EQ(model->sessions().size(), 6U);
    EXPECT_NE(idAt(0), idAt(1));
    waitForSaves(4);
}

TEST_F(ChatModelSessions, selectChatSwitchesAndEmptiesTheDraft)
{
    model->setDraft(QStringLiteral("yarım"));
    model->setErrorMessage(QStringLiteral("hata"));
    model->selectChat(idAt(2));
    EXPECT_EQ(model->selectedChatID(), idAt(2));
    EXPECT_TRUE(model->draft().isEmpty());
    EXPECT_FALSE(model->errorMessage());
    waitForSaves(2);
    EXPECT_EQ(saved().selectedSessionID, idAt(2));
}

TEST_F(ChatModelSessions, selectingTheSameChatDiscardsTheDraftAndSaves)
{
    model->setDraft(QStringLiteral("yarım"));
    model->selectChat(idAt(0));
    EXPECT_TRUE(model->draft().isEmpty());
    waitForSaves(2);
}

TEST_F(ChatModelSessions, unknownIdentifiersDoNothing)
{
    model->setDraft(QStringLiteral("kalsın"));
    const auto before = model->sessions();
    model->selectChat(QUuid::createUuid());
    model->deleteChat(QUuid::createUuid());
    model->renameChat(QUuid::createUuid(), QStringLiteral("ad"));
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(model->sessions(), before);
    EXPECT_EQ(model->draft(), QStringLiteral("kalsın"));
    EXPECT_EQ(saveCount(), 1U);
}

TEST_F(ChatModelSessions, renameStoresTheFirstSixtyCharactersAndKeepsPlaceAndDate)
{
    const Instant date = model->sessions()[1].updatedAt;
    model->renameChat(idAt(1), QString(70, u'a'));
    EXPECT_EQ(model->sessions()[1].title, QString(60, u'a'));
    EXPECT_EQ(model->sessions()[1].updatedAt, date);
    waitForSaves(2);
}

TEST_F(ChatModelSessions, renameToNothingChangesNothing)
{
    for (const auto &title : {QStringLiteral("   "), QStringLiteral("****"), QString()}) {
        model->renameChat(idAt(0), title);
    }
    waitUntilNothingIsUnderWay();
    EXPECT_EQ(model->sessions()[0].title, QStringLiteral("Bir"));
    EXPECT_EQ(saveCount(), 1U);
}

TEST_F(ChatModelSessions, renameToTheSameTitleSavesWithoutNotifying)
{
    const QSignalSpy changes(model.get(), &ChatModel::sessionsChanged);
    model->renameChat(idAt(0), QStringLiteral("Bir"));
    waitForSaves(2);
    EXPECT_TRUE(changes.isEmpty());
}

TEST_F(ChatModelSessions, deletingTheSelectedChatSelectsTheTopOne)
{
    model->selectChat(idAt(2));
    model->setDraft(QStringLiteral("taslak"));
    model->setErrorMessage(QStringLiteral("hata"));
    model->deleteChat(idAt(2));
    EXPECT_EQ(titles(model->sessions()),
              (QStringList{QStringLiteral("Bir"), QStringLiteral("İki")}));
    EXPECT_EQ(model->selectedChatID(), idAt(0));
    EXPECT_TRUE(model->draft().isEmpty());
    EXPECT_FALSE(model->errorMessage());
}

TEST_F(ChatModelSessions, deletingAChatShowsTheNextOneOfTheSameIdentifier)
{
    ChatArchive archive = threeSessions();
    archive.sessions[1].id = archive.sessions[0].id;
    archive.selectedSessionID = archive.sessions[0].id;
    putArchive(archive);
    makeModel();
    load();
    const ChatMessageList next = model->sessions()[1].messages;
    const QSignalSpy selections(model.get(), &ChatModel::selectedChatIDChanged);
    const QSignalSpy messages(model.get(), &ChatModel::selectedMessagesChanged);
    model->deleteChat(idAt(0));
    EXPECT_EQ(model->selectedMessages(), next);
    EXPECT_EQ(messages.size(), 1);
    EXPECT_TRUE(selections.isEmpty());
    model->deleteChat(idAt(0));
    EXPECT_EQ(messages.size(), 2);
    EXPECT_EQ(selections.size(), 1);
}

TEST_F(ChatModelSessions, deletingAnotherChatKeepsSelectionDraftAndError)
{
    model->setDraft(QStringLiteral("taslak"));
    model->setErrorMessage(QStringLiteral("hata"));
    const auto selected = model->selectedChatID();
    model->deleteChat(idAt(1));
    EXPECT_EQ(model->selectedChatID(), selected);
    EXPECT_EQ(model->draft(), QStringLiteral("taslak"));
    EXPECT_EQ(model->errorMessage(), QStringLiteral("hata"));
}

TEST_F(ChatModelSessions, deletingAChatAboveTheSelectedOneKeepsTheSelection)
{
    const QUuid selected = idAt(2);
    model->selectChat(selected);
    model->deleteChat(idAt(0));
    EXPECT_EQ(model->selectedChatID(), selected);
}

TEST_F(ChatModelSessions, selectingChangesNoChat)
{
    const auto before = model->sessions();
    model->selectChat(idAt(2));
    EXPECT_EQ(model->sessions(), before);
}

TEST_F(ChatModelSessions, deletingTheLastChatLeavesNothingSelected)
{
    while (!model->sessions().empty()) {
        model->deleteChat(idAt(0));
    }
    EXPECT_FALSE(model->selectedChatID());
    EXPECT_TRUE(model->selectedMessages().empty());
    waitForSaves(4);
    EXPECT_FALSE(files->saves().back().contains("selectedSessionID"));
    model->newChat();
    EXPECT_EQ(model->sessions().size(), 1U);
    EXPECT_EQ(model->selectedChatID(), idAt(0));
}

TEST_F(ChatModelSessions, selectModelTakesListedModelsOnly)
{
    const QSignalSpy changes(model.get(), &ChatModel::selectedModelChanged);
    model->selectModel(QStringLiteral("başka"));
    model->selectModel(model->selectedModel());
    waitUntilNothingIsUnderWay();
    EXPECT_TRUE(changes.isEmpty());
    EXPECT_EQ(saveCount(), 1U);
    model->selectModel(QStringLiteral("openai/gpt-oss-120b"));
    EXPECT_EQ(changes.count(), 1);
    waitForSaves(2);
    EXPECT_EQ(saved().selectedModel, QStringLiteral("openai/gpt-oss-120b"));
}

TEST_F(ChatModelSessions, canSendNeedsMoreThanBlanks)
{
    const QSignalSpy changes(model.get(), &ChatModel::canSendChanged);
    model->setDraft(QStringLiteral(" \n\t\u00A0"));
    EXPECT_FALSE(model->canSend());
    EXPECT_TRUE(changes.isEmpty());
    model->setDraft(QStringLiteral(" a"));
    EXPECT_TRUE(model->canSend());
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(ChatModelSessions, writingAnEqualValueNotifiesNobody)
{
    const QSignalSpy drafts(model.get(), &ChatModel::draftChanged);
    const QSignalSpy errors(model.get(), &ChatModel::errorMessageChanged);
    model->setDraft({});
    model->clearErrorMessage();
    EXPECT_TRUE(drafts.isEmpty());
    EXPECT_TRUE(errors.isEmpty());
}

TEST_F(ChatModelSessions, aSecondErrorReplacesTheFirstAndOneDismissalClears)
{
    model->setErrorMessage(QStringLiteral("bir"));
    model->setErrorMessage(QStringLiteral("iki"));
    EXPECT_EQ(model->errorMessage(), QStringLiteral("iki"));
    model->clearErrorMessage();
    EXPECT_FALSE(model->errorMessage());
}

TEST_F(ChatModelSessions, aFailedSaveShowsItsSentenceAndKeepsTheState)
{
    files->breakWriting(PlatformFailure::diskFull);
    model->newChat();
    ASSERT_TRUE(waitUntil([&] { return model->errorMessage().has_value(); }));
    EXPECT_EQ(model->errorMessage(), platformFailureText(PlatformFailure::diskFull));
    EXPECT_EQ(model->sessions().size(), 4U);
    files->breakWriting(std::nullopt);
    model->newChat();
    waitForSaves(2);
    EXPECT_EQ(saved().sessions.size(), 5U);
}

TEST_F(ChatModelSessions, savesThatWereStartedAreFinishedWhenTheModelGoes)
{
    files->hold();
    model->newChat();
    model->newChat();
    const auto expected = model->sessions();
    files->release();
    model.reset();
    EXPECT_EQ(saveCount(), 3U);
    EXPECT_EQ(saved().sessions, expected);
}

TEST_F(ChatModelSessions, closingAnnouncesItselfAfterTheLastSave)
{
    files->hold();
    model->newChat();
    const QSignalSpy closed(model.get(), &ChatModel::closed);
    model->close();
    settle();
    EXPECT_TRUE(closed.isEmpty());
    files->release();
    ASSERT_TRUE(waitUntil([&] { return closed.count() == 1; }));
    EXPECT_EQ(saveCount(), 2U);
}

TEST_F(ChatModelSessions, theEndIsAnnouncedOnce)
{
    QSignalSpy closed(model.get(), &ChatModel::closed);
    files->hold();
    model->newChat();
    model->newChat();
    model->newChat();
    model->close();
    files->release();
    ASSERT_TRUE(waitUntil([&] { return !model->isSavingArchive(); }));
    settle();
    model->close();
    settle();
    EXPECT_EQ(closed.count(), 1);
}

TEST_F(ChatModelSessions, itsEndOnAnotherThreadIsAFault)
{
    static QStringList faults;
    const auto keepFaults = [](QtMsgType type, const QMessageLogContext &context,
                               const QString &text) {
        if (type == QtCriticalMsg) {
            faults.append(QString::fromLatin1(context.category) + u' ' + text);
        }
    };
    const QtMessageHandler before = qInstallMessageHandler(keepFaults);
    faults.clear();
    makeModel();
    EXPECT_EQ(faults, QStringList());
    std::thread([this] { model.reset(); }).join();
    qInstallMessageHandler(before);
    ASSERT_EQ(faults.size(), 1);
    EXPECT_TRUE(faults.first().startsWith(QStringLiteral("Talvo/ChatModel ")));
}

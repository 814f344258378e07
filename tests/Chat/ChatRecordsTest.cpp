#include "Chat/ChatArchive.h"
#include "Chat/SampleArchives.h"

#include <gtest/gtest.h>

#include <thread>

using namespace Talvo;

namespace {

const QString composed = QStringLiteral("Caf\u00e9");
const QString decomposed = QStringLiteral("Cafe\u0301");

ChatMessage message(int number)
{
    return {questionID, ChatMessage::Role::user, QByteArray::number(number)};
}

ChatMessageList listOf(int count)
{
    ChatMessageList list;
    for (int i = 0; i < count; ++i) {
        list.append(message(i));
    }
    return list;
}

} // namespace

TEST(ChatMessage, comparesEveryField)
{
    const ChatMessage original{questionID, ChatMessage::Role::user, "metin"};
    EXPECT_EQ(original, (ChatMessage{questionID, ChatMessage::Role::user, "metin"}));
    EXPECT_NE(original, (ChatMessage{answerID, ChatMessage::Role::user, "metin"}));
    EXPECT_NE(original, (ChatMessage{questionID, ChatMessage::Role::assistant, "metin"}));
    EXPECT_NE(original, (ChatMessage{questionID, ChatMessage::Role::user, "Metin"}));
}

TEST(ChatMessage, comparesContentCanonically)
{
    const ChatMessage one{questionID, ChatMessage::Role::user, composed.toUtf8()};
    EXPECT_EQ(one, (ChatMessage{questionID, ChatMessage::Role::user, decomposed.toUtf8()}));
    EXPECT_NE((ChatMessage{questionID, ChatMessage::Role::user, "\xEF\xBB\xBFx"}),
              (ChatMessage{questionID, ChatMessage::Role::user, "x"}));
}

TEST(ChatMessage, everyNewOneHasItsOwnIdentity)
{
    const auto one = ChatMessage::make(ChatMessage::Role::assistant, "x");
    const auto other = ChatMessage::make(ChatMessage::Role::assistant, "x");
    EXPECT_EQ(one.role, ChatMessage::Role::assistant);
    EXPECT_EQ(one.content, "x");
    EXPECT_FALSE(one.id.isNull());
    EXPECT_NE(one.id, other.id);
}

TEST(ChatMessage, rolesHaveTheirStoredNames)
{
    EXPECT_EQ(roleName(ChatMessage::Role::user), QLatin1StringView("user"));
    EXPECT_EQ(roleName(ChatMessage::Role::assistant), QLatin1StringView("assistant"));
}

TEST(ChatSession, comparesEveryField)
{
    const ChatSession original{sessionID, composed, {message(1)}, {10}};
    EXPECT_EQ(original, (ChatSession{sessionID, decomposed, {message(1)}, {10}}));
    EXPECT_NE(original, (ChatSession{questionID, composed, {message(1)}, {10}}));
    EXPECT_NE(original, (ChatSession{sessionID, QStringLiteral("Cafe"), {message(1)}, {10}}));
    EXPECT_NE(original, (ChatSession{sessionID, composed, {message(2)}, {10}}));
    EXPECT_NE(original, (ChatSession{sessionID, composed, {}, {10}}));
}

TEST(ChatSession, differsByTheInstantAlone)
{
    const ChatSession original{sessionID, composed, {}, {763637415}};
    ChatSession later = original;
    later.updatedAt.secondsSinceReference = std::nextafter(763637415.0, 1e9);
    EXPECT_NE(original, later);
}

TEST(ChatArchive, comparesEveryField)
{
    const ChatArchive original = sampleArchive();
    EXPECT_EQ(original, sampleArchive());
    const auto changed = [&](auto change) {
        ChatArchive archive = original;
        change(archive);
        return archive;
    };
    EXPECT_NE(original, changed([](auto &a) { a.sessions.clear(); }));
    EXPECT_NE(original, changed([](auto &a) { a.sessions.push_back(a.sessions[0]); }));
    EXPECT_NE(original, changed([](auto &a) { a.selectedSessionID.reset(); }));
    EXPECT_NE(original, changed([](auto &a) { a.memory += u'x'; }));
    EXPECT_NE(original, changed([](auto &a) { a.selectedModel += u'x'; }));
    const auto withMemory = [&](const QString &memory) {
        return changed([&](auto &a) { a.memory = memory; });
    };
    EXPECT_EQ(withMemory(composed), withMemory(decomposed));
}

TEST(ChatMessageList, keepsTheOrderAcrossChunks)
{
    constexpr int chunk = ChatMessageList::chunkSize;
    for (const int count : {0, 1, 2, chunk - 1, chunk, chunk + 1, 3 * chunk + 5}) {
        const ChatMessageList list = listOf(count);
        EXPECT_EQ(list.size(), static_cast<std::size_t>(count));
        EXPECT_EQ(list.empty(), count == 0);
        int expected = 0;
        for (const ChatMessage &each : list) {
            EXPECT_EQ(each.content.toInt(), expected++);
        }
        EXPECT_EQ(expected, count);
        if (count > 0) {
            EXPECT_EQ(list.back().content.toInt(), count - 1);
        }
    }
}

TEST(ChatMessageList, aCopyDoesNotSeeWhatIsAppendedLater)
{
    constexpr int chunk = ChatMessageList::chunkSize;
    for (const int count : {0, 1, chunk - 1, chunk, chunk + 1}) {
        ChatMessageList list = listOf(count);
        const ChatMessageList snapshot = list;
        ChatMessageList branch = list;
        list.append(message(1000));
        branch.append(message(2000));
        EXPECT_EQ(snapshot, listOf(count)) << count;
        EXPECT_EQ(list.back().content, "1000");
        EXPECT_EQ(branch.back().content, "2000");
        EXPECT_EQ(list.size(), branch.size());
        EXPECT_NE(list, branch);
    }
}

TEST(ChatMessageList, copiesShareTheirContent)
{
    const ChatMessageList list = listOf(3);
    const ChatMessageList copy = list;
    EXPECT_EQ(&copy[1], &list[1]);
}

TEST(ChatMessageList, isEmptyAfterItWasMovedFrom)
{
    ChatMessageList list = listOf(200);
    const ChatMessageList moved = std::move(list);
    EXPECT_EQ(moved.size(), 200U);
    EXPECT_TRUE(list.empty()); // NOLINT(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(list.size(), 0U);
    list.append(message(7));
    EXPECT_EQ(list.size(), 1U);
}

TEST(ChatMessageList, comparesElementsEvenWhenChunksAreNotShared)
{
    EXPECT_EQ(listOf(300), listOf(300));
    EXPECT_NE(listOf(300), listOf(299));
    ChatMessageList other = listOf(299);
    other.append(message(-1));
    EXPECT_NE(listOf(300), other);
}

TEST(ChatMessageList, copiesMayBeUsedOnDifferentThreads)
{
    ChatMessageList list = listOf(1);
    for (int round = 0; round < 200; ++round) {
        std::thread reader([copy = list, round] {
            EXPECT_EQ(copy.size(), static_cast<std::size_t>(round + 1));
            EXPECT_EQ(copy.back().content.toInt(), round);
        });
        list.append(message(round + 1));
        reader.join();
    }
    EXPECT_EQ(list.size(), 201U);
}

#include "Chat/ArchiveParts.h"

#include "Chat/ChatArchiveCoding.h"
#include "Chat/SampleArchives.h"
#include "standins/InMemoryFile.h"

#include <gtest/gtest.h>

using namespace Talvo;

namespace {

/// The document that the parts of a file make together.
QByteArray joined(const ArchiveParts &parts, const ReadableFile &file)
{
    const QByteArrayView end = "\n  ]\n}";
    EXPECT_TRUE(parts.frame.endsWith(end));
    QByteArray document = parts.frame.chopped(end.size());
    for (std::size_t i = 0; i < parts.sessions.size(); ++i) {
        document.append(i == 0 ? "" : ",");
        file.read(parts.sessions[i].begin, parts.sessions[i].size, document);
    }
    return document.append(end);
}

ChatArchive archiveOfMany()
{
    ChatArchive archive = sampleArchive();
    archive.sessions.assign(100, sampleArchive().sessions.front());
    return archive;
}

} // namespace

TEST(ArchiveParts, divideWhatIsWrittenWhereConversationsMeet)
{
    const QByteArray document = encodeArchive(archiveOfMany());
    const auto parts = archiveParts(InMemoryFile(document), 1);
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->sessions.size(), 100);
    EXPECT_EQ(joined(*parts, InMemoryFile(document)), document);
}

TEST(ArchiveParts, areOfTheSizeThatIsAskedFor)
{
    const QByteArray document = encodeArchive(archiveOfMany());
    const qsizetype one = encodeArchive(sampleArchive()).size();
    const auto parts = archiveParts(InMemoryFile(document), 10 * one);
    ASSERT_TRUE(parts);
    ASSERT_GT(parts->sessions.size(), 5);
    EXPECT_EQ(joined(*parts, InMemoryFile(document)), document);
    for (std::size_t i = 0; i + 1 < parts->sessions.size(); ++i) {
        EXPECT_GE(parts->sessions[i].size, 10 * one) << i;
        EXPECT_LE(parts->sessions[i].size, 11 * one) << i;
    }
}

/// A conversation may be longer than what is read at a time to find its end.
TEST(ArchiveParts, mayHaveLongConversations)
{
    for (const qsizetype length : {65'000, 65'400, 65'500, 65'536, 65'600, 1'000'000}) {
        ChatArchive archive = archiveOfContent(QByteArray(length, 'x'));
        archive.sessions.assign(3, archive.sessions.front());
        const QByteArray document = encodeArchive(archive);
        const auto parts = archiveParts(InMemoryFile(document), 1);
        ASSERT_TRUE(parts);
        EXPECT_EQ(parts->sessions.size(), 3) << length;
        EXPECT_EQ(joined(*parts, InMemoryFile(document)), document);
    }
}

TEST(ArchiveParts, areFoundWhereverAWindowEnds)
{
    const QByteArray session = "\n    {\n    }";
    for (qsizetype length = 0; length < 40; ++length) {
        const QByteArray padding(65'536 - length, ' ');
        const QByteArray document =
            "{\n  \"sessions\" : [" + padding + session + "," + session + "\n  ]\n}";
        const auto parts = archiveParts(InMemoryFile(document), 1);
        ASSERT_TRUE(parts);
        EXPECT_EQ(parts->sessions.size(), 2) << length;
        EXPECT_EQ(joined(*parts, InMemoryFile(document)), document);
    }
}

TEST(ArchiveParts, areOneWithoutConversations)
{
    const QByteArray document = encodeArchive(emptyArchive());
    const auto parts = archiveParts(InMemoryFile(document), 1);
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->sessions.size(), 1);
    EXPECT_EQ(joined(*parts, InMemoryFile(document)), document);
}

TEST(ArchiveParts, areThoseOfTheWrittenLayoutOnly)
{
    const QByteArray document = encodeArchive(archiveOfMany());
    const QByteArray others[] = {document + "\n", document.simplified(), {}, "{}", "\n  ]\n}"};
    for (const QByteArray &other : others) {
        EXPECT_FALSE(archiveParts(InMemoryFile(other), 1)) << other.toStdString();
    }
}

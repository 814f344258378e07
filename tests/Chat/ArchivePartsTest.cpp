#include "Chat/ArchiveParts.h"

#include "Chat/ChatArchiveCoding.h"
#include "Chat/SampleArchives.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace Talvo;

namespace {

/// The document that the parts make together.
QByteArray joined(const ArchiveParts &parts)
{
    const QByteArrayView end = "\n  ]\n}";
    EXPECT_TRUE(parts.frame.endsWith(end));
    QByteArray document = parts.frame.chopped(end.size());
    for (std::size_t i = 0; i < parts.sessions.size(); ++i) {
        document.append(i == 0 ? "" : ",").append(parts.sessions[i]);
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
    const auto parts = archiveParts(document, 1);
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->sessions.size(), 100);
    EXPECT_EQ(joined(*parts), document);
}

TEST(ArchiveParts, areOfTheSizeThatIsAskedFor)
{
    const QByteArray document = encodeArchive(archiveOfMany());
    const qsizetype one = encodeArchive(sampleArchive()).size();
    const auto parts = archiveParts(document, 10 * one);
    ASSERT_TRUE(parts);
    ASSERT_GT(parts->sessions.size(), 5);
    EXPECT_EQ(joined(*parts), document);
    for (std::size_t i = 0; i + 1 < parts->sessions.size(); ++i) {
        EXPECT_GE(parts->sessions[i].size(), 10 * one) << i;
        EXPECT_LE(parts->sessions[i].size(), 11 * one) << i;
    }
}

TEST(ArchiveParts, areOneWithoutConversations)
{
    const QByteArray document = encodeArchive(emptyArchive());
    const auto parts = archiveParts(document, 1);
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->sessions.size(), 1);
    EXPECT_EQ(joined(*parts), document);
}

TEST(ArchiveParts, areThoseOfTheWrittenLayoutOnly)
{
    const QByteArray document = encodeArchive(archiveOfMany());
    EXPECT_FALSE(archiveParts(document + "\n", 1));
    EXPECT_FALSE(archiveParts(document.simplified(), 1));
    EXPECT_FALSE(archiveParts({}, 1));
    EXPECT_FALSE(archiveParts("{}", 1));
    EXPECT_FALSE(archiveParts("\n  ]\n}", 1));
}

#include "Controller/ArchiveNormalization.h"

#include "Controller/ControllerFixture.h"

using namespace Talvo;
using namespace Talvo::Testing;

TEST(ArchiveNormalization, sortsNewestFirstAndKeepsTheOrderOfEqualTimes)
{
    ChatArchive archive;
    archive.sessions = {session(QStringLiteral("eski"), 1), session(QStringLiteral("b"), 5),
                        session(QStringLiteral("yeni"), 9), session(QStringLiteral("a"), 5)};
    EXPECT_EQ(titles(normalizedArchive(archive).sessions),
              (QStringList{QStringLiteral("yeni"), QStringLiteral("b"), QStringLiteral("a"),
                           QStringLiteral("eski")}));
}

TEST(ArchiveNormalization, cleansTitlesWithoutCuttingThem)
{
    ChatArchive archive;
    archive.sessions = {session(QStringLiteral("**") + QString(80, u'x') + QStringLiteral("**"), 2),
                        session(QStringLiteral("***"), 1)};
    const ChatArchive result = normalizedArchive(archive);
    EXPECT_EQ(result.sessions[0].title, QString(80, u'x'));
    EXPECT_TRUE(result.sessions[1].title.isEmpty());
}

TEST(ArchiveNormalization, keepsAKnownSelection)
{
    ChatArchive archive = threeSessions();
    archive.selectedSessionID = archive.sessions[2].id;
    EXPECT_EQ(normalizedArchive(archive).selectedSessionID, archive.sessions[2].id);
}

TEST(ArchiveNormalization, selectsTheNewestForAnUnknownOrMissingSelection)
{
    ChatArchive archive = threeSessions();
    EXPECT_EQ(normalizedArchive(archive).selectedSessionID, archive.sessions[0].id);
    archive.selectedSessionID = QUuid::createUuid();
    std::swap(archive.sessions[0], archive.sessions[2]);
    EXPECT_EQ(normalizedArchive(archive).selectedSessionID, archive.sessions[2].id);
}

TEST(ArchiveNormalization, leavesAnArchiveWithoutSessionsWithoutSelection)
{
    ChatArchive archive;
    archive.selectedSessionID = QUuid::createUuid();
    archive.memory = QStringLiteral("kalsın");
    const ChatArchive result = normalizedArchive(archive);
    EXPECT_FALSE(result.selectedSessionID);
    EXPECT_EQ(result.memory, QStringLiteral("kalsın"));
}

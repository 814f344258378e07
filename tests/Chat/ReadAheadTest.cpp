#include "Chat/ChatArchiveStoreFixture.h"

#include "Chat/ChatArchiveCoding.h"

using namespace Talvo;

namespace {

/// One that is read ahead.
ChatArchive largeArchive()
{
    return archiveOfContent(QByteArray(5 << 20, 'a'));
}

} // namespace

class ReadAheadTest : public ChatArchiveStoreFixture
{
};

TEST_F(ReadAheadTest, aLargeFileIsReadOnceWhenItWasReadAhead)
{
    save(largeArchive());
    EXPECT_EQ(load(), largeArchive());
    const int once = m_files->openCount;
    m_files->openCount = 0;
    m_store->readAhead();
    EXPECT_EQ(load(), largeArchive());
    EXPECT_EQ(m_files->openCount, once + 1) << "one more, for its size";
}

TEST_F(ReadAheadTest, whatWasReadAheadIsHandedOutOnce)
{
    save(largeArchive());
    m_store->readAhead();
    EXPECT_EQ(load(), largeArchive());
    writeFile(encodeArchive(sampleArchive()));
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(ReadAheadTest, aSaveMakesWhatWasReadAheadWorthless)
{
    save(largeArchive());
    m_store->readAhead();
    save(sampleArchive());
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(ReadAheadTest, aSmallFileIsNotReadAhead)
{
    save(sampleArchive());
    m_store->readAhead();
    save(archiveNamed(QStringLiteral("yeni"))); // behind it
    EXPECT_EQ(m_files->openCount, 1) << "for its size";
    EXPECT_EQ(load(), archiveNamed(QStringLiteral("yeni")));
}

TEST_F(ReadAheadTest, withoutAFileThereIsNothingToReadAhead)
{
    m_store->readAhead();
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_EQ(m_files->openCount, 0);
}

TEST_F(ReadAheadTest, theLoadTellsWhatFailedAhead)
{
    const QByteArray broken(5 << 20, '{');
    writeFile(broken);
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    const int once = m_files->openCount;
    m_files->openCount = 0;
    m_store->readAhead();
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    EXPECT_EQ(m_files->openCount, once + 1) << "one more, for its size";
    save(sampleArchive());
    const QStringList kept = otherFiles();
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(bytes(folder() + u'/' + kept.first()), broken);
}

#include "Chat/ChatArchiveStoreFixture.h"

#include "Chat/ChatArchiveCoding.h"

#include <QRegularExpression>

using namespace Talvo;

/// What becomes of a file that could not be loaded.
class UnreadableArchiveTest : public ChatArchiveStoreFixture
{
};

TEST_F(UnreadableArchiveTest, theFirstSaveAfterAFailedLoadKeepsTheOldFile)
{
    writeFile("bozuk");
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    const QDateTime before = QDateTime::currentDateTimeUtc();
    save(sampleArchive());
    const QDateTime after = QDateTime::currentDateTimeUtc();
    save(emptyArchive());

    ASSERT_EQ(otherFiles().size(), 1);
    const QString name = otherFiles().constFirst();
    EXPECT_EQ(bytes(folder() + u'/' + name), "bozuk");
    EXPECT_EQ(bytes(file()), encodeArchive(emptyArchive()));

    static const QRegularExpression pattern(
        QStringLiteral("^chat-archive\\.unreadable-(\\d{8}T\\d{6})Z\\.json$"));
    const QString time = pattern.match(name).captured(1);
    QDateTime stamp = QDateTime::fromString(time, QStringLiteral("yyyyMMdd'T'HHmmss"));
    stamp.setTimeSpec(Qt::UTC);
    EXPECT_GE(stamp.toSecsSinceEpoch(), before.toSecsSinceEpoch()) << name.toStdString();
    EXPECT_LE(stamp.toSecsSinceEpoch(), after.toSecsSinceEpoch());
}

TEST_F(UnreadableArchiveTest, aFileThatCannotBeReadIsKeptToo)
{
    save(sampleArchive());
    m_files->isUnreadable = true;
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    save(emptyArchive());
    ASSERT_EQ(otherFiles().size(), 1);
    EXPECT_EQ(bytes(folder() + u'/' + otherFiles().constFirst()), encodeArchive(sampleArchive()));
}

TEST_F(UnreadableArchiveTest, everyFailedLoadKeepsAnotherFile)
{
    for (const QByteArray content : {"bir", "iki", "üç"}) {
        writeFile(content);
        EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
        save(sampleArchive());
        QFile::remove(file());
    }
    QList<QByteArray> kept;
    for (const QString &name : otherFiles()) {
        kept += bytes(folder() + u'/' + name);
    }
    std::sort(kept.begin(), kept.end());
    EXPECT_EQ(kept, (QList<QByteArray>{"bir", "iki", "üç"}));
}

TEST_F(UnreadableArchiveTest, aTakenNameGetsANumber)
{
    writeFile("bozuk");
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    // All the names of the next minute are taken.
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (int second = 0; second < 60; ++second) {
        QFile taken(folder() + QStringLiteral("/chat-archive.unreadable-") +
                    now.addSecs(second).toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'")) +
                    QStringLiteral(".json"));
        ASSERT_TRUE(taken.open(QFile::WriteOnly));
    }
    save(sampleArchive());
    const QStringList kept = otherFiles().filter(QStringLiteral("Z-2.json"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(bytes(folder() + u'/' + kept.constFirst()), "bozuk");
}

TEST_F(UnreadableArchiveTest, withoutACopyTheSaveFailsAndReplacesNothing)
{
    writeFile("bozuk");
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    m_files->hasNoLinks = true;
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(failureOf(m_store->save(sampleArchive())), PlatformFailure::archiveNotKept);
        EXPECT_EQ(bytes(file()), "bozuk");
        EXPECT_TRUE(otherFiles().isEmpty());
    }
    m_files->hasNoLinks = false;
    save(sampleArchive());
    EXPECT_EQ(otherFiles().size(), 1);
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(UnreadableArchiveTest, withoutANameForTheCopyTheSaveFailsAndReplacesNothing)
{
    writeFile("bozuk");
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    m_files->areNamesTaken = true;
    EXPECT_EQ(failureOf(m_store->save(sampleArchive())), PlatformFailure::archiveNotKept);
    EXPECT_EQ(bytes(file()), "bozuk");
}

TEST_F(UnreadableArchiveTest, withoutMemoryItSaysSoAndReplacesNothing)
{
    save(sampleArchive());
    const QByteArray before = bytes(file());
    m_files->hasNoMemory = true;
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    EXPECT_EQ(failureOf(m_store->save(archiveNamed(QStringLiteral("yeni")))),
              PlatformFailure::archiveNotWritable);
    m_files->hasNoMemory = false;
    EXPECT_EQ(bytes(file()), before);
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(UnreadableArchiveTest, aSaveThatFailsAfterTheCopyMakesNoSecondOne)
{
    writeFile("bozuk");
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    m_files->isDiskFull = true;
    EXPECT_EQ(failureOf(m_store->save(sampleArchive())), PlatformFailure::diskFull);
    EXPECT_EQ(bytes(file()), "bozuk");
    m_files->isDiskFull = false;
    save(sampleArchive());
    EXPECT_EQ(otherFiles().size(), 1);
}

TEST_F(UnreadableArchiveTest, aFileThatIsGoneMeanwhileNeedsNoCopy)
{
    writeFile("bozuk");
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    ASSERT_TRUE(QDir(folder()).removeRecursively());
    save(sampleArchive());
    EXPECT_TRUE(otherFiles().isEmpty());
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(UnreadableArchiveTest, aFolderInTheFilesPlaceIsNotLost)
{
    QDir().mkpath(file());
    QFile inside(file() + QStringLiteral("/x"));
    ASSERT_TRUE(inside.open(QFile::WriteOnly));
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    EXPECT_EQ(failureOf(m_store->save(sampleArchive())), PlatformFailure::archiveNotKept);
    EXPECT_TRUE(inside.exists());
}

TEST_F(UnreadableArchiveTest, noCopyAfterASuccessfulLoadOrWithoutOne)
{
    writeFile("bozuk");
    save(sampleArchive()); // nobody tried to load it
    EXPECT_TRUE(otherFiles().isEmpty());
    EXPECT_EQ(load(), sampleArchive());
    save(emptyArchive());
    EXPECT_TRUE(otherFiles().isEmpty());
}

TEST_F(UnreadableArchiveTest, aSecondLoadThatSucceedsNeedsNoCopy)
{
    save(sampleArchive());
    m_files->isUnreadable = true;
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    m_files->isUnreadable = false;
    EXPECT_EQ(load(), sampleArchive());
    save(emptyArchive());
    EXPECT_TRUE(otherFiles().isEmpty());
}

TEST_F(UnreadableArchiveTest, anArchiveBehindALinkIsReplacedWhereItIs)
{
    QDir().mkpath(folder());
    const QString synced = m_directory.filePath(QStringLiteral("synced"));
    QDir().mkpath(synced);
    const QString real = synced + QStringLiteral("/talvo.json");
    ASSERT_TRUE(QFile::link(real, file()));
    // The link leads nowhere as yet: perhaps the folder is not there, so that is no first start.
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    save(sampleArchive());
    EXPECT_TRUE(QFileInfo(file()).isSymLink());
    EXPECT_EQ(bytes(real), encodeArchive(sampleArchive()));
    EXPECT_EQ(load(), sampleArchive());

    QFile broken(real);
    ASSERT_TRUE(broken.open(QFile::WriteOnly));
    broken.close();
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    save(sampleArchive());
    EXPECT_EQ(QDir(synced).entryList({QStringLiteral("chat-archive.unreadable-*")}).size(), 1);
}

/// As with a drive that is plugged in after the first message could not be saved.
TEST_F(UnreadableArchiveTest, anArchiveWhoseFolderComesBackAfterAFailedSaveIsKept)
{
    QDir().mkpath(folder());
    const QString drive = m_directory.filePath(QStringLiteral("drive"));
    const QString real = drive + QStringLiteral("/talvo.json");
    ASSERT_TRUE(QFile::link(real, file()));
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    EXPECT_EQ(failureOf(m_store->save(emptyArchive())), PlatformFailure::archiveNotWritable);

    QDir().mkpath(drive);
    QFile archive(real);
    ASSERT_TRUE(archive.open(QFile::WriteOnly));
    archive.write("all of the conversations");
    archive.close();
    save(emptyArchive());
    EXPECT_EQ(bytes(real), encodeArchive(emptyArchive()));
    const QStringList kept = QDir(drive).entryList({QStringLiteral("chat-archive.unreadable-*")});
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(bytes(drive + u'/' + kept.constFirst()), "all of the conversations");
}

/// The same for the whole folder, behind a link.
TEST_F(UnreadableArchiveTest, anArchiveThatIsThereAfterAStartWithoutOneIsKept)
{
    const QString drive = m_directory.filePath(QStringLiteral("drive"));
    ASSERT_TRUE(QFile::link(drive, folder()));
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_EQ(failureOf(m_store->save(emptyArchive())), PlatformFailure::folderNotCreatable);

    QDir().mkpath(drive);
    writeFile("all of the conversations");
    save(emptyArchive());
    EXPECT_EQ(bytes(file()), encodeArchive(emptyArchive()));
    const QStringList kept = QDir(drive).entryList({QStringLiteral("chat-archive.unreadable-*")});
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(bytes(drive + u'/' + kept.constFirst()), "all of the conversations");
}

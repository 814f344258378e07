#include "Chat/ChatArchiveStore.h"

#include "Chat/ChatArchiveCoding.h"
#include "Chat/FaultyFileManager.h"
#include "Chat/SampleArchives.h"
#include "Platform/PlatformError.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Talvo;

namespace {

ChatArchive archiveNamed(const QString &memory)
{
    ChatArchive archive = sampleArchive();
    archive.memory = memory;
    return archive;
}

/// One that is read ahead.
ChatArchive largeArchive()
{
    return archiveOfContent(QByteArray(5 << 20, 'a'));
}

#ifdef __linux__
int niceOfThisThread()
{
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

/// Knows the nice value of the thread that asked for the file.
class AskedFileManager : public FaultyFileManager
{
public:
    using FaultyFileManager::FaultyFileManager;

    bool fileExists(const QString &path) const override
    {
        niceOfAsker = niceOfThisThread();
        return FaultyFileManager::fileExists(path);
    }

    mutable std::atomic<int> niceOfAsker = 0;
};
#endif

} // namespace

class ChatArchiveStoreTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_directory.isValid()); }

    QString folder() const { return m_directory.filePath(QStringLiteral("Talvo")); }
    QString file() const { return folder() + QStringLiteral("/chat-archive.json"); }

    std::optional<ChatArchive> load() { return m_store->load().result(); }
    void save(const ChatArchive &archive) { m_store->save(archive).waitForFinished(); }

    /// The failure of an operation, absent when it succeeds.
    template <class T>
    static std::optional<PlatformFailure> failureOf(QFuture<T> future)
    {
        try {
            future.waitForFinished();
            return std::nullopt;
        } catch (const PlatformError &error) {
            return error.failure();
        }
    }

    QByteArray bytes(const QString &path) const
    {
        QFile opened(path);
        EXPECT_TRUE(opened.open(QFile::ReadOnly)) << path.toStdString();
        return opened.readAll();
    }

    void writeFile(const QByteArray &content) const
    {
        QDir().mkpath(folder());
        QFile opened(file());
        ASSERT_TRUE(opened.open(QFile::WriteOnly));
        ASSERT_EQ(opened.write(content), content.size());
    }

    /// The names of all files in the folder but the archive's.
    QStringList otherFiles() const
    {
        QStringList names =
            QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        names.removeAll(QStringLiteral("chat-archive.json"));
        return names;
    }

    static mode_t modeOf(const QString &path)
    {
        struct stat status
        {
        };
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    QTemporaryDir m_directory;
    std::shared_ptr<FaultyFileManager> m_files =
        std::make_shared<FaultyFileManager>(m_directory.path());
    std::unique_ptr<ChatArchiveStore> m_store = std::make_unique<ChatArchiveStore>(m_files);
};

TEST_F(ChatArchiveStoreTest, keepsTheArchiveInItsFolder)
{
    EXPECT_EQ(m_store->fileURL(), file());
}

TEST_F(ChatArchiveStoreTest, firstStartLoadsNothingAndTheFirstSaveMakesTheFolder)
{
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_FALSE(QFile::exists(folder()));
    save(sampleArchive());
    EXPECT_EQ(bytes(file()), encodeArchive(sampleArchive()));
    EXPECT_EQ(load(), sampleArchive());
    EXPECT_EQ(modeOf(folder()), 0700U);
    EXPECT_EQ(modeOf(file()), 0600U);
    EXPECT_TRUE(otherFiles().isEmpty());
}

TEST_F(ChatArchiveStoreTest, aLaterProcessLoadsWhatWasSaved)
{
    save(sampleArchive());
    m_store = std::make_unique<ChatArchiveStore>(m_files);
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(ChatArchiveStoreTest, withoutAPlaceEveryOperationFailsAndNothingIsTouched)
{
    const auto files = std::make_shared<FaultyFileManager>(QString());
    ChatArchiveStore store(files);
    EXPECT_EQ(store.fileURL(), QStringLiteral("/dev/null"));
    store.readAhead();
    const auto expectUnavailable = [](auto future) {
        try {
            future.waitForFinished();
            ADD_FAILURE();
        } catch (const ChatArchiveStore::StoreError &error) {
            EXPECT_EQ(error.errorCase(),
                      ChatArchiveStore::StoreError::Case::applicationSupportUnavailable);
            EXPECT_EQ(error.localizedDescription(),
                      QStringLiteral("Sohbet arşivi için uygulama klasörü oluşturulamadı."));
        }
    };
    expectUnavailable(store.load());
    expectUnavailable(store.save(sampleArchive()));
    expectUnavailable(store.load());
    EXPECT_EQ(files->operationCount, 0);
}

TEST_F(ChatArchiveStoreTest, aFileThatIsNoArchiveStaysAsItIs)
{
    for (const QByteArray content : {"", "{\"memory\":", "{}", "\xFF\xFE"}) {
        writeFile(content);
        EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
        EXPECT_EQ(bytes(file()), content);
        EXPECT_TRUE(otherFiles().isEmpty());
    }
}

TEST_F(ChatArchiveStoreTest, whatIsNoFileCannotBeRead)
{
    QDir().mkpath(file());
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    QDir().rmdir(file());
    ASSERT_EQ(::mkfifo(QFile::encodeName(file()).constData(), 0600), 0);
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
}

TEST_F(ChatArchiveStoreTest, aLargeFileIsReadOnceWhenItWasReadAhead)
{
    save(largeArchive());
    EXPECT_EQ(load(), largeArchive());
    const int once = m_files->openCount;
    m_files->openCount = 0;
    m_store->readAhead();
    EXPECT_EQ(load(), largeArchive());
    EXPECT_EQ(m_files->openCount, once + 1) << "one more, for its size";
}

TEST_F(ChatArchiveStoreTest, whatWasReadAheadIsHandedOutOnce)
{
    save(largeArchive());
    m_store->readAhead();
    EXPECT_EQ(load(), largeArchive());
    writeFile(encodeArchive(sampleArchive()));
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(ChatArchiveStoreTest, aSaveMakesWhatWasReadAheadWorthless)
{
    save(largeArchive());
    m_store->readAhead();
    save(sampleArchive());
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(ChatArchiveStoreTest, aSmallFileIsNotReadAhead)
{
    save(sampleArchive());
    m_store->readAhead();
    save(archiveNamed(QStringLiteral("yeni"))); // behind it
    EXPECT_EQ(m_files->openCount, 1) << "for its size";
    EXPECT_EQ(load(), archiveNamed(QStringLiteral("yeni")));
}

TEST_F(ChatArchiveStoreTest, withoutAFileThereIsNothingToReadAhead)
{
    m_store->readAhead();
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_EQ(m_files->openCount, 0);
}

TEST_F(ChatArchiveStoreTest, theLoadTellsWhatFailedAhead)
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

#ifdef __linux__
TEST_F(ChatArchiveStoreTest, itsWorkerStandsBackBehindOtherThreads)
{
    const auto files = std::make_shared<AskedFileManager>(m_directory.path());
    ChatArchiveStore store(files);
    EXPECT_EQ(store.load().result(), std::nullopt);
    EXPECT_GT(files->niceOfAsker, niceOfThisThread());
}
#endif

TEST_F(ChatArchiveStoreTest, savesFinishInTheirOrder)
{
    QList<QFuture<void>> saves;
    m_files->gate.acquire();
    for (int i = 0; i < 20; ++i) {
        saves += m_store->save(archiveNamed(QString::number(i)));
    }
    auto last = m_store->load();
    m_files->gate.release();
    EXPECT_EQ(last.result(), archiveNamed(QStringLiteral("19")));
    for (auto &each : saves) {
        EXPECT_TRUE(each.isFinished());
    }
}

TEST_F(ChatArchiveStoreTest, waitingForOneOperationDoesNotBringItForward)
{
    m_files->gate.acquire();
    auto first = m_store->save(archiveNamed(QStringLiteral("1")));
    auto second = m_store->save(archiveNamed(QStringLiteral("2")));
    std::thread opener([this] {
        QThread::msleep(20);
        m_files->gate.release();
    });
    second.waitForFinished();
    EXPECT_TRUE(first.isFinished());
    opener.join();
    EXPECT_EQ(load(), archiveNamed(QStringLiteral("2")));
}

TEST_F(ChatArchiveStoreTest, callsDoNotBlockAndTakeTheArchiveByValue)
{
    ChatArchive archive = sampleArchive();
    m_files->gate.acquire();
    auto saving = m_store->save(archive);
    archive.sessions[0].messages.append(ChatMessage::make(ChatMessage::Role::user, "later"));
    archive.memory.clear();
    EXPECT_FALSE(saving.isFinished());
    m_files->gate.release();
    saving.waitForFinished();
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(ChatArchiveStoreTest, destructionWaitsForWhatWasAskedFor)
{
    m_files->gate.acquire();
    for (int i = 0; i < 5; ++i) {
        // Nobody awaits these.
        static_cast<void>(m_store->save(archiveNamed(QString::number(i))));
    }
    m_files->gate.release();
    m_store.reset();
    EXPECT_EQ(bytes(file()), encodeArchive(archiveNamed(QStringLiteral("4"))));
}

TEST_F(ChatArchiveStoreTest, aFolderDeletedMeanwhileIsMadeAgain)
{
    save(sampleArchive());
    ASSERT_TRUE(QDir(folder()).removeRecursively());
    save(archiveNamed(QStringLiteral("2")));
    EXPECT_EQ(load(), archiveNamed(QStringLiteral("2")));
}

TEST_F(ChatArchiveStoreTest, aFileInTheFoldersPlaceFailsTheSaveAndStays)
{
    QFile blocking(folder());
    ASSERT_TRUE(blocking.open(QFile::WriteOnly));
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_EQ(failureOf(m_store->save(sampleArchive())), PlatformFailure::folderNotCreatable);
    EXPECT_TRUE(QFileInfo(folder()).isFile());
}

TEST_F(ChatArchiveStoreTest, aFailedSaveLeavesThePreviousFile)
{
    save(sampleArchive());
    m_files->isDiskFull = true;
    EXPECT_EQ(failureOf(m_store->save(emptyArchive())), PlatformFailure::diskFull);
    EXPECT_EQ(bytes(file()), encodeArchive(sampleArchive()));
    EXPECT_TRUE(otherFiles().isEmpty());
    m_files->isDiskFull = false;
    EXPECT_EQ(failureOf(m_store->save(emptyArchive())), std::nullopt);
    EXPECT_EQ(load(), emptyArchive());
}

TEST_F(ChatArchiveStoreTest, anArchiveThatCannotBeEncodedLeavesThePreviousFile)
{
    save(sampleArchive());
    const ChatSession undated{sessionID, QString(), {}, {std::nan("")}};
    EXPECT_EQ(failureOf(m_store->save(archiveOfSession(undated))),
              PlatformFailure::archiveNotWritable);
    EXPECT_EQ(bytes(file()), encodeArchive(sampleArchive()));
    EXPECT_TRUE(otherFiles().isEmpty());
}

// The file that could not be loaded

TEST_F(ChatArchiveStoreTest, theFirstSaveAfterAFailedLoadKeepsTheOldFile)
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

TEST_F(ChatArchiveStoreTest, aFileThatCannotBeReadIsKeptToo)
{
    save(sampleArchive());
    m_files->isUnreadable = true;
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    save(emptyArchive());
    ASSERT_EQ(otherFiles().size(), 1);
    EXPECT_EQ(bytes(folder() + u'/' + otherFiles().constFirst()), encodeArchive(sampleArchive()));
}

TEST_F(ChatArchiveStoreTest, everyFailedLoadKeepsAnotherFile)
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

TEST_F(ChatArchiveStoreTest, aTakenNameGetsANumber)
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

TEST_F(ChatArchiveStoreTest, withoutACopyTheSaveFailsAndReplacesNothing)
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

TEST_F(ChatArchiveStoreTest, withoutANameForTheCopyTheSaveFailsAndReplacesNothing)
{
    writeFile("bozuk");
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    m_files->areNamesTaken = true;
    EXPECT_EQ(failureOf(m_store->save(sampleArchive())), PlatformFailure::archiveNotKept);
    EXPECT_EQ(bytes(file()), "bozuk");
}

TEST_F(ChatArchiveStoreTest, withoutMemoryItSaysSoAndReplacesNothing)
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

TEST_F(ChatArchiveStoreTest, aSaveThatFailsAfterTheCopyMakesNoSecondOne)
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

TEST_F(ChatArchiveStoreTest, aFileThatIsGoneMeanwhileNeedsNoCopy)
{
    writeFile("bozuk");
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotValid);
    ASSERT_TRUE(QDir(folder()).removeRecursively());
    save(sampleArchive());
    EXPECT_TRUE(otherFiles().isEmpty());
    EXPECT_EQ(load(), sampleArchive());
}

TEST_F(ChatArchiveStoreTest, aFolderInTheFilesPlaceIsNotLost)
{
    QDir().mkpath(file());
    QFile inside(file() + QStringLiteral("/x"));
    ASSERT_TRUE(inside.open(QFile::WriteOnly));
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    EXPECT_EQ(failureOf(m_store->save(sampleArchive())), PlatformFailure::archiveNotKept);
    EXPECT_TRUE(inside.exists());
}

TEST_F(ChatArchiveStoreTest, noCopyAfterASuccessfulLoadOrWithoutOne)
{
    writeFile("bozuk");
    save(sampleArchive()); // nobody tried to load it
    EXPECT_TRUE(otherFiles().isEmpty());
    EXPECT_EQ(load(), sampleArchive());
    save(emptyArchive());
    EXPECT_TRUE(otherFiles().isEmpty());
}

TEST_F(ChatArchiveStoreTest, aSecondLoadThatSucceedsNeedsNoCopy)
{
    save(sampleArchive());
    m_files->isUnreadable = true;
    EXPECT_EQ(failureOf(m_store->load()), PlatformFailure::archiveNotReadable);
    m_files->isUnreadable = false;
    EXPECT_EQ(load(), sampleArchive());
    save(emptyArchive());
    EXPECT_TRUE(otherFiles().isEmpty());
}

TEST_F(ChatArchiveStoreTest, anArchiveBehindALinkIsReplacedWhereItIs)
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

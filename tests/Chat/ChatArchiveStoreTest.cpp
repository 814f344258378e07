#include "Chat/ChatArchiveStoreFixture.h"

#include "Chat/ChatArchiveCoding.h"

#include <QSemaphore>
#include <QThread>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <cmath>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

using namespace Talvo;

#ifdef __linux__
namespace {

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

} // namespace
#endif

class ChatArchiveStoreTest : public ChatArchiveStoreFixture
{
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

#ifdef __linux__
TEST_F(ChatArchiveStoreTest, itsWorkerStandsBackBehindOtherThreads)
{
    const auto files = std::make_shared<AskedFileManager>(m_directory.path());
    ChatArchiveStore store(files);
    EXPECT_EQ(store.load().result(), std::nullopt);
    EXPECT_GT(files->niceOfAsker, niceOfThisThread());
}

TEST_F(ChatArchiveStoreTest, commonThreadsDoNotStandBackWithIt)
{
    QThreadPool &common = *QThreadPool::globalInstance();
    common.waitForDone(); // it has no thread now
    save(archiveNamed(QStringLiteral("1")));
    save(archiveNamed(QStringLiteral("2"))); // the first file is closed

    QSemaphore begun;
    QList<QFuture<int>> values;
    for (int i = 0; i < common.maxThreadCount(); ++i) {
        values += QtConcurrent::run([&begun, count = common.maxThreadCount()] {
            // Each on a thread of its own.
            begun.release();
            begun.acquire(count);
            begun.release(count);
            return niceOfThisThread();
        });
    }
    begun.acquire(common.maxThreadCount());
    begun.release(common.maxThreadCount());
    for (QFuture<int> &value : values) {
        EXPECT_EQ(value.result(), niceOfThisThread());
    }
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

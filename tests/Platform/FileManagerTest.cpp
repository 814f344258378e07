#include "Platform/FileManager.h"

#include "Platform/PlatformError.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Talvo;

class FileManagerTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_directory.isValid()); }

    QString path(const char *name) const { return m_directory.filePath(QString::fromUtf8(name)); }

    QByteArray bytes(const QString &name) const
    {
        QFile file(name);
        EXPECT_TRUE(file.open(QFile::ReadOnly)) << name.toStdString();
        return file.readAll();
    }

    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    void replace(const QString &name, const QByteArray &content) const
    {
        m_files.replaceFile(name, [&](const FileManager::Sink &sink) { sink(content); });
    }

    QStringList names() const
    {
        return QDir(m_directory.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    static mode_t modeOf(const QString &name)
    {
        struct stat status
        {
        };
        EXPECT_EQ(::stat(QFile::encodeName(name).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    /// The error of an operation, absent when it succeeds.
    template <class Operation>
    static std::optional<PlatformError> errorOf(Operation operation)
    {
        try {
            operation();
            return std::nullopt;
        } catch (const PlatformError &error) {
            return error;
        }
    }

    template <class Operation>
    static std::optional<PlatformFailure> failureOf(Operation operation)
    {
        const auto error = errorOf(operation);
        return error ? std::optional(error->failure()) : std::nullopt;
    }

    QTemporaryDir m_directory;
    FileManager m_files;
};

TEST_F(FileManagerTest, namesTheUsersDataDirectory)
{
    qputenv("XDG_DATA_HOME", "/somewhere/else");
    EXPECT_EQ(m_files.applicationSupportDirectory(), QStringLiteral("/somewhere/else"));
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(m_files.applicationSupportDirectory(),
              QDir::homePath() + QStringLiteral("/.local/share"));
}

TEST_F(FileManagerTest, existenceCountsWhateverIsThere)
{
    write(path("file"), "");
    ASSERT_TRUE(QFile::link(path("nowhere"), path("link")));
    EXPECT_TRUE(m_files.fileExists(path("file")));
    EXPECT_TRUE(m_files.fileExists(m_directory.path()));
    EXPECT_TRUE(m_files.fileExists(path("link")));
    EXPECT_FALSE(m_files.fileExists(path("nowhere")));
    EXPECT_FALSE(m_files.fileExists(path("no/where")));
    EXPECT_FALSE(m_files.fileExists(path("file/below")));
    // Not known to be absent.
    EXPECT_TRUE(m_files.fileExists(path(QByteArray(300, 'x').constData())));
}

TEST_F(FileManagerTest, makesFoldersForTheOwnerOnly)
{
    m_files.createDirectory(path("a/b/c"));
    for (const char *name : {"a", "a/b", "a/b/c"}) {
        EXPECT_EQ(modeOf(path(name)), 0700U);
    }
}

TEST_F(FileManagerTest, leavesExistingFoldersAsTheyAre)
{
    ASSERT_EQ(::mkdir(QFile::encodeName(path("a")).constData(), 0755), 0);
    m_files.createDirectory(path("a/b/"));
    m_files.createDirectory(path("a/b"));
    EXPECT_EQ(modeOf(path("a")), 0755U);
    EXPECT_TRUE(QFileInfo(path("a/b")).isDir());
    ASSERT_TRUE(QFile::link(path("a"), path("link")));
    m_files.createDirectory(path("link/c"));
    EXPECT_TRUE(QFileInfo(path("a/c")).isDir());
}

TEST_F(FileManagerTest, tellsWhyAFolderCannotBeMade)
{
    write(path("file"), "");
    for (const char *name : {"file", "file/below"}) {
        const auto error = errorOf([&] { m_files.createDirectory(path(name)); });
        ASSERT_TRUE(error) << name;
        EXPECT_EQ(error->failure(), PlatformFailure::folderNotCreatable);
        EXPECT_TRUE(error->localizedDescription().endsWith(
            QStringLiteral(" (klasör yerine bir dosya var)")));
    }
}

TEST_F(FileManagerTest, readsAWholeFileAndReservesThePadding)
{
    for (const qsizetype size : {0, 1, 100, 65535, 65536, 65537, 3000000}) {
        const QByteArray content(size, 'x');
        write(path("file"), content);
        QByteArray read = m_files.openFile(path("file"))->readAll(64);
        EXPECT_EQ(read, content);
        const char *before = read.constData();
        read.resize(size + 64); // does not move it
        EXPECT_EQ(read.constData(), before);
    }
}

TEST_F(FileManagerTest, readsPiecesOfAFile)
{
    write(path("file"), "0123456789");
    const auto file = m_files.openFile(path("file"));
    EXPECT_EQ(file->size(), 10);
    QByteArray read = "x";
    file->read(3, 2, read);
    file->read(0, 1, read);
    EXPECT_EQ(read, "x340");
    file->read(8, 5, read);
    EXPECT_EQ(read, "x34089");
    file->read(20, 5, read);
    EXPECT_EQ(read, "x34089");
}

TEST_F(FileManagerTest, readsWhatWasAddedMeanwhile)
{
    write(path("file"), QByteArray(100, 'x'));
    const auto file = m_files.openFile(path("file"));
    write(path("file"), QByteArray(300000, 'y'));
    EXPECT_EQ(file->readAll(0), QByteArray(300000, 'y'));
    write(path("file"), "z");
    EXPECT_EQ(file->readAll(64), "z");
}

#ifdef Q_OS_LINUX

TEST_F(FileManagerTest, readsAFileThatGivesNoSize)
{
    EXPECT_TRUE(
        m_files.openFile(QStringLiteral("/proc/self/status"))->readAll(0).contains("\nPid:"));
}

TEST_F(FileManagerTest, aFileThatBreaksOffCannotBeRead)
{
    const QString file = QStringLiteral("/proc/self/mem"); // nothing is mapped at its beginning
    const auto error = errorOf([&] { (void)m_files.openFile(file)->readAll(0); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->failure(), PlatformFailure::archiveNotReadable);
    EXPECT_TRUE(error->localizedDescription().endsWith(QStringLiteral(" (giriş/çıkış hatası)")));
}

#endif

TEST_F(FileManagerTest, readsNothingButFiles)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("fifo")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(path("loop"), path("loop")));
    write(path("file"), "");
    struct Case
    {
        QString path;
        const char *detail;
    };
    const Case cases[] = {
        {path("missing"), "dosya ya da klasör yok"},
        {m_directory.path(), "dosya yerine bir klasör var"},
        {path("fifo"), "dosya değil"},
        {QStringLiteral("/dev/zero"), "dosya değil"},
        {path("loop"), "sembolik bağlantılar çözülemiyor"},
        {path("file/below"), "klasör yerine bir dosya var"},
        {path(QByteArray(300, 'x').constData()), "dosya yolu çok uzun"},
    };
    for (const auto &[name, detail] : cases) {
        const auto error = errorOf([&] { (void)m_files.openFile(name); });
        ASSERT_TRUE(error) << detail;
        EXPECT_EQ(error->failure(), PlatformFailure::archiveNotReadable);
        EXPECT_EQ(error->localizedDescription(),
                  platformFailureText(PlatformFailure::archiveNotReadable) +
                      QStringLiteral(" (%1)").arg(QString::fromUtf8(detail)));
    }
}

/// Nothing is forbidden to root: while this lives he is somebody else, who owns nothing.
class LikeAnyUser
{
public:
    LikeAnyUser()
    {
        constexpr uid_t nobody = 65534;
        if (m_user == 0) {
            EXPECT_EQ(::seteuid(nobody), 0);
        }
    }
    ~LikeAnyUser() { EXPECT_EQ(::seteuid(m_user), 0); }
    Q_DISABLE_COPY_MOVE(LikeAnyUser)

private:
    const uid_t m_user = ::geteuid();
};

TEST_F(FileManagerTest, aFileWithoutPermissionCannotBeRead)
{
    write(path("file"), "x");
    ASSERT_TRUE(QFile::setPermissions(path("file"), {}));
    ASSERT_EQ(::chmod(QFile::encodeName(m_directory.path()).constData(), 0711), 0);
    const LikeAnyUser user;
    EXPECT_EQ(failureOf([&] { (void)m_files.openFile(path("file")); }),
              PlatformFailure::archiveNotReadable);
    EXPECT_TRUE(m_files.fileExists(path("file")));
}

TEST_F(FileManagerTest, replacesAFileForTheOwnerOnly)
{
    replace(path("file"), "bir");
    EXPECT_EQ(bytes(path("file")), "bir");
    ASSERT_TRUE(QFile::setPermissions(path("file"), QFile::ReadOwner | QFile::ReadOther));
    replace(path("file"), "iki");
    EXPECT_EQ(bytes(path("file")), "iki");
    EXPECT_EQ(modeOf(path("file")), 0600U);
    EXPECT_EQ(names(), QStringList{QStringLiteral("file")});
}

TEST_F(FileManagerTest, aReaderKeepsTheOldContent)
{
    replace(path("file"), "eski");
    QFile reader(path("file"));
    ASSERT_TRUE(reader.open(QFile::ReadOnly));
    replace(path("file"), "yeni içerik");
    EXPECT_EQ(reader.readAll(), "eski");
    EXPECT_EQ(bytes(path("file")), "yeni içerik");
}

#ifdef Q_OS_LINUX

/// How many files this process has open.
static uint openFiles()
{
    return QDir(QStringLiteral("/proc/self/fd")).count();
}

TEST_F(FileManagerTest, doesNotHoldOnToReplacedContent)
{
    const auto before = openFiles();
    for (int i = 0; i < 50; ++i) {
        replace(path("file"), "yeni");
    }
    // It is closed by threads that nobody can wait for; they keep some files of their own.
    constexpr uint ownOfThreads = 8;
    QDeadlineTimer patience(std::chrono::seconds(10));
    while (openFiles() > before + ownOfThreads && !patience.hasExpired()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    EXPECT_LE(openFiles(), before + ownOfThreads);
}

#endif

TEST_F(FileManagerTest, replacesWhatItMayNotRead)
{
    replace(path("file"), "eski");
    ASSERT_TRUE(QFile::setPermissions(path("file"), {}));
    ASSERT_EQ(::chmod(QFile::encodeName(m_directory.path()).constData(), 0777), 0);
    {
        const LikeAnyUser user;
        EXPECT_THROW((void)m_files.openFile(path("file")), PlatformError);
        replace(path("file"), "yeni");
    }
    EXPECT_EQ(bytes(path("file")), "yeni");
}

TEST_F(FileManagerTest, writesAllPiecesInOrder)
{
    QByteArray expected;
    m_files.replaceFile(path("file"), [&](const FileManager::Sink &sink) {
        for (int i = 0; i < 100; ++i) {
            const QByteArray piece = QByteArray::number(i).repeated(10000);
            expected += piece;
            sink(piece);
            sink({});
        }
    });
    EXPECT_EQ(bytes(path("file")), expected);
}

TEST_F(FileManagerTest, afterAFailureTheOldFileIsThereAndNothingElse)
{
    struct ProductionFailure
    {
    };
    replace(path("file"), "eski");
    const auto produce = [](const FileManager::Sink &sink) {
        sink("yarım");
        throw ProductionFailure();
    };
    EXPECT_THROW(m_files.replaceFile(path("file"), produce), ProductionFailure);
    EXPECT_EQ(bytes(path("file")), "eski");
    EXPECT_EQ(names(), QStringList{QStringLiteral("file")});
}

TEST_F(FileManagerTest, aWriteThatStopsHalfwayIsAFailure)
{
    // A bound on the size of files makes the system take a part of what is written.
    replace(path("file"), "eski");
    rlimit previous{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &previous), 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{100000, previous.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto error = errorOf([&] { replace(path("file"), QByteArray(300000, 'x')); });
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &previous), 0);
    std::signal(SIGXFSZ, previousHandler);

    ASSERT_TRUE(error);
    EXPECT_EQ(error->failure(), PlatformFailure::archiveNotWritable);
    EXPECT_TRUE(error->localizedDescription().endsWith(QStringLiteral(" (dosya çok büyük)")));
    EXPECT_EQ(bytes(path("file")), "eski");
    EXPECT_EQ(names(), QStringList{QStringLiteral("file")});
}

TEST_F(FileManagerTest, aFolderThatAppearsInTheFilesPlaceIsAFailure)
{
    const auto error = errorOf([&] {
        m_files.replaceFile(path("file"), [&](const FileManager::Sink &sink) {
            sink("yeni");
            QDir().mkdir(path("file"));
        });
    });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->failure(), PlatformFailure::archiveNotWritable);
    EXPECT_TRUE(
        error->localizedDescription().endsWith(QStringLiteral(" (dosya yerine bir klasör var)")));
    EXPECT_EQ(names(), QStringList{QStringLiteral("file")});
}

TEST_F(FileManagerTest, replacesOnlyFiles)
{
    ASSERT_TRUE(QDir().mkdir(path("folder")));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("fifo")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), path("device")));
    ASSERT_TRUE(QFile::link(path("loop"), path("loop")));
    for (const char *name : {"folder", "fifo", "device", "loop", "missing/file"}) {
        EXPECT_EQ(failureOf([&] { replace(path(name), "x"); }), PlatformFailure::archiveNotWritable)
            << name;
    }
    EXPECT_TRUE(QFileInfo(path("folder")).isDir());
    EXPECT_EQ(names().size(), 4);
}

TEST_F(FileManagerTest, followsLinksAndReplacesTheRealFile)
{
    m_files.createDirectory(path("real"));
    write(path("real/file"), "eski");
    ASSERT_EQ(::symlink("real/file", QFile::encodeName(path("relative")).constData()), 0);
    ASSERT_TRUE(QFile::link(path("relative"), path("second")));
    replace(path("second"), "yeni");
    EXPECT_EQ(bytes(path("real/file")), "yeni");
    EXPECT_TRUE(QFileInfo(path("relative")).isSymLink());
    EXPECT_TRUE(QFileInfo(path("second")).isSymLink());

    ASSERT_TRUE(QFile::remove(path("real/file")));
    replace(path("second"), "ilk");
    EXPECT_EQ(bytes(path("real/file")), "ilk");
}

TEST_F(FileManagerTest, removesWhatAKilledProcessLeft)
{
    // Backups and the temporary files of other programs among them.
    const QStringList others = {
        QStringLiteral(".file.abcdef"),        QStringLiteral(".file.backup"),
        QStringLiteral(".file.talvo-abc"),     QStringLiteral(".file.talvo-abcdefg"),
        QStringLiteral(".file.talvo-abc-ef"),  QStringLiteral(".file.talvo_abcdef"),
        QStringLiteral(".other.talvo-abcdef"), QStringLiteral("file.talvo-abcdef"),
        QStringLiteral(".file.x.talvo-abcdef")};
    for (const QString &name : others) {
        write(m_directory.filePath(name), "x");
    }
    write(path(".file.talvo-abcdef"), "x");
    write(path(".file.talvo-A1b2C3"), "x");
    ASSERT_TRUE(QDir().mkdir(path(".file.talvo-folder")));
    ASSERT_TRUE(QFile::link(path("file.talvo-abcdef"), path(".file.talvo-linked")));
    replace(path("file"), "yeni");
    QStringList expected = others;
    expected << QStringLiteral("file") << QStringLiteral(".file.talvo-folder")
             << QStringLiteral(".file.talvo-linked");
    QStringList found = names();
    found.sort();
    expected.sort();
    EXPECT_EQ(found, expected);
}

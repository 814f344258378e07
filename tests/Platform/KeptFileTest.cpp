#include "Platform/FileManager.h"
#include "Platform/PlatformError.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <unistd.h>

#ifdef Q_OS_LINUX
#include <array>
#include <cstddef>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#endif

using namespace Talvo;

using Outcome = FileManager::KeepOutcome;

class KeptFileTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_directory.isValid()); }

    QString path(const char *name) const { return m_directory.filePath(QString::fromUtf8(name)); }

    static QByteArray bytes(const QString &name)
    {
        QFile file(name);
        EXPECT_TRUE(file.open(QFile::ReadOnly)) << name.toStdString();
        return file.readAll();
    }

    static void write(const QString &name, const QByteArray &content)
    {
        QFile file(name);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    Outcome keep(const char *existing, const char *name) const
    {
        return m_files.keepFileAs(path(existing), QString::fromUtf8(name));
    }

    void replace(const char *name, const QByteArray &content) const
    {
        m_files.replaceFile(path(name), [&](const FileManager::Sink &sink) { sink(content); });
    }

    const QTemporaryDir m_directory;
    const FileManager m_files;
};

TEST_F(KeptFileTest, outlastsTheReplacement)
{
    write(path("file"), "bir");
    EXPECT_EQ(keep("file", "kept"), Outcome::kept);
    EXPECT_EQ(keep("file", "kept"), Outcome::nameTaken);
    EXPECT_EQ(keep("missing", "x"), Outcome::fileMissing);
    replace("file", "iki");
    EXPECT_EQ(bytes(path("kept")), "bir");
}

TEST_F(KeptFileTest, standsBesideTheFileBehindALink)
{
    m_files.createDirectory(path("real"));
    ASSERT_TRUE(QFile::link(path("real/file"), path("link")));
    EXPECT_EQ(keep("link", "kept"), Outcome::fileMissing);
    write(path("real/file"), "bir");
    EXPECT_EQ(keep("link", "kept"), Outcome::kept);
    EXPECT_EQ(bytes(path("real/kept")), "bir");
    EXPECT_FALSE(QFileInfo(path("real/kept")).isSymLink());
}

TEST_F(KeptFileTest, isNoFolder)
{
    m_files.createDirectory(path("folder"));
    try {
        (void)keep("folder", "x");
        FAIL() << "kept";
    } catch (const PlatformError &error) {
        EXPECT_EQ(error.failure(), PlatformFailure::archiveNotKept);
    }
    EXPECT_FALSE(QFile::exists(path("x")));
}

#ifdef Q_OS_LINUX
namespace {

/// Lets every hard link of this thread fail from now on, as on a disk that knows none.
void refuseHardLinks()
{
    constexpr auto refusal = SECCOMP_RET_ERRNO | EPERM;
    // A target counts the instructions between itself and the jump. Not every architecture has
    // both calls; an unknown number never matches.
#ifdef SYS_link
    constexpr unsigned oldCall = SYS_link;
#else
    constexpr unsigned oldCall = SYS_linkat;
#endif
    std::array<sock_filter, 5> code = {{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, oldCall, 2, 0),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_linkat, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_RET | BPF_K, refusal),
    }};
    const sock_fprog program{code.size(), code.data()};
    ASSERT_EQ(::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
    ASSERT_EQ(::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program), 0);
}

} // namespace

class KeptFileWithoutHardLinksTest : public KeptFileTest
{
protected:
    /// On a thread of its own: it never gets the right to link files back.
    Outcome keepWithoutHardLinks(const char *existing, const char *name) const
    {
        auto outcome = Outcome::fileMissing;
        std::thread([&] {
            refuseHardLinks();
            const bool isLinked =
                ::link(path("any").toUtf8().constData(), path("x").toUtf8().constData()) == 0;
            EXPECT_FALSE(isLinked);
            outcome = keep(existing, name);
        }).join();
        return outcome;
    }

    void SetUp() override
    {
        KeptFileTest::SetUp();
        write(path("any"), "any");
        write(path("file"), "bir");
    }
};

TEST_F(KeptFileWithoutHardLinksTest, isACopy)
{
    EXPECT_EQ(keepWithoutHardLinks("file", "kept"), Outcome::kept);
    replace("file", "iki");
    EXPECT_EQ(bytes(path("kept")), "bir");
}

TEST_F(KeptFileWithoutHardLinksTest, replacesNoOther)
{
    write(path("kept"), "eski");
    EXPECT_EQ(keepWithoutHardLinks("file", "kept"), Outcome::nameTaken);
    EXPECT_EQ(bytes(path("kept")), "eski");
}

TEST_F(KeptFileWithoutHardLinksTest, isNoFileThatIsNotThere)
{
    EXPECT_EQ(keepWithoutHardLinks("missing", "x"), Outcome::fileMissing);
    EXPECT_FALSE(QFile::exists(path("x")));
}
#endif

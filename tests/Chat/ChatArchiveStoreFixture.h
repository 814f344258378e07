#pragma once

#include "Chat/ChatArchiveStore.h"
#include "Chat/FaultyFileManager.h"
#include "Chat/SampleArchives.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace Talvo {

/// The sample archive with another memory.
inline ChatArchive archiveNamed(const QString &memory)
{
    ChatArchive archive = sampleArchive();
    archive.memory = memory;
    return archive;
}

/// A store on a folder of its own, and what its tests ask of the two.
class ChatArchiveStoreFixture : public testing::Test
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

} // namespace Talvo

#pragma once

#include "Chat/ChatArchive.h"
#include "Platform/FileManager.h"
#include "Platform/LocalizedError.h"

#include <QFuture>
#include <QThreadPool>

#include <future>
#include <memory>
#include <optional>

namespace Talvo {

/// Owns the one file in which the application keeps its ChatArchive.
///
/// A serialised object with a worker thread of its own, which stands back behind others: operations
/// run there one at a time, in the order of the calls, on values; a call never blocks its caller.
/// The returned futures carry the result or the error and may be awaited on any thread. Destruction
/// waits for everything that was asked for, so that no save that was started is lost.
///
/// Nobody else is expected to write the file meanwhile: what another program changes there after
/// the load is neither noticed nor merged, and the next save replaces it.
class ChatArchiveStore
{
public:
    /// What the store itself can find wrong.
    class StoreError : public TypedError<StoreError>
    {
    public:
        /// What is wrong.
        enum class Case {
            /// The user has no Application Support directory.
            applicationSupportUnavailable,
        };

        /// With the Turkish sentence of the case.
        explicit StoreError(Case errorCase);
        /// What is wrong. Any thread.
        [[nodiscard]] Case errorCase() const noexcept { return m_case; }

    private:
        Case m_case;
    };

    /// Never fails: without an Application Support directory the first load or save does.
    explicit ChatArchiveStore(
        std::shared_ptr<const FileManager> fileManager = std::make_shared<FileManager>());
    ~ChatArchiveStore();
    Q_DISABLE_COPY_MOVE(ChatArchiveStore)

    /// Full path of the archive; "/dev/null", which is never opened, when there is no place for it.
    [[nodiscard]] const QString &fileURL() const noexcept { return m_fileURL; }

    /// Begins to read a large file, for a load() that follows and then has less to wait for, or
    /// fails as the reading did. Nothing comes of a small one, which is read in less time than a
    /// window is drawn in, nor of one that cannot be opened: load() meets that itself.
    void readAhead();

    /// Reads and decodes the file; no archive when there is no file yet. Fails with StoreError or
    /// PlatformError; an unreadable file is left exactly as it is.
    [[nodiscard]] QFuture<std::optional<ChatArchive>> load();

    /// Writes one whole archive, replacing the previous file atomically and durably; makes the
    /// folder when it is missing. Fails with StoreError or PlatformError, the previous file intact.
    ///
    /// The first save after a failed load first keeps the file that could not be loaded, as
    /// "chat-archive.unreadable-<UTC time>.json" beside it; where that cannot be done the save
    /// fails and replaces nothing. The same for a file that was not there when it was to be loaded,
    /// and is by then: a drive may have been connected meanwhile.
    [[nodiscard]] QFuture<void> save(ChatArchive archive);

private:
    [[nodiscard]] bool isLargeFile() const;
    void readAheadNow();
    [[nodiscard]] std::optional<ChatArchive> loadNow();
    void saveNow(const ChatArchive &archive);
    void keepUnreadableFile();

    const std::shared_ptr<const FileManager> m_fileManager;
    const QString m_fileURL;
    bool m_mustKeepOldFile = false; ///< touched on the worker only, as is the next
    std::future<std::optional<ChatArchive>> m_readAhead; ///< finished; until load() hands it out
    QThreadPool m_worker; ///< one thread; last, so that it ends first
};

} // namespace Talvo

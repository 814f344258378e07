#include "Chat/ChatArchiveStore.h"

#include "Chat/ChatArchiveCoding.h"
#include "Platform/PlatformError.h"
#include "Platform/SystemErrorText.h"
#include "Platform/ThreadPriority.h"

#include <QDateTime>
#include <QFileInfo>
#include <QPromise>

#include <cerrno>
#include <exception>
#include <new>
#include <type_traits>
#include <utility>

namespace Talvo {

namespace {

/// Stands for "no place at all"; never opened.
constexpr QLatin1StringView noLocation("/dev/null");

QString storeErrorText(ChatArchiveStore::StoreError::Case errorCase)
{
    switch (errorCase) {
    case ChatArchiveStore::StoreError::Case::applicationSupportUnavailable:
        return QStringLiteral("Sohbet arşivi için uygulama klasörü oluşturulamadı.");
    }
    Q_UNREACHABLE();
}

QString archivePath(const FileManager &fileManager)
{
    const QString directory = fileManager.applicationSupportDirectory();
    return directory.isEmpty() ? QString(noLocation)
                               : directory + QStringLiteral("/Talvo/chat-archive.json");
}

void requireLocation(const QString &path)
{
    if (path == noLocation) {
        throw ChatArchiveStore::StoreError(
            ChatArchiveStore::StoreError::Case::applicationSupportUnavailable);
    }
}

/// "chat-archive.unreadable-20250314T093015Z.json", with "-2", "-3" and so on behind the time when
/// that name is taken.
QString unreadableFileName(const QDateTime &time, int attempt)
{
    const QString number = attempt == 1 ? QString() : QStringLiteral("-%1").arg(attempt);
    return QStringLiteral("chat-archive.unreadable-") +
           time.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'")) + number +
           QStringLiteral(".json");
}

/// Runs an operation on the worker after all that was given to it before. When memory runs out,
/// that is a failure of the file like any other.
///
/// No QtConcurrent::run: whoever waits for its future runs the operation himself if it has not
/// begun, ahead of its turn and beside the worker.
template <class Operation>
auto enqueue(QThreadPool &worker, PlatformFailure memoryFailure, Operation operation)
{
    using Result = std::invoke_result_t<Operation>;
    const auto promise = std::make_shared<QPromise<Result>>();
    promise->start();
    worker.start([promise, memoryFailure, operation = std::move(operation)] {
        lowerThreadPriority();
        try {
            if constexpr (std::is_void_v<Result>) {
                operation();
            } else {
                promise->addResult(operation());
            }
        } catch (const std::bad_alloc &) {
            promise->setException(fileError(memoryFailure, ENOMEM));
        } catch (...) {
            promise->setException(std::current_exception());
        }
        promise->finish();
    });
    return promise->future();
}

} // namespace

ChatArchiveStore::StoreError::StoreError(Case errorCase)
    : TypedError(storeErrorText(errorCase))
    , m_case(errorCase)
{
}

ChatArchiveStore::ChatArchiveStore(std::shared_ptr<const FileManager> fileManager)
    : m_fileManager(std::move(fileManager))
    , m_fileURL(archivePath(*m_fileManager))
{
    m_worker.setMaxThreadCount(1);
}

ChatArchiveStore::~ChatArchiveStore()
{
    m_worker.waitForDone();
}

void ChatArchiveStore::readAhead()
{
    enqueue(m_worker, PlatformFailure::archiveNotReadable, [this] { readAheadNow(); });
}

QFuture<std::optional<ChatArchive>> ChatArchiveStore::load()
{
    return enqueue(m_worker, PlatformFailure::archiveNotReadable, [this] {
        return m_readAhead.valid() ? std::exchange(m_readAhead, {}).get() : loadNow();
    });
}

QFuture<void> ChatArchiveStore::save(ChatArchive archive)
{
    return enqueue(m_worker, PlatformFailure::archiveNotWritable,
                   [this, archive = std::move(archive)] { saveNow(archive); });
}

bool ChatArchiveStore::isLargeFile() const
{
    constexpr qsizetype smallestLarge = qsizetype{4} << 20;
    return m_fileURL != noLocation && m_fileManager->fileExists(m_fileURL) &&
           m_fileManager->openFile(m_fileURL)->size() >= smallestLarge;
}

void ChatArchiveStore::readAheadNow()
{
    if (isLargeFile()) {
        std::packaged_task<std::optional<ChatArchive>()> reading([this] { return loadNow(); });
        reading();
        m_readAhead = reading.get_future();
    }
}

std::optional<ChatArchive> ChatArchiveStore::loadNow()
{
    requireLocation(m_fileURL);
    m_mustKeepOldFile = true; // until it turns out to be readable, or is replaced
    if (!m_fileManager->fileExists(m_fileURL)) {
        return std::nullopt;
    }
    try {
        ChatArchive archive = decodeArchive(*m_fileManager->openFile(m_fileURL));
        m_mustKeepOldFile = false;
        return archive;
    } catch (const PlatformError &error) {
        throw error.withAdvice(
            QStringLiteral("Dosyaya dokunulmadı; yeni bir kayıt yapılmadan önce yanında "
                           "“chat-archive.unreadable-<tarih>.json” adıyla saklanacak."));
    }
}

void ChatArchiveStore::saveNow(const ChatArchive &archive)
{
    requireLocation(m_fileURL);
    m_readAhead = {};
    m_fileManager->createDirectory(QFileInfo(m_fileURL).path());
    keepUnreadableFile();
    m_fileManager->replaceFile(
        m_fileURL, [&archive](const FileManager::Sink &sink) { encodeArchive(archive, sink); });
    m_mustKeepOldFile = false;
}

void ChatArchiveStore::keepUnreadableFile()
{
    if (!m_mustKeepOldFile) {
        return;
    }
    constexpr int mostAttempts = 1000;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (int attempt = 1; attempt <= mostAttempts; ++attempt) {
        const auto outcome = m_fileManager->keepFileAs(m_fileURL, unreadableFileName(now, attempt));
        if (outcome != FileManager::KeepOutcome::nameTaken) {
            // One that is not there may only be out of reach, and back when this save has failed.
            m_mustKeepOldFile = outcome == FileManager::KeepOutcome::fileMissing;
            return;
        }
    }
    throw PlatformError(PlatformFailure::archiveNotKept);
}

} // namespace Talvo

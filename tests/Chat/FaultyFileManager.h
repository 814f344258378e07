#pragma once

#include "Platform/FileManager.h"
#include "Platform/PlatformError.h"

#include <QSemaphore>

#include <atomic>
#include <functional>
#include <new>
#include <utility>

namespace Talvo {

/// The real file manager, with another Application Support directory and some faults on request.
class FaultyFileManager : public FileManager
{
public:
    explicit FaultyFileManager(QString directory)
        : m_directory(std::move(directory))
    {
    }

    QString applicationSupportDirectory() const override { return m_directory; }

    bool fileExists(const QString &path) const override
    {
        ++operationCount;
        return FileManager::fileExists(path);
    }

    void createDirectory(const QString &path) const override
    {
        ++operationCount;
        FileManager::createDirectory(path);
    }

    std::unique_ptr<const ReadableFile> openFile(const QString &path) const override
    {
        ++openCount;
        if (hasNoMemory) {
            throw std::bad_alloc();
        }
        if (isUnreadable) {
            throw PlatformError(PlatformFailure::archiveNotReadable);
        }
        return FileManager::openFile(path);
    }

    void replaceFile(const QString &path,
                     const std::function<void(const Sink &)> &produce) const override
    {
        gate.acquire();
        gate.release();
        if (hasNoMemory) {
            throw std::bad_alloc();
        }
        if (!isDiskFull) {
            return FileManager::replaceFile(path, produce);
        }
        FileManager::replaceFile(path, [&](const Sink &) {
            produce([](QByteArrayView) { throw PlatformError(PlatformFailure::diskFull); });
        });
    }

    KeepOutcome keepFileAs(const QString &existing, const QString &name) const override
    {
        if (hasNoLinks) {
            throw PlatformError(PlatformFailure::archiveNotKept);
        }
        if (areNamesTaken) {
            return KeepOutcome::nameTaken;
        }
        return FileManager::keepFileAs(existing, name);
    }

    std::atomic<bool> isUnreadable = false;
    std::atomic<bool> isDiskFull = false;
    std::atomic<bool> hasNoMemory = false;
    std::atomic<bool> hasNoLinks = false;
    std::atomic<bool> areNamesTaken = false;
    mutable std::atomic<int> operationCount = 0;
    mutable std::atomic<int> openCount = 0; ///< of files, successful or not
    mutable QSemaphore gate{1};             ///< a save waits here while a test holds it

private:
    const QString m_directory;
};

} // namespace Talvo

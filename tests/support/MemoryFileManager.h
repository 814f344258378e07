#pragma once

#include "Platform/FileManager.h"
#include "Platform/PlatformError.h"

#include <QStringList>

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <vector>

namespace Talvo::Testing {

/// A file system of a few files in memory, whose reads and replacements the test can hold and
/// break.
///
/// Thread-safe: the store's worker uses it while the test looks on.
class MemoryFileManager : public FileManager
{
public:
    [[nodiscard]] QString applicationSupportDirectory() const override
    {
        return QStringLiteral("/data");
    }
    [[nodiscard]] bool fileExists(const QString &path) const override;
    void createDirectory(const QString &path) const override;
    [[nodiscard]] std::unique_ptr<const ReadableFile> openFile(const QString &path) const override;
    void replaceFile(const QString &path,
                     const std::function<void(const Sink &)> &produce) const override;
    [[nodiscard]] KeepOutcome keepFileAs(const QString &existing,
                                         const QString &name) const override;

    void put(const QString &path, const QByteArray &content);
    [[nodiscard]] std::optional<QByteArray> content(const QString &path) const;
    [[nodiscard]] QStringList paths() const;
    /// Every content that replaceFile() wrote, oldest first.
    [[nodiscard]] std::vector<QByteArray> saves() const;

    /// From now on reads and replacements wait before they begin, until release().
    void hold();
    /// Lets everything that waits go on and nothing wait any more.
    void release();
    /// Lets one waiting operation go on.
    void releaseOne();
    /// How many operations wait at this moment.
    [[nodiscard]] int waiting() const;

    /// From now on replaceFile() fails with this; absent lets it succeed.
    void breakWriting(std::optional<PlatformFailure> failure);

private:
    void passGate() const;

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_gate;
    mutable std::map<QString, QByteArray> m_files;
    mutable std::vector<QByteArray> m_saves;
    mutable int m_waiting = 0;
    mutable int m_passes = 0;
    bool m_isHeld = false;
    std::optional<PlatformFailure> m_writeFailure;
};

} // namespace Talvo::Testing

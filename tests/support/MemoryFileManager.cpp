#include "support/MemoryFileManager.h"

#include "standins/InMemoryFile.h"

namespace Talvo::Testing {

void MemoryFileManager::passGate() const
{
    std::unique_lock lock(m_mutex);
    ++m_waiting;
    m_gate.wait(lock, [this] { return !m_isHeld || m_passes > 0; });
    --m_waiting;
    if (m_isHeld) {
        --m_passes;
    }
}

bool MemoryFileManager::fileExists(const QString &path) const
{
    const std::lock_guard lock(m_mutex);
    return m_files.contains(path);
}

void MemoryFileManager::createDirectory(const QString &) const {}

std::unique_ptr<const ReadableFile> MemoryFileManager::openFile(const QString &path) const
{
    passGate();
    const std::lock_guard lock(m_mutex);
    const auto file = m_files.find(path);
    if (file == m_files.end()) {
        throw PlatformError(PlatformFailure::archiveNotReadable);
    }
    return std::make_unique<InMemoryFile>(file->second);
}

void MemoryFileManager::replaceFile(const QString &path,
                                    const std::function<void(const Sink &)> &produce) const
{
    passGate();
    QByteArray bytes;
    produce([&bytes](QByteArrayView piece) { bytes.append(piece); });
    const std::lock_guard lock(m_mutex);
    if (m_writeFailure) {
        throw PlatformError(*m_writeFailure);
    }
    m_files[path] = bytes;
    m_saves.push_back(bytes);
}

FileManager::KeepOutcome MemoryFileManager::keepFileAs(const QString &existing,
                                                       const QString &name) const
{
    const std::lock_guard lock(m_mutex);
    const auto file = m_files.find(existing);
    if (file == m_files.end()) {
        return KeepOutcome::fileMissing;
    }
    const QString additional = existing.first(existing.lastIndexOf(u'/') + 1) + name;
    const bool isAdded = m_files.try_emplace(additional, file->second).second;
    return isAdded ? KeepOutcome::kept : KeepOutcome::nameTaken;
}

void MemoryFileManager::put(const QString &path, const QByteArray &content)
{
    const std::lock_guard lock(m_mutex);
    m_files[path] = content;
}

std::optional<QByteArray> MemoryFileManager::content(const QString &path) const
{
    const std::lock_guard lock(m_mutex);
    const auto file = m_files.find(path);
    return file == m_files.end() ? std::nullopt : std::optional(file->second);
}

QStringList MemoryFileManager::paths() const
{
    const std::lock_guard lock(m_mutex);
    QStringList names;
    for (const auto &[path, bytes] : m_files) {
        names.append(path);
    }
    return names;
}

std::vector<QByteArray> MemoryFileManager::saves() const
{
    const std::lock_guard lock(m_mutex);
    return m_saves;
}

void MemoryFileManager::hold()
{
    const std::lock_guard lock(m_mutex);
    m_isHeld = true;
    m_passes = 0;
}

void MemoryFileManager::release()
{
    const std::lock_guard lock(m_mutex);
    m_isHeld = false;
    m_gate.notify_all();
}

void MemoryFileManager::releaseOne()
{
    const std::lock_guard lock(m_mutex);
    ++m_passes;
    m_gate.notify_one();
}

int MemoryFileManager::waiting() const
{
    const std::lock_guard lock(m_mutex);
    return m_waiting;
}

void MemoryFileManager::breakWriting(std::optional<PlatformFailure> failure)
{
    const std::lock_guard lock(m_mutex);
    m_writeFailure = failure;
}

} // namespace Talvo::Testing

#pragma once

#include "Platform/FileManager.h"

#include <utility>

namespace Talvo::Benchmarks {

/// The real file system, with the archives below a folder of the benchmark's.
class FolderFileManager : public FileManager
{
public:
    explicit FolderFileManager(QString folder)
        : m_folder(std::move(folder))
    {
    }
    [[nodiscard]] QString applicationSupportDirectory() const override { return m_folder; }

private:
    const QString m_folder;
};

} // namespace Talvo::Benchmarks

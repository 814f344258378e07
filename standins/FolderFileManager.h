#pragma once

#include "Platform/FileManager.h"

#include <utility>

namespace Talvo {

/// The real file system, with the user's data below one folder, which its owner removes.
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

} // namespace Talvo

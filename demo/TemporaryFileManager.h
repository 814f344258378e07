#pragma once

#include "Platform/FileManager.h"

namespace Talvo {

/// A file manager for which the user's data lie below one folder, which its owner removes.
class TemporaryFileManager : public FileManager
{
public:
    explicit TemporaryFileManager(QString directory)
        : m_directory(std::move(directory))
    {
    }

    [[nodiscard]] QString applicationSupportDirectory() const override { return m_directory; }

private:
    const QString m_directory;
};

} // namespace Talvo

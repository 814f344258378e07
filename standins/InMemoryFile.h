#pragma once

#include "Platform/ReadableFile.h"

#include <algorithm>
#include <utility>

namespace Talvo {

/// A file whose content is in memory.
class InMemoryFile : public ReadableFile
{
public:
    explicit InMemoryFile(QByteArray content)
        : m_content(std::move(content))
    {
    }

    [[nodiscard]] qsizetype size() const override { return m_content.size(); }
    void read(qsizetype offset, qsizetype count, QByteArray &to) const override
    {
        const auto rest = QByteArrayView(m_content).sliced(std::min(offset, m_content.size()));
        to.append(rest.first(std::min(count, rest.size())));
    }
    [[nodiscard]] QByteArray readAll(qsizetype padding) const override
    {
        QByteArray content;
        content.reserve(m_content.size() + padding);
        return content.append(m_content);
    }

private:
    const QByteArray m_content;
};

} // namespace Talvo

#pragma once

#include "Markdown/AttributedString.h"

#include <QVarLengthArray>

#include <string_view>

namespace Talvo {

/// Collects text with attributes and keeps the runs of an AttributedString sorted, gapless and
/// merged.
class AttributedStringBuilder
{
public:
    /// Appends UTF-16 as it is.
    /// @param attributes only its styles, link, image and title count.
    void append(QStringView text, const AttributedString::Run &attributes);

    /// What was collected; the builder is used up.
    [[nodiscard]] AttributedString take();

private:
    QVarLengthArray<QChar, 1024> m_text;
    std::vector<AttributedString::Run> m_runs;
};

} // namespace Talvo

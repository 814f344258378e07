#include "Markdown/AttributedStringBuilder.h"

namespace Talvo {

namespace {

bool haveEqualAttributes(const AttributedString::Run &left, const AttributedString::Run &right)
{
    return left.styles == right.styles && left.link == right.link && left.image == right.image &&
           left.title == right.title;
}

} // namespace

void AttributedStringBuilder::append(QStringView text, const AttributedString::Run &attributes)
{
    if (text.isEmpty()) {
        return;
    }
    if (m_runs.empty() || !haveEqualAttributes(m_runs.back(), attributes)) {
        m_runs.push_back(attributes);
        m_runs.back().start = m_text.size();
        m_runs.back().length = 0;
    }
    m_runs.back().length += text.size();
    m_text.append(text.data(), text.size());
}

AttributedString AttributedStringBuilder::take()
{
    return {QString(m_text.constData(), m_text.size()), std::move(m_runs)};
}

} // namespace Talvo

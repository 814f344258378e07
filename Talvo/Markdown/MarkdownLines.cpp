#include "Markdown/MarkdownLines.h"

#include "Platform/Text.h"

#include <algorithm>

namespace Talvo {

namespace {

bool endsLine(QChar c)
{
    // Most characters are decided without a call.
    const char16_t code = c.unicode();
    return code <= u'\r' ? code >= u'\n' : (code == 0x85 || code >= 0x2028) && isNewline(code);
}

} // namespace

MarkdownLines::MarkdownLines(QStringView text)
{
    const QChar *const end = text.end();
    for (const QChar *begin = text.begin();;) {
        const QChar *lineEnd = std::find_if(begin, end, endsLine);
        m_lines.emplace_back(begin, lineEnd);
        if (lineEnd == end) {
            return;
        }
        begin = lineEnd + 1;
    }
}

QString MarkdownLines::joined(std::size_t first, std::size_t last) const
{
    const QChar *const begin = m_lines[first].begin();
    const qsizetype length = m_lines[last - 1].end() - begin;
    bool hasOtherNewline = false;
    for (std::size_t i = first; i + 1 < last; ++i) {
        hasOtherNewline |= *m_lines[i].end() != u'\n';
    }
    if (!hasOtherNewline) {
        return QString::fromRawData(begin, length);
    }
    QString text(begin, length);
    for (std::size_t i = first; i + 1 < last; ++i) {
        text[m_lines[i].end() - begin] = u'\n';
    }
    return text;
}

} // namespace Talvo

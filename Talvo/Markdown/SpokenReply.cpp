#include "Markdown/SpokenReply.h"

#include "Markdown/MarkdownBlockParser.h"
#include "Platform/Text.h"

#include <QStringList>

namespace Talvo {

namespace {

constexpr qsizetype longestSpoken = qsizetype(4) * 1024; // in UTF-16 code units

/// Collects the texts of blocks, in their order.
class Speech
{
public:
    void operator()(const MarkdownBlock::Heading &heading) { add(heading.text); }
    void operator()(const MarkdownBlock::Paragraph &paragraph) { add(paragraph.text); }
    void operator()(const MarkdownBlock::Bullet &item) { add(item.text); }

    void operator()(const MarkdownBlock::Numbered &item)
    {
        m_texts += QStringLiteral("%1. %2").arg(QString::number(item.number), item.text.text);
    }

    void operator()(const MarkdownTable &table)
    {
        add(table.headers);
        for (const MarkdownTable::Row &row : table.rows) {
            add(row.cells);
        }
    }

    void operator()(const MarkdownBlock::Divider & /*nothing to say*/) {}

    [[nodiscard]] QString text() const { return m_texts.join(u' '); }

private:
    void add(const AttributedString &text) { m_texts += text.text; }

    void add(const std::vector<MarkdownTable::Cell> &cells)
    {
        for (const MarkdownTable::Cell &cell : cells) {
            add(cell.text);
        }
    }

    QStringList m_texts;
};

} // namespace

QString spokenReply(QStringView reply)
{
    Speech speech;
    for (const MarkdownBlock &block : parseBlocks(firstCodeUnits(reply, longestSpoken))) {
        std::visit(speech, block.content);
    }
    return speech.text();
}

} // namespace Talvo

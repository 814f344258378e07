#include "Markdown/MarkdownBlockParser.h"

#include "Markdown/InlineMarkdown.h"
#include "Markdown/MarkdownLineRules.h"
#include "Markdown/MarkdownLines.h"
#include "Markdown/MarkdownTableParser.h"
#include "Platform/Text.h"

namespace Talvo {

namespace {

/// The block that a trimmed line makes by itself, if it does.
std::optional<MarkdownBlock::Content> singleLineBlock(QStringView line)
{
    if (isDivider(line)) {
        return MarkdownBlock::Divider{};
    }
    if (const auto heading = parseHeading(line)) {
        return MarkdownBlock::Heading{heading->level, inlineText(heading->text)};
    }
    if (const auto text = bulletText(line)) {
        return MarkdownBlock::Bullet{inlineText(*text)};
    }
    if (const auto item = parseNumberedItem(line)) {
        return MarkdownBlock::Numbered{item->number, inlineText(item->text)};
    }
    return std::nullopt;
}

bool endsParagraph(const MarkdownLines &lines, std::size_t index, QStringView trimmedLine)
{
    return parseHeading(trimmedLine) || bulletText(trimmedLine) || parseNumberedItem(trimmedLine) ||
           isDivider(trimmedLine) || tableBegins(lines, index);
}

struct CollectedParagraph
{
    QString text;         ///< raw lines with line feeds between them; may share the lines' memory
    std::size_t next = 0; ///< index of the first line after it
};

/// The paragraph that begins at a line of which it is known that it begins no other block.
CollectedParagraph collectParagraph(const MarkdownLines &lines, std::size_t start)
{
    std::size_t next = start + 1;
    for (; next < lines.size(); ++next) {
        const QStringView line = trimmedOfWhitespace(lines[next]);
        if (line.isEmpty() || endsParagraph(lines, next, line)) {
            break;
        }
    }
    return {lines.joined(start, next), next};
}

} // namespace

std::vector<MarkdownBlock> parseBlocks(QStringView text)
{
    const MarkdownLines lines(text);
    std::vector<MarkdownBlock> blocks;
    const auto emitBlock = [&blocks](MarkdownBlock::Content content) {
        blocks.push_back({static_cast<qint64>(blocks.size()), std::move(content)});
    };
    for (std::size_t i = 0; i < lines.size();) {
        const QStringView line = trimmedOfWhitespace(lines[i]);
        if (line.isEmpty()) {
            ++i;
        } else if (auto parsed = parseTable(lines, i)) {
            emitBlock(std::move(parsed->table));
            i = parsed->next;
        } else if (auto content = singleLineBlock(line)) {
            emitBlock(std::move(*content));
            ++i;
        } else {
            const auto paragraph = collectParagraph(lines, i);
            emitBlock(MarkdownBlock::Paragraph{inlineText(paragraph.text)});
            i = paragraph.next;
        }
    }
    return blocks;
}

} // namespace Talvo

#include "Markdown/MarkdownDump.h"

#include <QStringList>

namespace Talvo {

namespace {

QString attributesOf(const AttributedString::Run &run)
{
    using Style = AttributedString::Style;
    constexpr std::pair<Style, const char *> names[] = {
        {Style::emphasis, "emphasis"}, {Style::strong, "strong"},
        {Style::code, "code"},         {Style::strikethrough, "strikethrough"},
        {Style::html, "html"},         {Style::lineBreak, "lineBreak"},
    };
    QStringList attributes;
    for (const auto &[style, name] : names) {
        if (run.styles.testFlag(style)) {
            attributes += QString::fromLatin1(name);
        }
    }
    const std::pair<const QString &, const char *> texts[] = {
        {run.link, "link="}, {run.image, "image="}, {run.title, "title="}};
    for (const auto &[text, name] : texts) {
        if (!text.isEmpty()) {
            attributes += QString::fromLatin1(name) + text;
        }
    }
    return attributes.join(u' ');
}

QString shown(const AttributedString &text)
{
    QString result;
    for (const auto &run : text.runs) {
        const QString characters = text.text.sliced(run.start, run.length);
        const QString attributes = attributesOf(run);
        result += attributes.isEmpty() ? characters : u'{' + attributes + u'|' + characters + u'}';
    }
    return result.replace(u'\n', QStringLiteral("\\n"));
}

QString shown(const std::vector<MarkdownTable::Cell> &cells)
{
    QStringList texts;
    for (const auto &cell : cells) {
        texts += shown(cell.text);
    }
    return u'[' + texts.join(u'|') + u']';
}

struct ContentDump
{
    QString operator()(const MarkdownBlock::Heading &heading) const
    {
        return QStringLiteral("heading %1 '%2'").arg(heading.level).arg(shown(heading.text));
    }
    QString operator()(const MarkdownBlock::Paragraph &paragraph) const
    {
        return QStringLiteral("paragraph '%1'").arg(shown(paragraph.text));
    }
    QString operator()(const MarkdownBlock::Bullet &bullet) const
    {
        return QStringLiteral("bullet '%1'").arg(shown(bullet.text));
    }
    QString operator()(const MarkdownBlock::Numbered &item) const
    {
        return QStringLiteral("numbered %1 '%2'").arg(item.number).arg(shown(item.text));
    }
    QString operator()(const MarkdownTable &table) const
    {
        QStringList rows{shown(table.headers)};
        for (const auto &row : table.rows) {
            rows += shown(row.cells);
        }
        return QStringLiteral("table ") + rows.join(u' ');
    }
    QString operator()(const MarkdownBlock::Divider &) const { return QStringLiteral("divider"); }
};

} // namespace

std::string dumped(const AttributedString &text)
{
    return shown(text).toStdString();
}

std::string dumped(const std::vector<MarkdownBlock> &blocks)
{
    QStringList lines;
    for (const auto &block : blocks) {
        lines += std::visit(ContentDump{}, block.content);
    }
    return lines.join(u'\n').toStdString();
}

} // namespace Talvo

#include "Markdown/MarkdownProperties.h"

#include <QString>

namespace Talvo {

namespace {

/// Line endings may come back as line feeds or, in code, as blanks, and what no text can hold as
/// the replacement character: these are each as good as the other here.
char16_t comparable(char16_t c)
{
    if (QChar::isSurrogate(c) || c == u'\0') {
        return QChar::ReplacementCharacter;
    }
    const bool endsLine = (c >= u'\n' && c <= u'\r') || c == 0x85 || c == 0x2028 || c == 0x2029;
    return endsLine ? u' ' : c;
}

bool isSubsequence(QStringView part, QStringView whole)
{
    qsizetype matched = 0;
    for (qsizetype i = 0; i < whole.size() && matched < part.size(); ++i) {
        if (comparable(part[matched].unicode()) == comparable(whole[i].unicode())) {
            ++matched;
        }
    }
    return matched == part.size();
}

bool haveEqualAttributes(AttributedString::Run left, const AttributedString::Run &right)
{
    left.start = right.start;
    left.length = right.length;
    return left == right;
}

std::string runsViolation(const AttributedString &text)
{
    qsizetype end = 0;
    const AttributedString::Run *previous = nullptr;
    for (const auto &run : text.runs) {
        if (run.start != end || run.length <= 0) {
            return "a run does not begin where the one before it ended, or is empty";
        }
        if (previous != nullptr && haveEqualAttributes(*previous, run)) {
            return "two neighbouring runs have equal attributes";
        }
        end += run.length;
        previous = &run;
    }
    return end == text.text.size() ? "" : "the runs do not cover the text";
}

std::string sourceViolation(QStringView visible, QStringView source)
{
    if (visible.size() > source.size()) {
        return "more visible characters than the source has";
    }
    if (!source.contains(u'&') && !isSubsequence(visible, source)) {
        return "visible characters that are not the source's";
    }
    return {};
}

/// Collects the texts of all blocks, and the first thing that is wrong with a block.
struct BlockCheck
{
    void operator()(const MarkdownBlock::Heading &heading)
    {
        note(heading.level >= 1 && heading.level <= 6, "heading level");
        add(heading.text);
    }
    void operator()(const MarkdownBlock::Paragraph &paragraph) { add(paragraph.text); }
    void operator()(const MarkdownBlock::Bullet &bullet) { add(bullet.text); }
    void operator()(const MarkdownBlock::Numbered &item) { add(item.text); }
    void operator()(const MarkdownBlock::Divider &) {}
    void operator()(const MarkdownTable &table)
    {
        addCells(table.headers);
        qint64 id = 0;
        for (const auto &row : table.rows) {
            note(row.id == id++, "row ids do not count from 0");
            addCells(row.cells);
        }
    }
    void addCells(const std::vector<MarkdownTable::Cell> &cells)
    {
        note(!cells.empty(), "a row without cells");
        qint64 id = 0;
        for (const auto &cell : cells) {
            note(cell.id == id++, "cell ids do not count from 0");
            add(cell.text);
        }
    }
    void add(const AttributedString &text)
    {
        const std::string found = runsViolation(text);
        note(found.empty(), found);
        visible += text.text;
    }
    void note(bool holds, const std::string &what)
    {
        if (!holds && problem.empty()) {
            problem = what;
        }
    }

    QString visible;
    std::string problem;
};

} // namespace

std::string violation(const AttributedString &text, QStringView source)
{
    const std::string runs = runsViolation(text);
    return runs.empty() ? sourceViolation(text.text, source) : runs;
}

std::string violation(const std::vector<MarkdownBlock> &blocks, QStringView source)
{
    BlockCheck check;
    qint64 id = 0;
    for (const auto &block : blocks) {
        check.note(block.id == id++, "block ids do not count from 0");
        std::visit(check, block.content);
    }
    return check.problem.empty() ? sourceViolation(check.visible, source) : check.problem;
}

} // namespace Talvo

#include "Markdown/MarkdownTitle.h"

#include "Markdown/CmarkDocument.h"
#include "Platform/Text.h"

#include <cmark-gfm.h>

namespace Talvo {

namespace {

/// UTF-16 code units that are read: far more than any title, and few enough for the library's
/// quadratic rules.
constexpr qsizetype readSize = qsizetype(4) * 1024;

bool isText(cmark_node_type type)
{
    return type == CMARK_NODE_TEXT || type == CMARK_NODE_CODE || type == CMARK_NODE_CODE_BLOCK;
}

/// Whether a node stands between two pieces of text: the edge of a block, or a break.
bool separates(cmark_node_type type)
{
    return (type & CMARK_NODE_TYPE_MASK) == CMARK_NODE_TYPE_BLOCK || type == CMARK_NODE_SOFTBREAK ||
           type == CMARK_NODE_LINEBREAK;
}

} // namespace

std::optional<QString> visibleMarkdownText(QStringView text)
{
    const QByteArray utf8 = firstCodeUnits(text, readSize).toUtf8();
    const CmarkDocument document({utf8.constData(), static_cast<std::size_t>(utf8.size())});
    if (document.root() == nullptr) {
        return std::nullopt;
    }
    QString visible;
    bool isBlankDue = false;
    cmark_iter *iterator = cmark_iter_new(document.root());
    while (cmark_iter_next(iterator) != CMARK_EVENT_DONE) {
        cmark_node *node = cmark_iter_get_node(iterator);
        const cmark_node_type type = cmark_node_get_type(node);
        isBlankDue |= separates(type);
        if (!isText(type)) {
            continue;
        }
        if (isBlankDue && !visible.isEmpty()) {
            visible += u' ';
        }
        visible += textFromUtf8(cmark_node_get_literal(node));
        isBlankDue = type == CMARK_NODE_CODE_BLOCK;
    }
    cmark_iter_free(iterator);
    return visible;
}

std::optional<QString> visibleMarkdownTitle(QStringView title)
{
    if (title.size() <= readSize) {
        return visibleMarkdownText(title);
    }
    QStringView start = firstCodeUnits(title, readSize);
    // The reader drops white space at the end, which is not the end of the title.
    while (!start.isEmpty() && start.back().isSpace()) {
        start.chop(1);
    }
    std::optional<QString> visible = visibleMarkdownText(start);
    if (visible) {
        if (visible->endsWith(u'\n')) { // the reader's, behind a code block
            visible->chop(1);
        }
        *visible += title.sliced(start.size());
    }
    return visible;
}

} // namespace Talvo

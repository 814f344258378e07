#include "Markdown/InlineMarkdown.h"

#include "Markdown/AttributedStringBuilder.h"
#include "Markdown/CmarkDocument.h"
#include "Markdown/InlineEncoding.h"
#include "Platform/Text.h"

#include <cmark-gfm.h>

#include <cstring>

namespace Talvo {

namespace {

using Style = AttributedString::Style;
using Attributes = AttributedString::Run;

/// Code units that are interpreted at once. Some rules of the library (`<?a`, `www.a.b)))`, many
/// links) take quadratic time within one text; in pieces of this size the whole stays linear. No
/// ordinary block is that long, and a span across a cut is merely shown as its characters.
constexpr qsizetype pieceSize = qsizetype(16) * 1024;

/// Where to cut a text that is longer than a piece: after its last line ending, else its last
/// blank, else anywhere but within a surrogate pair.
qsizetype pieceLength(QStringView text)
{
    if (text.size() <= pieceSize) {
        return text.size();
    }
    const QStringView piece = text.first(pieceSize);
    for (const QChar separator : {u'\n', u' '}) {
        if (const qsizetype index = piece.lastIndexOf(separator); index > 0) {
            return index + 1;
        }
    }
    return firstCodeUnits(text, pieceSize).size();
}

std::string_view literal(cmark_node *node)
{
    const char *text = cmark_node_get_literal(node);
    return text == nullptr ? std::string_view() : std::string_view(text);
}

QString decodedText(std::string_view encoded)
{
    const auto characters = InlineEncoding::decoded(encoded);
    return QString(characters.constData(), characters.size());
}

/// The only inline node of a type that no public header names.
bool isStrikethrough(cmark_node *node)
{
    return std::strcmp(cmark_node_get_type_string(node), "strikethrough") == 0;
}

/// Reads one encoded piece into a builder.
class PieceReader
{
public:
    PieceReader(std::string_view source, AttributedStringBuilder &builder)
        : m_source(source)
        , m_builder(builder)
    {
    }

    /// False when the piece cannot be interpreted.
    [[nodiscard]] bool read()
    {
        const CmarkDocument document(m_source);
        cmark_node *paragraph = cmark_node_first_child(document.root());
        if (paragraph == nullptr || cmark_node_get_type(paragraph) != CMARK_NODE_PARAGRAPH ||
            cmark_node_next(paragraph) != nullptr) {
            return false;
        }
        m_first = cmark_node_first_child(paragraph);
        m_last = cmark_node_last_child(paragraph);
        cmark_iter *iterator = cmark_iter_new(paragraph);
        bool isInterpreted = true;
        for (auto event = cmark_iter_next(iterator); isInterpreted && event != CMARK_EVENT_DONE;
             event = cmark_iter_next(iterator)) {
            cmark_node *node = cmark_iter_get_node(iterator);
            if (node == paragraph) {
                continue;
            }
            if (event == CMARK_EVENT_EXIT) {
                m_open.removeLast();
            } else {
                isInterpreted = enter(node);
            }
        }
        cmark_iter_free(iterator);
        return isInterpreted;
    }

private:
    [[nodiscard]] bool enter(cmark_node *node)
    {
        switch (cmark_node_get_type(node)) {
        case CMARK_NODE_TEXT:
            return appendText(node);
        case CMARK_NODE_CODE:
            append(InlineEncoding::decodedCode(codeSource(node)), Style::code);
            return true;
        case CMARK_NODE_HTML_INLINE:
            append(InlineEncoding::decoded(literal(node)), Style::html);
            return true;
        case CMARK_NODE_EMPH:
            open().styles |= Style::emphasis;
            return true;
        case CMARK_NODE_STRONG:
            open().styles |= Style::strong;
            return true;
        case CMARK_NODE_LINK:
            return openAddressed(node, &Attributes::link);
        case CMARK_NODE_IMAGE:
            return openAddressed(node, &Attributes::image);
        default:
            if (!isStrikethrough(node)) {
                return false;
            }
            open().styles |= Style::strikethrough;
            return true;
        }
    }

    /// Attributes for what is inside a node: those outside it, to be added to.
    Attributes &open()
    {
        const Attributes outer = m_open.back();
        m_open.push_back(outer);
        return m_open.back();
    }

    /// A link or an image. CommonMark allows no line ending in an address; since the library could
    /// not see it as one, such a text is not interpreted at all.
    [[nodiscard]] bool openAddressed(cmark_node *node, QString Attributes::*address)
    {
        const std::string_view url = cmark_node_get_url(node);
        if (InlineEncoding::holdsLineEnding(url)) {
            return false;
        }
        Attributes &attributes = open();
        attributes.*address = decodedText(url);
        attributes.title = decodedText(cmark_node_get_title(node));
        return true;
    }

    /// Text without the guards at both ends of the piece.
    [[nodiscard]] bool appendText(cmark_node *node)
    {
        using namespace InlineEncoding;
        std::string_view text = literal(node);
        if (node == m_first) {
            if (!text.starts_with(leadingGuard)) {
                return false;
            }
            text.remove_prefix(leadingGuard.size());
        }
        if (node == m_last) {
            if (!text.ends_with(trailingGuard)) {
                return false;
            }
            text.remove_suffix(trailingGuard.size());
        }
        for (auto end = text.find(hardBreak); end != text.npos; end = text.find(hardBreak)) {
            append(decoded(text.substr(0, end)));
            append(QStringView(u"\n"), Style::lineBreak);
            text.remove_prefix(end + hardBreak.size());
        }
        append(decoded(text));
        return true;
    }

    /// A code span as written: its literal has lost blanks at its ends that a line ending beside
    /// them would have kept.
    [[nodiscard]] std::string_view codeSource(cmark_node *node) const
    {
        const auto first = static_cast<std::size_t>(cmark_node_get_start_column(node) - 1);
        const auto last = static_cast<std::size_t>(cmark_node_get_end_column(node));
        return first < last && last <= m_source.size() ? m_source.substr(first, last - first)
                                                       : literal(node);
    }

    void append(const InlineEncoding::Characters &text, AttributedString::Styles more = {})
    {
        append(QStringView(text.constData(), text.size()), more);
    }

    void append(QStringView text, AttributedString::Styles more)
    {
        if (!more) {
            m_builder.append(text, m_open.back());
            return;
        }
        Attributes attributes = m_open.back();
        attributes.styles |= more;
        m_builder.append(text, attributes);
    }

    std::string_view m_source;
    AttributedStringBuilder &m_builder;
    QVarLengthArray<Attributes, 8> m_open{Attributes()}; ///< of the open nodes, outermost first
    cmark_node *m_first = nullptr;
    cmark_node *m_last = nullptr;
};

AttributedString plainText(QStringView text)
{
    AttributedString result{text.toString(), {}};
    if (!text.isEmpty()) {
        result.runs.resize(1);
        result.runs.front().length = text.size();
    }
    return result;
}

[[nodiscard]] bool interpretPiece(QStringView piece, AttributedStringBuilder &builder)
{
    const InlineEncoding::Bytes source = InlineEncoding::encoded(piece);
    return PieceReader({source.constData(), static_cast<std::size_t>(source.size())}, builder)
        .read();
}

} // namespace

AttributedString inlineText(QStringView text)
{
    QStringView rest = text.startsWith(QChar::ByteOrderMark) ? text.sliced(1) : text;
    if (InlineEncoding::isPlain(rest)) {
        return plainText(rest);
    }
    AttributedStringBuilder builder;
    while (!rest.isEmpty()) {
        const qsizetype length = pieceLength(rest);
        if (!interpretPiece(rest.first(length), builder)) {
            return plainText(text);
        }
        rest = rest.sliced(length);
    }
    return builder.take();
}

} // namespace Talvo

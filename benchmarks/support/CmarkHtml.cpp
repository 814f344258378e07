#include "support/CmarkHtml.h"

#include <cmark-gfm-core-extensions.h>
#include <cmark-gfm.h>

#include <cstdlib>

namespace Talvo::Benchmarks {

QByteArray cmarkHtml(const QByteArray &markdown)
{
    cmark_gfm_core_extensions_ensure_registered();
    cmark_parser *parser = cmark_parser_new(CMARK_OPT_DEFAULT);
    for (const char *extension : {"table", "strikethrough", "autolink"}) {
        cmark_parser_attach_syntax_extension(parser, cmark_find_syntax_extension(extension));
    }
    cmark_parser_feed(parser, markdown.constData(), static_cast<std::size_t>(markdown.size()));
    cmark_node *document = cmark_parser_finish(parser);
    char *html =
        cmark_render_html(document, CMARK_OPT_DEFAULT, cmark_parser_get_syntax_extensions(parser));
    QByteArray result(html);
    std::free(html);
    cmark_node_free(document);
    cmark_parser_free(parser);
    return result;
}

} // namespace Talvo::Benchmarks

#include "support/Md4cHtml.h"

#include <md4c-html.h>
#include <md4c.h>

namespace Talvo::Benchmarks {

QByteArray md4cHtml(const QByteArray &markdown)
{
    QByteArray html;
    const auto append = [](const MD_CHAR *piece, MD_SIZE size, void *result) {
        static_cast<QByteArray *>(result)->append(piece, static_cast<qsizetype>(size));
    };
    ::md_html(markdown.constData(), static_cast<MD_SIZE>(markdown.size()), append, &html,
              MD_DIALECT_GITHUB, 0);
    return html;
}

} // namespace Talvo::Benchmarks

#include "Views/DraftText.h"

#include <QTextDocument>

namespace Talvo {

QString DraftText::of(const QQuickTextDocument *document)
{
    QString text = document->textDocument()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text;
}

} // namespace Talvo

#pragma once

#include "Markdown/AttributedString.h"

#include <QColor>
#include <QString>

class QTextCharFormat;
class QTextDocument;

namespace Talvo {

/// The looks of inline text that do not come from the text's own font and colour.
struct InlineLooks
{
    QColor link;           ///< colour of a link's text
    QColor codeBackground; ///< laid under code
    QString codeFamily;    ///< family of a fixed-width font

    friend bool operator==(const InlineLooks &, const InlineLooks &) = default;
};

/// The text as a document shows and copies it: every line ending is one line feed. Apart from CR LF
/// it has the length of the original. Pure.
[[nodiscard]] QString withPlainLineEndings(const QString &text);

/// How a run of inline text is drawn. A link only looks like one when it can be opened. Pure.
[[nodiscard]] QTextCharFormat charFormat(const AttributedString::Run &run,
                                         const InlineLooks &looks);

/// Fills an empty document with a text as plain characters and character formats; nothing in the
/// text is ever read as markup, and an image is its alternative text. Positions in the document are
/// positions in the text. GUI thread.
void fillDocument(QTextDocument &document, const AttributedString &text, const InlineLooks &looks);

/// Gives the runs of a filled document other looks; text and selection stay. GUI thread.
void restyleDocument(QTextDocument &document, const AttributedString &text,
                     const InlineLooks &looks);

} // namespace Talvo

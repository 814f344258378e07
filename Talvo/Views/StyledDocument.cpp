#include "Views/StyledDocument.h"

#include "Views/LinkOpener.h"

#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

namespace Talvo {

namespace {

/// Characters that mean something to a text document itself: the edges of frames, an embedded
/// object, the end of a string.
bool isReserved(QChar character)
{
    return character == QChar(0xFDD0) || character == QChar(0xFDD1) ||
           character == QChar::ObjectReplacementCharacter || character.isNull();
}

QString displayed(QStringView text)
{
    QString result = text.toString();
    for (QChar &character : result) {
        if (isReserved(character)) {
            character = QChar::ReplacementCharacter;
        } else if (character == u'\r') {
            character = u'\n';
        }
    }
    return result;
}

/// Has the glyphs that a layout finds kept for drawing; the toolkit would find them a second time,
/// which takes as long as the first.
void keepGlyphs(const QTextDocument &document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        block.layout()->setCacheEnabled(true);
    }
}

} // namespace

QString withPlainLineEndings(const QString &text)
{
    QString result = text;
    result.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    result.replace(u'\r', u'\n');
    return result;
}

QTextCharFormat charFormat(const AttributedString::Run &run, const InlineLooks &looks)
{
    using Style = AttributedString::Style;
    QTextCharFormat format;
    if (run.styles.testFlag(Style::strong)) {
        format.setFontWeight(QFont::Bold);
    }
    if (run.styles.testFlag(Style::emphasis)) {
        format.setFontItalic(true);
    }
    if (run.styles.testFlag(Style::strikethrough)) {
        format.setFontStrikeOut(true);
    }
    if (run.styles.testFlag(Style::code)) {
        format.setFontFamilies({looks.codeFamily});
        format.setFontFixedPitch(true);
        format.setBackground(looks.codeBackground);
    }
    if (!run.link.isEmpty() && openableUrl(run.link)) {
        format.setAnchor(true);
        format.setAnchorHref(run.link);
        format.setForeground(looks.link);
        format.setFontUnderline(true);
    }
    return format;
}

void fillDocument(QTextDocument &document, const AttributedString &text, const InlineLooks &looks)
{
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (const AttributedString::Run &run : text.runs) {
        cursor.insertText(displayed(QStringView(text.text).mid(run.start, run.length)),
                          charFormat(run, looks));
    }
    keepGlyphs(document);
    cursor.endEditBlock();
}

void restyleDocument(QTextDocument &document, const AttributedString &text,
                     const InlineLooks &looks)
{
    QTextCursor cursor(&document);
    cursor.beginEditBlock();
    for (const AttributedString::Run &run : text.runs) {
        cursor.setPosition(static_cast<int>(run.start));
        cursor.setPosition(static_cast<int>(run.start + run.length), QTextCursor::KeepAnchor);
        cursor.setCharFormat(charFormat(run, looks));
    }
    cursor.endEditBlock();
}

} // namespace Talvo

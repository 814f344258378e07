import QtQuick
import Talvo.Views

/// A message of the assistant's: Markdown on a quiet background.
MessageRow {
    id: row

    isAssistant: true
    contentImplicitWidth: message.implicitWidth
    contentImplicitHeight: message.implicitHeight

    MarkdownMessageView {
        id: message

        x: row.horizontalPadding
        y: row.verticalPadding
        width: Math.min(Math.ceil(implicitWidth), row.maximumContentWidth)
        content: row.content
    }
}

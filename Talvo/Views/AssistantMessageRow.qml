import QtQuick
import Talvo.Views

/// A message of the assistant's: Markdown on a quiet background.
MessageRow {
    id: row

    isAssistant: true
    stack: message
    contentWidth: message.naturalWidth
    contentHeight: message.height

    MarkdownMessageView {
        id: message

        x: row.horizontalPadding
        y: row.verticalPadding
        width: row.maximumContentWidth
        fromEnd: row.growsUpwards
        content: row.content
    }
}

import QtQuick
import Talvo.Views

/// A message of the user's: plain text on the accent colour.
MessageRow {
    id: row

    isAssistant: false
    contentWidth: message.contentWidth
    contentHeight: message.height

    PlainMessageText {
        id: message

        x: row.horizontalPadding
        y: row.verticalPadding
        width: row.maximumContentWidth
        content: row.content
        color: "white"
        selectionColor: Theme.selection
    }
}

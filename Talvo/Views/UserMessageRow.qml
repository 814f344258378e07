import QtQuick
import Talvo.Views

// Components written in place know the ids around them; the formatter of this Qt version cannot write
// the pragma that would tell the linter so.
// qmllint disable unqualified

/// A message of the user's: plain text on the accent colour.
MessageRow {
    id: row

    /// Qt Quick lays out a text as a whole: a very long one is drawn in pieces.
    readonly property bool isLong: row.content.length > 20000

    isAssistant: false
    stack: pieces.item as MarkdownBlockStack
    contentWidth: row.isLong ? (pieces.item?.naturalWidth ?? 0) : message.naturalWidth
    contentHeight: row.isLong ? pieces.height : message.height

    PlainMessageText {
        id: message

        visible: !row.isLong
        x: row.horizontalPadding
        y: row.verticalPadding
        // No wider than the bubble, at whose edge a right-to-left text stands.
        width: Math.min(Math.ceil(message.implicitWidth), row.maximumContentWidth)
        content: row.isLong ? "" : row.content
        looks: Theme.ownMessageLooks
    }

    Loader {
        id: pieces

        active: row.isLong
        x: row.horizontalPadding
        y: row.verticalPadding
        width: row.maximumContentWidth

        sourceComponent: MarkdownMessageView {
            content: row.content
            literal: true
            fromEnd: row.growsUpwards
            looks: Theme.ownMessageLooks
        }
    }
}

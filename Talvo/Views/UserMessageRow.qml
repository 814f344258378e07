import QtQuick
import Talvo.Views

// Components written in place know the ids around them; the formatter of this Qt version cannot write
// the pragma that would tell the linter so.
// qmllint disable unqualified

/// A message of the user's: plain text on the accent colour.
MessageRow {
    id: row

    /// What would hold up the window as a whole is drawn in pieces.
    readonly property bool inPieces: !message.isQuick(row.content)

    isAssistant: false
    stack: pieces.item as MarkdownBlockStack
    contentWidth: row.inPieces ? (pieces.item?.naturalWidth ?? 0) : message.naturalWidth
    contentHeight: row.inPieces ? pieces.height : message.height

    PlainMessageText {
        id: message

        visible: !row.inPieces
        x: row.horizontalPadding
        y: row.verticalPadding
        // No wider than the bubble, at whose edge a right-to-left text stands.
        width: Math.min(Math.ceil(message.implicitWidth), row.maximumContentWidth)
        content: row.inPieces ? "" : row.content
        looks: Theme.ownMessageLooks
    }

    Loader {
        id: pieces

        active: row.inPieces
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

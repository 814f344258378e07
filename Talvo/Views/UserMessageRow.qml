import QtQuick
import Talvo.Views

/// A message of the user's: plain text on the accent colour.
MessageRow {
    id: row

    isAssistant: false
    contentImplicitWidth: message.implicitWidth
    contentImplicitHeight: message.implicitHeight

    PlainMessageText {
        id: message

        x: row.horizontalPadding
        y: row.verticalPadding
        width: Math.min(Math.ceil(implicitWidth), row.maximumContentWidth)
        text: row.content
    }
}

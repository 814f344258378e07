import QtQuick
import Talvo.Views

/// Shows that a reply is awaited: one element for assistive technology.
Item {
    id: row

    readonly property int columnWidth: Math.min(row.width, Theme.columnWidth) - 2 * Theme.gapLarge

    height: 30
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text

    Row {
        x: Math.round((row.width - row.columnWidth) / 2)
        height: parent.height
        spacing: Theme.gap

        Avatar {
            isAssistant: true
        }

        Spinner {
            anchors.verticalCenter: parent.verticalCenter
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            text: "Talvo düşünüyor…"
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.secondary
        }
    }
}

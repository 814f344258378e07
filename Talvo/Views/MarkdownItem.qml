import QtQuick
import Talvo.Views

/// An item of a list: its bullet or number, and its text, which wraps under itself.
Item {
    id: item

    required property string marker
    required property blockText styled
    readonly property real naturalWidth: text.x + text.naturalWidth

    implicitHeight: text.height

    PlainLabel {
        id: sign

        text: item.marker
        anchors.baseline: text.baseline
    }

    MarkdownText {
        id: text

        x: Math.ceil(sign.implicitWidth) + 8
        width: item.width - x
        styled: item.styled
    }
}

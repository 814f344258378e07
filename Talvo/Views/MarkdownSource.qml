import QtQuick
import Talvo.Views

/// The text of a reply as it stands, while it has no blocks.
PlainMessageText {
    required property string plain
    readonly property real naturalWidth: Math.ceil(contentWidth)

    content: plain
}

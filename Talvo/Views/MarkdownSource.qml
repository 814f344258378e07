import QtQuick
import Talvo.Views

/// A text as it stands: of a reply while it has no blocks, or a piece of a very long message.
PlainMessageText {
    id: source

    required property string plain
    readonly property real naturalWidth: Math.ceil(contentWidth)

    content: plain
    color: (source.parent as MarkdownMessageView)?.plainColor ?? Theme.text
}

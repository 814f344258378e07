import QtQuick
import Talvo.Views

/// A reply drawn from its Markdown text, one view below the other per block.
///
/// Give it the width that is there; `naturalWidth` is what the text needs of it.
BlockStack {
    id: view

    required property string content

    spacing: 10
    fillWidth: true

    Repeater {
        model: MarkdownBlocks {
            content: view.content
        }
        delegate: MarkdownBlockView {
        }
    }
}

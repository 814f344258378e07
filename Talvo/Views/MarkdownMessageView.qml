import QtQuick
import Talvo.Views

/// A reply drawn from its Markdown text, one view below the other per block; or a very long text as
/// it stands, piece by piece.
///
/// Give it the width that is there; `naturalWidth` is what the text needs of it.
BlockStack {
    id: view

    required property string content
    /// The text is no Markdown.
    property bool literal: false
    /// Of a text as it stands.
    property color plainColor: Theme.text

    function showMore(): void {
        blocks.showMore();
    }

    spacing: view.literal ? 0 : 10
    fillWidth: true

    Repeater {
        model: MarkdownBlocks {
            id: blocks

            content: view.content
            literal: view.literal
        }
        delegate: MarkdownBlockView {
        }
    }
}

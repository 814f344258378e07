import QtQuick
import Talvo.Views

/// One row of a table: exactly the cells it has, each as wide as its own text asks for, with the
/// line at its bottom edge.
Item {
    id: row

    /// Of `blockText`.
    required property var cells
    required property bool isHeader

    width: stack.implicitWidth
    height: stack.implicitHeight

    BlockStack {
        id: stack

        horizontal: true

        Repeater {
            model: row.cells
            delegate: MarkdownTableCell {
                isHeader: (parent?.parent as MarkdownTableRowView)?.isHeader ?? false
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.separator
    }
}

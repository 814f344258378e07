import QtQuick
import Talvo.Views

/// One cell of a table, with the line at its trailing edge.
Rectangle {
    id: cell

    required property blockText modelData
    property bool isHeader: false

    width: text.width + 16
    height: text.height + 16
    color: cell.isHeader ? Theme.tableHead : "transparent"

    MarkdownText {
        id: text

        x: 8
        y: 8
        width: Math.min(220, Math.max(140, Math.ceil(implicitWidth)))
        styled: cell.modelData
        font: cell.isHeader ? Theme.strong : Theme.body
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.separator
    }
}

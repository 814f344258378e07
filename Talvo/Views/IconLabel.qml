import QtQuick
import Talvo.Views

/// An icon and a text beside it, as controls show them.
Item {
    id: root

    required property string iconName
    property alias text: label.text
    property alias font: label.font
    property color iconColor: label.color
    property int spacing: 8

    implicitWidth: icon.width + root.spacing + label.implicitWidth
    implicitHeight: Math.max(icon.height, label.implicitHeight)

    Icon {
        id: icon

        anchors.verticalCenter: parent.verticalCenter
        name: root.iconName
        color: root.iconColor
    }

    Text {
        id: label

        anchors.left: icon.right
        anchors.leftMargin: root.spacing
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        textFormat: Text.PlainText
        font: Theme.body
        color: Theme.text
        elide: Text.ElideRight
    }
}

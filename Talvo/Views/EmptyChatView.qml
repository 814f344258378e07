import QtQuick
import Talvo.Views

/// The right column while there is no conversation: an invitation to start one.
FocusScope {
    id: view

    signal newChat

    Column {
        anchors.centerIn: parent
        width: Math.min(parent.width - 2 * Theme.gapLarge, 420)
        spacing: Theme.gap

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 48
            height: 48
            name: "bubbles"
            color: Theme.textFaint
        }

        PlainLabel {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "Burada herhangi bir sohbet yok"
            font: Theme.title2
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }

        PlainLabel {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: "Talvo ile konuşmaya başlamak için yeni bir sohbet oluştur."
            color: Theme.textSoft
            wrapMode: Text.Wrap
        }

        PushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Yeni Sohbet"
            prominent: true
            focus: true
            onClicked: view.newChat()
        }
    }
}

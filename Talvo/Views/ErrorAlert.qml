import QtQuick
import QtQuick.Templates as T
import Talvo.Views

/// Says what went wrong, and waits until it has been read.
ModalPanel {
    id: alert

    required property string message
    /// What is shown: the last message that was one, also while the alert fades out.
    property string shownMessage

    title: "Bir sorun oluştu"
    description: alert.shownMessage
    defaultButton: okButton
    onMessageChanged: if (alert.message !== "")
        alert.shownMessage = alert.message
    Component.onCompleted: alert.shownMessage = alert.message

    Flickable {
        id: flickable

        width: parent.width
        height: Math.min(contentHeight, 260)
        contentWidth: width
        contentHeight: messageLabel.height
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        T.ScrollBar.vertical: ScrollBarV {
        }

        PlainLabel {
            id: messageLabel

            width: flickable.width - (flickable.contentHeight > flickable.height ? 14 : 0)
            text: alert.shownMessage
            wrapMode: Text.Wrap
        }
    }

    Item {
        width: parent.width
        height: okButton.height + Theme.gapSmall

        PushButton {
            id: okButton

            anchors.right: parent.right
            anchors.bottom: parent.bottom
            text: "Tamam"
            prominent: true
            focus: true
            onClicked: alert.close()
        }
    }
}

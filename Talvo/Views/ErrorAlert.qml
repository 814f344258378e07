import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// Says what went wrong, and waits until it has been read.
ModalPanel {
    id: alert

    /// A text, also an empty one; null when there is nothing to say any more.
    required property var message
    /// What is shown: the last message that there was, also while the alert fades out. A service
    /// may say megabytes, and a text is laid out as a whole.
    property string shownMessage
    readonly property int longestShown: 10000

    function shown(message: string): string {
        return message.length > alert.longestShown ? message.slice(0, alert.longestShown).replace(/[\uD800-\uDBFF]$/, "") + "…" : message;
    }

    title: "Bir sorun oluştu"
    description: alert.shownMessage
    defaultButton: okButton
    onMessageChanged: if (alert.message !== null)
        alert.shownMessage = alert.shown(alert.message)
    Component.onCompleted: alert.shownMessage = alert.shown(alert.message)

    function scrollBy(distance: real): void {
        const lowest = flickable.contentHeight - flickable.height;
        flickable.contentY = Math.max(0, Math.min(flickable.contentY + distance, lowest));
    }

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
            Keys.onUpPressed: alert.scrollBy(-40)
            Keys.onDownPressed: alert.scrollBy(40)
            // A line that the edge cuts through is whole on the next page.
            Keys.onPressed: event => {
                if (event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown)
                    alert.scrollBy((event.key === Qt.Key_PageUp ? -1 : 1) * (flickable.height - 40));
                else if (event.key === Qt.Key_Home || event.key === Qt.Key_End)
                    alert.scrollBy((event.key === Qt.Key_Home ? -1 : 1) * flickable.contentHeight);
            }
            onClicked: alert.close()
        }
    }
}

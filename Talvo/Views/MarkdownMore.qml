import QtQuick
import Talvo.Views

/// Stands where a message beyond all measure was cut off, and goes on there.
Item {
    id: more

    readonly property real naturalWidth: button.implicitWidth

    signal asked

    implicitHeight: button.height

    PushButton {
        id: button

        text: "Devamını göster"
        onClicked: more.asked()
    }
}

import QtQuick
import Talvo.Views

/// Stands for the middle of a message beyond all measure, and goes on there.
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

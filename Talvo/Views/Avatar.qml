import QtQuick
import Talvo.Views

/// Who wrote a message, as a picture; nothing for assistive technology.
Rectangle {
    id: avatar

    required property bool isAssistant

    width: 30
    height: 30
    radius: 15
    color: avatar.isAssistant ? Theme.avatarBot : Theme.avatarUser

    Icon {
        anchors.centerIn: parent
        width: 18
        height: 18
        name: avatar.isAssistant ? "sparkles" : "person"
        color: Theme.accentText
    }
}

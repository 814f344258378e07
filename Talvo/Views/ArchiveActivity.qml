import QtQuick
import Talvo.Views

/// Says quietly that conversations are being read or written, when that takes longer than a person
/// would notice.
Rectangle {
    id: activity

    property bool isLoading: false
    property bool isSaving: false
    readonly property string text: loadPatience.isOver ? "Sohbetler yükleniyor…" : savePatience.isOver ? "Kaydediliyor…" : ""

    implicitWidth: line.width + 2 * Theme.gapSmall
    implicitHeight: Theme.controlHeight
    radius: Theme.radiusSmall
    color: Theme.raised
    border.color: Theme.separator
    visible: activity.text !== ""
    onIsLoadingChanged: loadPatience.isOver = false
    onIsSavingChanged: savePatience.isOver = false
    Accessible.role: Accessible.StaticText
    Accessible.name: activity.text

    Timer {
        id: loadPatience

        property bool isOver: false

        interval: 300
        running: activity.isLoading
        onTriggered: isOver = true
    }

    Timer {
        id: savePatience

        property bool isOver: false

        interval: 1000
        running: activity.isSaving
        onTriggered: isOver = true
    }

    Row {
        id: line

        anchors.centerIn: parent
        spacing: Theme.gapSmall

        Spinner {
            anchors.verticalCenter: parent.verticalCenter
        }

        Text {
            text: activity.text
            textFormat: Text.PlainText
            font: Theme.body
            color: Theme.secondary
        }
    }
}

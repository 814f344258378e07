import QtQuick
import Talvo.Views

/// The sheet in which the API key is entered, replaced or removed. It works on the keychain itself;
/// the key is nowhere but in its field. It has no default button: Return neither saves nor closes.
ModalPanel {
    id: sheet

    required property keychainHandle keychain

    title: "Groq API Anahtarı"
    showsTitle: false
    description: settings.statusMessage
    width: 480
    spacing: 18

    KeySettings {
        id: settings

        keychain: sheet.keychain
        Component.onCompleted: settings.load()
    }

    Row {
        width: parent.width
        spacing: Theme.gap

        Icon {
            id: keyIcon

            anchors.verticalCenter: parent.verticalCenter
            width: 26
            height: 26
            name: "key-fill"
            color: Theme.focus
        }

        // The sheet is as wide with a large font of the desktop's.
        Column {
            width: parent.width - keyIcon.width - parent.spacing
            spacing: 3

            PlainLabel {
                width: parent.width
                text: sheet.title
                font: Theme.title2
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
            }

            PlainLabel {
                width: parent.width
                text: "Anahtar yalnızca macOS Keychain’de saklanır."
                color: Theme.secondary
                wrapMode: Text.Wrap
            }
        }
    }

    SecretField {
        width: parent.width
        placeholderText: "gsk_…"
        text: settings.apiKey
        focus: true
        onTextChanged: settings.apiKey = text
    }

    Row {
        visible: settings.hasStatus
        spacing: 8

        // Beside the middle of the first line, whichever of the two is higher.
        Icon {
            id: statusIcon

            y: Math.max(0, Math.round((statusMetrics.height - height) / 2))
            width: 18
            height: 18
            name: settings.isError ? "warning" : "check-circle"
            color: statusLabel.color
        }

        PlainLabel {
            id: statusLabel

            width: sheet.availableWidth - 26
            topPadding: Math.max(0, Math.round((statusIcon.height - statusMetrics.height) / 2))
            text: settings.statusMessage
            color: settings.isError ? Theme.danger : Theme.success
            wrapMode: Text.Wrap

            FontMetrics {
                id: statusMetrics

                font: statusLabel.font
            }
        }
    }

    // With a large font of the desktop's they need two lines.
    Item {
        id: buttons

        readonly property bool isWrapped: deleteButton.width + Theme.gap + closingButtons.width > buttons.width

        width: parent.width
        height: closingButtons.height + (buttons.isWrapped ? deleteButton.height + Theme.gap : 0)

        PushButton {
            id: deleteButton

            text: "Anahtarı Sil"
            destructive: true
            enabled: settings.canDelete
            onClicked: settings.remove()
        }

        Row {
            id: closingButtons

            anchors.right: parent.right
            anchors.bottom: parent.bottom
            spacing: Theme.gap

            PushButton {
                text: "Vazgeç"
                onClicked: sheet.close()
            }

            PushButton {
                text: "Kaydet"
                prominent: true
                enabled: settings.canSave
                onClicked: settings.save()
            }
        }
    }
}

import QtQuick
import Talvo.Views

Rectangle {
    color: Theme.window

    Rectangle {
        id: side

        width: 260
        height: parent.height
        color: Theme.sidebar

        Column {
            anchors.fill: parent
            anchors.margins: 10
            spacing: 4

            PlainLabel {
                text: "Talvo"
                font: Theme.headline
                leftPadding: 8
                bottomPadding: 6
            }

            SidebarButton {
                width: parent.width
                iconName: "square-pencil"
                text: "Yeni Sohbet"
            }

            SidebarButton {
                width: parent.width
                iconName: "key"
                text: "API Ayarları"
                focus: true
            }

            Choice {
                width: parent.width
                label: "Groq modeli"
                model: ["llama-3.3-70b-versatile", "llama-3.1-8b-instant", "openai/gpt-oss-120b"]
            }

            Rectangle {
                width: parent.width
                height: 48
                radius: Theme.radiusSmall
                color: Theme.accentSoft

                PlainLabel {
                    x: 10
                    y: 7
                    text: "Kahve çekirdekleri"
                }

                PlainLabel {
                    x: 10
                    y: 26
                    text: "2 saat önce"
                    font: Theme.caption
                    color: Theme.textSoft
                }

                Row {
                    anchors.right: parent.right
                    anchors.rightMargin: 6
                    anchors.verticalCenter: parent.verticalCenter

                    IconButton {
                        iconName: "pencil"
                        label: "Sohbeti yeniden adlandır"
                    }

                    IconButton {
                        iconName: "bin"
                        label: "Sohbeti sil"
                    }
                }
            }

            Grid {
                columns: 7
                spacing: 10

                Repeater {
                    model: ["square-pencil", "key", "key-fill", "pencil", "bin", "sparkles", "person", "arrow-up", "bubbles", "warning", "check-circle", "chevron-down", "checkmark"]

                    Icon {
                        required property string modelData

                        name: modelData
                        color: Theme.text
                    }
                }
            }

            Icon {
                width: 60
                height: 60
                name: "bubbles"
                color: Theme.textFaint
            }

            Spinner {
            }
        }
    }

    Column {
        anchors.left: side.right
        anchors.right: parent.right
        anchors.margins: 24
        y: 20
        spacing: 12

        Row {
            spacing: 8

            PushButton {
                text: "Kaydet"
                prominent: true
            }

            PushButton {
                text: "Vazgeç"
            }

            PushButton {
                text: "Anahtarı Sil"
                destructive: true
            }

            PushButton {
                text: "Kapalı"
                prominent: true
                enabled: false
            }

            PushButton {
                text: "Kapalı"
                enabled: false
            }

            IconButton {
                iconName: "arrow-up"
                label: "Mesajı gönder"
                prominent: true
            }
        }

        Row {
            spacing: 8

            Field {
                placeholderText: "Sohbet adı"
            }

            Field {
                text: "Kahve"
            }

            SecretField {
                text: "gsk_abcdef"
            }
        }

        Row {
            spacing: 8

            IconLabel {
                iconName: "warning"
                text: "Anahtar okunamadı."
                color: Theme.danger
            }

            IconLabel {
                iconName: "check-circle"
                text: "API anahtarı güvenle kaydedildi."
                color: Theme.success
            }
        }
    }

    ModalPanel {
        title: "Sohbeti Yeniden Adlandır"
        visible: true
        width: 380
        anchors.centerIn: undefined
        x: 500
        y: 600
        modal: false

        Field {
            width: parent.width
            placeholderText: "Sohbet adı"
        }

        Row {
            anchors.right: parent.right
            spacing: 8

            PushButton {
                text: "Vazgeç"
            }

            PushButton {
                text: "Kaydet"
                prominent: true
            }
        }
    }
}

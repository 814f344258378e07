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

        Rectangle {
            id: bubble

            x: 42
            width: Math.min(reply.naturalWidth, reply.width) + 28
            height: reply.height + 22
            radius: Theme.radius
            color: Theme.bubbleBot

            MarkdownMessageView {
                id: reply

                x: 14
                y: 11
                width: 690
                content: "# Kahve demleme\nMerhaba! **İyi** bir *demleme* için ~~çok~~ az **_sabır_** ve `1:16` oranı yeter; bkz. [kaynak](https://example.com/kahve?x=1) veya https://example.org, ![bardak](http://example.com/x.png) <b>html</b>.\n## Adımlar\n- Suyu **93 °C**'ye getir, sonra yavaşça dök. Bu madde bilerek uzun, ki satır kendi altında kırılsın; marka değil metin.\n- Öğüt 🙂 e\u0301\n\n7. Yedi\n8. `Sekiz` — [dosya](file:///etc/passwd)\n### Tablo\n| Çekirdek | Asit | Açıklama | Fiyat | Not |\n|---|---|---|---|---|\n| Etiyopya | yüksek | Çiçeksi ve narenciye; sabahları güzel olur, akşam da içilir | 320 ₺ | `filtre` |\n| Brezilya | düşük |\n\n---\nمرحبا بالعالم\n\nSon satır\nikinci satır"
            }
        }
    }
}

import QtQuick
import Talvo.Views

/// A text that the user reads: never interpreted as markup, and named for assistive technology.
Text {
    id: label

    textFormat: Text.PlainText
    color: Theme.text
    font: Theme.body
    Accessible.role: Accessible.StaticText
    Accessible.name: label.text
}

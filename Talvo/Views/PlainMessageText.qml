import QtQuick
import Talvo.Views

/// A text exactly as written, to read, select and copy.
TextEdit {
    id: edit

    required property string content

    readOnly: true
    text: edit.content
    textFormat: TextEdit.PlainText
    baseUrl: "about:blank"
    wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
    selectByMouse: true
    color: Theme.text
    font: Theme.body
    selectionColor: Theme.selection
    selectedTextColor: Theme.selectedText

    Accessible.role: Accessible.StaticText
    Accessible.name: edit.content

    ReadOnlyText {
        source: edit.content
    }
}

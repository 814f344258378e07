import QtQuick
import Talvo.Views

/// One piece of styled text that can be selected: a heading, a paragraph, an item, a table cell.
TextEdit {
    id: edit

    required property blockText styled
    readonly property real naturalWidth: inline.rightToLeft ? edit.width : Math.ceil(edit.contentWidth)

    readOnly: true
    textFormat: TextEdit.PlainText
    baseUrl: "about:blank"
    wrapMode: TextEdit.WrapAtWordBoundaryOrAnywhere
    selectByMouse: true
    color: Theme.text
    font: Theme.body
    selectionColor: Theme.selection
    selectedTextColor: Theme.selectedText

    Accessible.role: Accessible.StaticText
    Accessible.name: edit.styled.plain

    StyledText {
        id: inline

        styled: edit.styled
        linkColor: Theme.link
        codeBackground: Theme.codeBg
        codeFamily: Theme.fixedFamily
    }
}

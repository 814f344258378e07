import QtQuick
import Talvo.Views

/// Asks for a conversation's new title. Return in its field only ends the editing, and the next one
/// saves.
ModalPanel {
    id: dialog

    required property string editedTitle

    signal titleEdited(string title)
    signal saved

    title: "Sohbeti Yeniden Adlandır"
    defaultButton: saveButton

    Field {
        id: titleField

        width: parent.width
        placeholderText: "Sohbet adı"
        text: dialog.editedTitle
        focus: true
        onTextChanged: dialog.titleEdited(text)
        Component.onCompleted: titleField.selectAll()
        Keys.onReturnPressed: saveButton.forceActiveFocus(Qt.TabFocusReason)
        Keys.onEnterPressed: saveButton.forceActiveFocus(Qt.TabFocusReason)
    }

    Item {
        width: parent.width
        height: saveButton.height + Theme.gapSmall

        Row {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            spacing: Theme.gap

            PushButton {
                text: "Vazgeç"
                onClicked: dialog.close()
            }

            PushButton {
                id: saveButton

                text: "Kaydet"
                prominent: true
                onClicked: {
                    dialog.saved();
                    dialog.close();
                }
            }
        }
    }
}

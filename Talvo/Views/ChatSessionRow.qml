import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

// The content is made at once on purpose: the row takes its height from it.
// qmllint disable deferred-property-id

/// One conversation in the sidebar: its title, when it last changed, and its two buttons.
T.ItemDelegate {
    id: row

    required property string title
    required property string updatedText
    required property bool isSelected
    property bool showsFocus: false
    /// Where Shift-Tab goes from the first button; null for what lies before it.
    property Item before: null

    signal chosen
    signal renameRequested
    signal deleteRequested

    /// Gives the keyboard back to the list when one of the row's buttons has it.
    function giveFocusBack(): void {
        renameButton.focus = false;
        deleteButton.focus = false;
    }

    implicitHeight: texts.implicitHeight + 12
    leftPadding: 10
    rightPadding: 4
    hoverEnabled: true
    focusPolicy: Qt.NoFocus

    Accessible.role: Accessible.ListItem
    Accessible.name: row.title
    Accessible.selectable: true
    Accessible.selected: row.isSelected
    Accessible.onPressAction: row.chosen()
    onClicked: row.chosen()

    contentItem: Item {
        // No positioners: they would know their sizes, and so the row's, only when a frame is made.
        Item {
            id: texts

            anchors.verticalCenter: parent.verticalCenter
            width: buttons.x - 8
            implicitHeight: titleLabel.implicitHeight + 3 + updatedLabel.implicitHeight

            PlainLabel {
                id: titleLabel

                width: parent.width
                text: row.title
                maximumLineCount: 1
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
            }

            PlainLabel {
                id: updatedLabel

                anchors.bottom: parent.bottom
                width: parent.width
                text: row.updatedText
                font: Theme.caption
                color: Theme.textSoft
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
            }
        }

        Item {
            id: buttons

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: renameButton.width + deleteButton.width
            height: renameButton.height
            opacity: row.hovered || row.isSelected || renameButton.activeFocus || deleteButton.activeFocus ? 1 : 0.45

            IconButton {
                id: renameButton

                iconName: "pencil"
                iconSize: 16
                label: "Sohbeti yeniden adlandır"
                KeyNavigation.backtab: row.before
                onClicked: row.renameRequested()
            }

            IconButton {
                id: deleteButton

                anchors.right: parent.right
                iconName: "bin"
                iconSize: 16
                label: "Sohbeti sil"
                iconColor: deleteButton.hovered ? Theme.danger : Theme.textSoft
                onClicked: row.deleteRequested()
            }
        }
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: row.isSelected ? Theme.accentSoft : row.hovered ? Theme.hover : "transparent"

        FocusRing {
            distance: 0
            shown: row.showsFocus
        }
    }
}

import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// One choice out of a list of texts. While it is open it has the keyboard, and then gives it back.
T.ComboBox {
    id: control

    /// What is chosen, for assistive technology.
    required property string label
    property bool opening: false
    property bool isOpen: false
    property Item focusBefore: null

    function isReturn(event: KeyEvent): bool {
        return (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !(event.modifiers & Qt.ControlModifier);
    }

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: Math.max(Theme.controlHeight, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: 10
    rightPadding: 30
    topPadding: 5
    bottomPadding: 5
    font: Theme.body
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    opacity: control.enabled ? 1 : 0.5

    Accessible.name: control.label
    Accessible.onPressAction: if (control.enabled)
        control.popup.open()
    // Opens when the key goes up: the template closes an open list at that moment.
    Keys.onPressed: event => {
        if (control.isReturn(event) && !control.popup.visible)
            event.accepted = control.opening = true;
    }
    Keys.onReleased: event => {
        if (!control.opening || !control.isReturn(event))
            return;
        control.opening = false;
        event.accepted = true;
        control.popup.open();
    }

    Connections {
        target: KeyboardFocus

        // To name a list that nobody has opened yet would be to make it.
        function onCloseMenus(): void {
            if (control.isOpen)
                control.popup.close();
        }
    }

    contentItem: PlainLabel {
        text: control.displayText
        font: control.font
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    indicator: Icon {
        x: control.width - width - 8
        y: (control.height - height) / 2
        width: 16
        height: 16
        name: "chevron-down"
        color: Theme.textSoft
    }

    delegate: ChoiceEntry {
        required property string modelData
        required property int index

        width: ListView.view ? ListView.view.width : implicitWidth
        text: modelData
        chosen: ListView.view ? (ListView.view as ChoiceList).chosenIndex === index : false
        highlighted: ListView.isCurrentItem
    }

    background: Rectangle {
        radius: Theme.radiusSmall
        color: Theme.field
        border.color: Theme.fieldEdge

        PointerShade {
            radius: parent.radius
            hovered: control.hovered
            pressed: control.pressed
        }

        FocusRing {
            distance: 1
            shown: control.visualFocus
        }
    }

    popup: T.Popup {
        readonly property FontMetrics metrics: FontMetrics {
            font: control.font
        }
        readonly property real widestText: Math.ceil(Math.max(0, ...control.model.map(text => metrics.advanceWidth(text))))

        onAboutToShow: {
            control.isOpen = true;
            contentItem.parent.Accessible.name = control.label;
            control.focusBefore = KeyboardFocus.holder(control);
            control.forceActiveFocus(Qt.PopupFocusReason);
        }
        onAboutToHide: {
            control.isOpen = false;
            if (control.focusBefore && KeyboardFocus.isWithin(control))
                control.focusBefore.forceActiveFocus(Qt.PopupFocusReason);
        }

        y: control.height + 4
        // Texts that begin alike are told apart by their ends.
        width: Math.max(control.width, 220, widestText + 40 + leftPadding + rightPadding)
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        padding: 5
        margins: 8

        contentItem: ChoiceList {
            model: control.delegateModel
            currentIndex: control.highlightedIndex
            chosenIndex: control.currentIndex
        }

        background: RaisedSurface {
            radius: Theme.radiusSmall + 2
            depth: 0.6
        }

        enter: Transition {
            NumberAnimation {
                property: "opacity"
                from: 0
                to: 1
                duration: Theme.quick
            }
        }
        exit: Transition {
            NumberAnimation {
                property: "opacity"
                to: 0
                duration: Theme.quick
            }
        }
    }
}

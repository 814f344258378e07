import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// A panel over the dimmed window that has to be answered first: alert, dialog or sheet.
///
/// Escape rejects it, Return clicks `defaultButton`. Opening moves the focus to the child with
/// `focus: true`, closing gives it back to where it was.
T.Dialog {
    id: panel

    /// Clicked by Return and Enter unless the focused control takes them.
    property T.AbstractButton defaultButton: null
    property bool showsTitle: true
    /// What assistive technology says beside the title when the panel opens or this changes.
    property string description: ""

    property Item focusBefore: null

    /// A key that is still held from what opened the panel answers nothing.
    function answer(event: KeyEvent): void {
        if (panel.defaultButton && panel.defaultButton.enabled && !event.isAutoRepeat)
            panel.defaultButton.clicked();
    }

    /// Unless somebody else has it: a panel that opened over this one, or while it fades out.
    function giveFocusBack(): void {
        if (panel.focusBefore && KeyboardFocus.isFreeFor(panel.focusBefore))
            panel.focusBefore.forceActiveFocus(Qt.PopupFocusReason);
    }

    // A window's popups give the focus back to the window only, not to its item. A panel that opens again
    // while it fades out still knows whom it owes the focus; another one that opens then finds it there.
    onAboutToShow: {
        if (!panel.focusBefore)
            panel.focusBefore = KeyboardFocus.holder(panel.parent);
        panel.contentItem.parent.Accessible.name = panel.title;
        panel.contentItem.parent.Accessible.description = Qt.binding(() => panel.description);
    }
    onAboutToHide: {
        KeyboardFocus.closeMenus();
        panel.giveFocusBack();
    }
    onClosed: {
        panel.giveFocusBack();
        panel.focusBefore = null;
    }

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    margins: 12
    padding: Theme.gapLarge
    topPadding: header && header.visible ? 0 : padding
    implicitWidth: 400
    spacing: Theme.gap
    implicitHeight: implicitContentHeight + topPadding + bottomPadding + (header && header.visible ? implicitHeaderHeight + spacing : 0)

    T.Overlay.modal: Rectangle {
        color: Theme.dim

        Behavior on opacity  {
            NumberAnimation {
                duration: Theme.duration
            }
        }
    }

    header: PlainLabel {
        visible: panel.showsTitle
        text: panel.title
        font: Theme.headline
        wrapMode: Text.Wrap
        leftPadding: panel.leftPadding
        rightPadding: panel.rightPadding
        topPadding: panel.bottomPadding
        Accessible.role: Accessible.Heading
    }

    contentItem: Column {
        spacing: panel.spacing
        Keys.onReturnPressed: event => panel.answer(event)
        Keys.onEnterPressed: event => panel.answer(event)
    }

    background: RaisedSurface {
        radius: Theme.radius
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.duration
            easing.type: Easing.OutCubic
        }
        NumberAnimation {
            property: "scale"
            from: 0.97
            to: 1
            duration: Theme.duration
            easing.type: Easing.OutCubic
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

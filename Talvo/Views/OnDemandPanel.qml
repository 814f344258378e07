import QtQuick
import Talvo.Views

/// A modal panel that exists only while it is wanted, and until it has faded out.
Loader {
    id: loader

    /// Open or closed, as its owner has it.
    required property bool wanted

    /// The user closed the panel, in whatever way; the owner lets `wanted` follow.
    signal dismissed

    readonly property ModalPanel panel: loader.item as ModalPanel

    function follow(): void {
        if (loader.wanted) {
            loader.active = true;
            // The toolkit hands what a closing menu had to the topmost panel: this is none yet.
            KeyboardFocus.closeMenus();
            loader.panel.open();
        } else if (loader.panel) {
            loader.panel.close();
        }
    }

    active: false
    visible: false
    onWantedChanged: loader.follow()
    Component.onCompleted: loader.follow()

    Connections {
        target: loader.panel

        function onAboutToHide(): void {
            loader.dismissed();
        }

        function onClosed(): void {
            loader.active = loader.wanted;
        }
    }
}

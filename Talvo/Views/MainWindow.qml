import QtQuick
import Talvo.Views

/// The one window of the application.
Window {
    id: window

    required property ChatModel model
    required property keychainHandle keychain

    width: Math.min(980, Screen.desktopAvailableWidth)
    height: Math.min(700, Screen.desktopAvailableHeight)
    minimumWidth: Math.min(760, Screen.desktopAvailableWidth)
    minimumHeight: Math.min(520, Screen.desktopAvailableHeight)
    title: window.model.hasSelection ? "Talvo Sohbet" : "Talvo"
    color: Theme.window
    visible: true
    // The bindings end here: a panel of the desktop that appears later, or another screen, does not
    // undo what the user made of the size.
    Component.onCompleted: {
        window.width = window.width;
        window.height = window.height;
    }

    ContentView {
        anchors.fill: parent
        model: window.model
        keychain: window.keychain
    }
}

import QtQuick
import Talvo.Views

/// Makes the context menu of a text when it is first asked for: most texts never need theirs.
Loader {
    id: loader

    /// Opens the menu at the pointer's place in `text`, any TextInput or TextEdit.
    function openFor(text: Item): void {
        text.forceActiveFocus(Qt.MouseFocusReason);
        pressed.text = text;
        pressed.start();
    }

    /// Opens the menu at the cursor of `text` when a key asks for it. Whether one did.
    function openByKey(event: KeyEvent, text: Item): bool {
        const isAskedFor = KeyboardFocus.asksForMenu(event.key, event.modifiers);
        if (isAskedFor) {
            loader.makeMenuOf(text);
            (loader.item as TextMenu).openAtCursor();
        }
        return isAskedFor;
    }

    // Gives nothing back: the menu would be loaded with the first window if its type stood here.
    function makeMenuOf(text: Item): void {
        if (loader.status === Loader.Null)
            loader.setSource("TextMenu.qml", {
                    "target": text,
                    "parent": text
                });
    }

    visible: false

    // Once the press that asks for the menu is over: with that the text takes the keyboard, which is the
    // menu's then. Unless a panel has opened since, which has it now.
    Timer {
        id: pressed

        property Item text: null

        interval: 0
        onTriggered: {
            if (!KeyboardFocus.isFreeFor(pressed.text))
                return;
            loader.makeMenuOf(pressed.text);
            (loader.item as TextMenu).openAtPointer();
        }
    }
}

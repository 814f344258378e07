import QtQuick
import Talvo.Views

/// Makes the context menu of a text when it is first asked for: most texts never need theirs.
Loader {
    id: loader

    /// Opens the menu at the pointer's place in `text`, any TextInput or TextEdit.
    function openFor(text: Item): void {
        if (status === Loader.Null)
            setSource("TextMenu.qml", {
                    "target": text,
                    "parent": text
                });
        // Once the press that asks for it is over: with that the text takes the keyboard, which is the menu's.
        Qt.callLater((loader.item as TextMenu).openAtPointer);
    }

    visible: false
}

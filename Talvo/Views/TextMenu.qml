import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// Cut, copy, paste and select all for a TextInput or a TextEdit.
T.Menu {
    id: menu

    /// A TextInput or TextEdit.
    required property var target
    readonly property bool selected: menu.target.selectionStart !== menu.target.selectionEnd

    /// Opens the menu at the pointer. Unlike `popup` it can be called from C++ too.
    function openAtPointer(): void {
        menu.popup();
    }

    /// Opens the menu below the cursor, for those who ask for it by key.
    function openAtCursor(): void {
        const cursor = menu.target.cursorRectangle;
        menu.popup(menu.target, cursor.x, cursor.y + cursor.height);
    }

    // A window's menus give the keyboard back to nobody.
    onClosed: if (KeyboardFocus.isFreeFor(menu.target))
        menu.target.forceActiveFocus(Qt.PopupFocusReason)

    Connections {
        target: KeyboardFocus

        function onCloseMenus(): void {
            menu.close();
        }
    }

    // As wide as its widest entry with a large font of the desktop's.
    implicitWidth: Math.max(cutItem.implicitWidth, copyItem.implicitWidth, pasteItem.implicitWidth, allItem.implicitWidth) + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    padding: 5
    margins: 6

    TextMenuItem {
        id: cutItem

        text: "Kes"
        visible: !menu.target.readOnly
        enabled: menu.target.enabled && menu.selected && menu.target.echoMode !== TextInput.Password
        onTriggered: menu.target.cut()
    }

    TextMenuItem {
        id: copyItem

        text: "Kopyala"
        enabled: menu.selected && menu.target.echoMode !== TextInput.Password
        onTriggered: menu.target.copy()
    }

    TextMenuItem {
        id: pasteItem

        text: "Yapıştır"
        visible: !menu.target.readOnly
        enabled: menu.target.enabled && menu.target.canPaste === true
        onTriggered: menu.target.paste()
    }

    TextMenuItem {
        id: allItem

        text: "Tümünü Seç"
        enabled: menu.target.length > 0
        onTriggered: menu.target.selectAll()
    }

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
    }

    background: RaisedSurface {
        radius: Theme.radiusSmall + 2
        depth: 0.6
    }
}

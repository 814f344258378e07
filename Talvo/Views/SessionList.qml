import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

// Components written in place know the ids around them; the formatter of this Qt version cannot write
// the pragma that would tell the linter so.
// qmllint disable unqualified

/// The scrolling list of conversations; the arrow keys walk through it. Asks for a new title itself:
/// a row that is out of sight may be used again for another conversation meanwhile.
ListView {
    id: list

    required property SessionListModel sessions
    /// The arrow keys walk: the keyboard is neither elsewhere nor with a row's button.
    readonly property bool isFocusedItself: list.activeFocus && (Window.activeFocusItem === list || Window.activeFocusItem === list.currentItem)
    /// Whether the rename dialog is open, for which conversation, and the text in it.
    property bool isRenaming: false
    property var renamedId
    property string editedTitle
    property bool savesTitle: false

    signal chatSelected(var id)
    signal renameChat(var id, string title)
    signal deleteChat(var id)
    /// A row was clicked, in contrast to walked over.
    signal rowChosen

    function selectRow(row: int): void {
        if (row >= 0 && row < list.count)
            list.chatSelected(list.sessions.sessionIdAt(row));
    }

    function askForTitle(id: var, title: string): void {
        list.renamedId = id;
        list.editedTitle = title;
        list.isRenaming = true;
    }

    /// Once the dialog has given the keyboard back: a failure may be told at once.
    function endRenaming(): void {
        const saves = list.savesTitle;
        list.savesTitle = false;
        list.isRenaming = false;
        if (saves)
            list.renameChat(list.renamedId, list.editedTitle);
    }

    /// There is nothing to rename any more when the conversation has left the list.
    function followRenamed(): void {
        list.isRenaming = list.isRenaming && list.sessions.hasSession(list.renamedId);
    }

    model: list.sessions
    currentIndex: list.sessions.selectedRow
    activeFocusOnTab: true
    // Room for the mark of the focus around the first row and the last.
    topMargin: 2
    bottomMargin: 2
    boundsBehavior: Flickable.StopAtBounds
    // The Tab key comes back to the selected row, not to the bin that it left by. A window in the
    // background keeps its place.
    onActiveFocusChanged: if (!list.activeFocus && list.currentItem && Window.active)
        list.currentItem.focus = true
    // One row out of sight, for the Tab key to go to. Each is made before a frame that does not show it.
    cacheBuffer: 40
    keyNavigationEnabled: false
    highlightFollowsCurrentItem: true
    highlightMoveDuration: 0
    highlightResizeDuration: 0
    clip: true
    reuseItems: true

    Accessible.role: Accessible.List
    Accessible.name: "Sohbetler"
    Keys.onUpPressed: list.selectRow(list.currentIndex - 1)
    Keys.onDownPressed: list.selectRow(list.currentIndex + 1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            list.selectRow(0);
        else if (event.key === Qt.Key_End)
            list.selectRow(list.count - 1);
        else
            return;
        event.accepted = true;
    }

    T.ScrollBar.vertical: ScrollBarV {
    }

    delegate: ChatSessionRow {
        required property var sessionId
        required property int index

        x: Theme.gap
        width: list.width - 2 * Theme.gap
        showsFocus: list.isFocusedItself && isSelected
        // The Tab key comes from the selected row, which the way back would leave out.
        before: index === 0 ? list.currentItem : null
        // What waits to be used again is no row of the list, to assistive technology either.
        ListView.onPooled: {
            giveFocusBack();
            visible = false;
        }
        ListView.onReused: visible = true
        onChosen: {
            list.chatSelected(sessionId);
            list.rowChosen();
        }
        onRenameRequested: list.askForTitle(sessionId, title)
        onDeleteRequested: list.deleteChat(sessionId)
    }

    Connections {
        target: list.sessions

        function onRowsRemoved(): void {
            list.followRenamed();
        }

        function onModelReset(): void {
            list.followRenamed();
        }
    }

    OnDemandPanel {
        wanted: list.isRenaming
        sourceComponent: RenameDialog {
            editedTitle: list.editedTitle
            onTitleEdited: title => list.editedTitle = title
            onSaved: list.savesTitle = true
        }
        onDismissed: list.endRenaming()
    }
}

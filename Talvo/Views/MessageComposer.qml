import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// Where the user writes: a text that grows up to six lines, and the send button.
FocusScope {
    id: composer

    required property string draft
    required property bool canSend
    required property bool isSending

    signal draftEdited(string text)
    signal send
    /// The page keys scroll the conversation.
    signal pageRequested(int pages)

    /// What stands in the text area, read once for each change.
    property string shownText: ""
    property bool isShowingDraft: false
    readonly property int maximumLines: 6
    readonly property real lineHeight: Math.ceil(metrics.height)

    function takeFocus(): void {
        if (textArea.enabled)
            textArea.forceActiveFocus();
    }

    /// A text that came back is gone on with at its end. Compared first: writing a text moves the
    /// cursor and forgets what could be undone.
    function showDraft(): void {
        if (composer.shownText === composer.draft)
            return;
        composer.isShowingDraft = true;
        textArea.text = composer.draft;
        composer.isShowingDraft = false;
        textArea.cursorPosition = textArea.length;
        composer.tellDraft();
    }

    /// Not while another text is written: to end what an input method has under way, the text area
    /// tells the old one once more.
    function tellDraft(): void {
        if (!composer.isShowingDraft && composer.shownText !== composer.draft)
            composer.draftEdited(composer.shownText);
    }

    /// What an input method has under way can be seen, too, and goes along.
    function sendAll(): void {
        InputMethod.commit();
        composer.send();
    }

    /// Return ends first what an input method has under way.
    function submit(): void {
        if (textArea.preeditText !== "")
            InputMethod.commit();
        else
            composer.send();
    }

    onDraftChanged: composer.showDraft()
    Component.onCompleted: {
        composer.showDraft();
        textArea.cursorPosition = textArea.length;
    }
    implicitHeight: Math.max(field.height, sendButton.height) + 2 * 16

    FontMetrics {
        id: metrics

        font: textArea.font
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.bar

        TapHandler {
            onTapped: composer.takeFocus()
        }
    }

    // Wherever the keyboard is; a modal panel keeps it from what lies below.
    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        autoRepeat: false
        enabled: composer.visible && composer.canSend
        onActivated: sendButton.clicked()
    }

    Flickable {
        id: field

        anchors.left: parent.left
        anchors.leftMargin: 16
        anchors.right: sendButton.left
        anchors.rightMargin: 12
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 16 + Math.max(0, (sendButton.height - composer.lineHeight - textArea.topPadding - textArea.bottomPadding) / 2)
        height: Math.min(textArea.contentHeight, composer.maximumLines * composer.lineHeight) + textArea.topPadding + textArea.bottomPadding
        contentWidth: width
        // Said here because the text area tells its height only once something was written.
        contentHeight: textArea.contentHeight + textArea.topPadding + textArea.bottomPadding
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        // Beside the text, not over the ends of its lines.
        T.ScrollBar.vertical: ScrollBarV {
            parent: composer
            anchors.left: field.right
            anchors.top: field.top
            anchors.bottom: field.bottom
        }

        T.TextArea.flickable: T.TextArea {
            id: textArea

            focus: true
            enabled: !composer.isSending
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            font: Theme.body
            color: Theme.text
            selectionColor: Theme.selection
            selectedTextColor: Theme.selectedText
            selectByMouse: true
            placeholderText: "Mesajını yaz…"
            topPadding: 2
            bottomPadding: 2

            Accessible.name: textArea.placeholderText
            Accessible.multiLine: true
            onTextChanged: {
                composer.shownText = DraftText.of(textArea.textDocument);
                composer.tellDraft();
            }
            // A disabled item gives up the focus; it is wanted back after the send, unless somebody
            // else has it by then.
            onEnabledChanged: if (textArea.enabled && KeyboardFocus.isFreeFor(textArea))
                composer.takeFocus()
            onPressed: event => {
                if (event.button === Qt.RightButton)
                    menu.openFor(textArea);
            }
            Keys.onPressed: event => {
                if (menu.openByKey(event, textArea))
                    event.accepted = true;
                else
                    composer.handleKey(event);
            }

            Text {
                x: textArea.leftPadding
                y: textArea.topPadding
                visible: textArea.length === 0 && textArea.preeditText === ""
                text: textArea.placeholderText
                textFormat: Text.PlainText
                font: textArea.font
                color: Theme.textFaint
            }

            TextMenuLoader {
                id: menu
            }
        }
    }

    function handleKey(event: KeyEvent): void {
        const isReturn = event.key === Qt.Key_Return || event.key === Qt.Key_Enter;
        if (event.key === Qt.Key_Tab || event.key === Qt.Key_Backtab)
            textArea.nextItemInFocusChain(event.key === Qt.Key_Tab).forceActiveFocus(event.key === Qt.Key_Tab ? Qt.TabFocusReason : Qt.BacktabFocusReason);
        else if (event.key === Qt.Key_PageUp)
            composer.pageRequested(-1);
        else if (event.key === Qt.Key_PageDown)
            composer.pageRequested(1);
        else if (!isReturn || event.modifiers & Qt.ShiftModifier)
            return;
        else if (!(event.modifiers & Qt.ControlModifier) && !event.isAutoRepeat)
            composer.submit();
        // Control-Return is the button's: where that is disabled it breaks no line either. Nor does a
        // key that is still held from what closed a panel.
        event.accepted = true;
    }

    IconButton {
        id: sendButton

        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 16
        width: 32
        height: 32
        iconName: "arrow-up"
        label: "Mesajı gönder"
        prominent: true
        enabled: composer.canSend
        onClicked: if (composer.canSend)
            composer.sendAll()
    }
}

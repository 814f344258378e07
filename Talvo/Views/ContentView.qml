import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

// Components written in place know the ids around them; the formatter of this Qt version cannot write
// the pragma that would tell the linter so.
// qmllint disable unqualified

/// The window's content: sidebar and conversation side by side, the error alert and the settings
/// sheet over them. The only place where the controller's operations meet the sidebar.
FocusScope {
    id: contentView

    required property ChatModel model
    required property keychainHandle keychain
    property bool isShowingSettings: false

    /// Whether the right column may have the keyboard: panels, menus and the list of conversations
    /// keep it.
    function mayTakeFocus(): bool {
        return !sidebar.isListFocused && !KeyboardFocus.isWithin(contentView.T.Overlay.overlay);
    }

    focus: true
    Component.onCompleted: contentView.model.startLoadingArchive()

    Connections {
        target: contentView.model

        function onSelectedChatIDChanged(): void {
            KeyboardFocus.closeMenus();
            if (chatView.visible && contentView.mayTakeFocus())
                chatView.takeFocus();
        }
    }

    T.SplitView {
        id: columns

        readonly property int sidebarMinimum: 220
        readonly property int chatMinimum: 420

        anchors.fill: parent
        orientation: Qt.Horizontal

        handle: Rectangle {
            implicitWidth: 1
            color: Theme.separator
            containmentMask: Item {
                x: -3
                width: 7
                height: contentView.height
            }
        }

        SidebarView {
            id: sidebar

            T.SplitView.minimumWidth: columns.sidebarMinimum
            // What the user has dragged wide gives way when the window gets narrow.
            T.SplitView.maximumWidth: Math.max(columns.sidebarMinimum, columns.width - columns.chatMinimum - 1)
            T.SplitView.preferredWidth: 250
            sessions: SessionListModel {
                controller: contentView.model
            }
            selectedModel: contentView.model.selectedModel
            models: contentView.model.availableModels
            isLoading: contentView.model.isLoadingArchive
            isSaving: contentView.model.isSavingArchive
            onNewChat: {
                contentView.model.newChat();
                chatView.takeFocus();
            }
            onChatSelected: id => contentView.model.selectChat(id)
            onRowChosen: chatView.takeFocus()
            onRenameChat: (id, title) => contentView.model.renameChat(id, title)
            onDeleteChat: id => contentView.model.deleteChat(id)
            onModelSelected: name => contentView.model.selectModel(name)
            onShowSettings: contentView.isShowingSettings = true
        }

        Item {
            T.SplitView.fillWidth: true
            T.SplitView.minimumWidth: columns.chatMinimum

            ChatView {
                id: chatView

                anchors.fill: parent
                visible: contentView.model.hasSelection
                model: contentView.model
            }

            Loader {
                anchors.fill: parent
                active: !contentView.model.hasSelection
                onLoaded: if (contentView.mayTakeFocus())
                    (item as EmptyChatView).forceActiveFocus()
                sourceComponent: EmptyChatView {
                    onNewChat: contentView.model.newChat()
                }
            }
        }
    }

    OnDemandPanel {
        wanted: contentView.isShowingSettings
        sourceComponent: APIKeySettingsView {
            keychain: contentView.keychain
        }
        onDismissed: contentView.isShowingSettings = false
    }

    OnDemandPanel {
        wanted: contentView.model.hasErrorMessage
        sourceComponent: ErrorAlert {
            message: contentView.model.hasErrorMessage ? contentView.model.errorMessage : null
        }
        onDismissed: contentView.model.clearErrorMessage()
    }
}

import QtQuick
import QtQuick.Templates as T
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

    focus: true
    Component.onCompleted: contentView.model.startLoadingArchive()

    T.SplitView {
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
            T.SplitView.minimumWidth: 220
            T.SplitView.preferredWidth: 250
            sessions: SessionListModel {
                controller: contentView.model
            }
            selectedModel: contentView.model.selectedModel
            models: contentView.model.availableModels
            isLoading: contentView.model.isLoadingArchive
            isSaving: contentView.model.isSavingArchive
            onNewChat: contentView.model.newChat()
            onChatSelected: id => contentView.model.selectChat(id)
            onRenameChat: (id, title) => contentView.model.renameChat(id, title)
            onDeleteChat: id => contentView.model.deleteChat(id)
            onModelSelected: name => contentView.model.selectModel(name)
            onShowSettings: contentView.isShowingSettings = true
        }

        Item {
            T.SplitView.fillWidth: true
            T.SplitView.minimumWidth: 420

            ChatView {
                anchors.fill: parent
                visible: contentView.model.hasSelection
                model: contentView.model
            }

            Loader {
                anchors.fill: parent
                active: !contentView.model.hasSelection
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
            message: contentView.model.errorMessage
        }
        onDismissed: contentView.model.clearErrorMessage()
    }
}

import QtQuick
import Talvo.Views

/// The left column: the conversations, the model choice and the way to the settings.
FocusScope {
    id: sidebar

    required property SessionListModel sessions
    required property string selectedModel
    /// The model identifiers on offer, a list of strings.
    required property var models
    /// The keyboard is in the list of conversations, and there is something to walk over.
    readonly property bool isListFocused: list.activeFocus && list.count > 0
    property bool isLoading: false
    property bool isSaving: false

    signal newChat
    signal chatSelected(var id)
    /// A conversation was clicked, in contrast to walked over with the keys.
    signal rowChosen
    signal renameChat(var id, string title)
    signal deleteChat(var id)
    signal modelSelected(string name)
    signal showSettings

    Rectangle {
        anchors.fill: parent
        color: Theme.sidebar
    }

    PlainLabel {
        id: nameLabel

        x: Theme.gap + 10
        y: Theme.gap + 4
        text: "Talvo"
        font: Theme.title2
        Accessible.role: Accessible.Heading
    }

    SectionLabel {
        id: chatsLabel

        anchors.top: nameLabel.bottom
        anchors.topMargin: Theme.gap
        x: nameLabel.x
        text: "Sohbetler"
    }

    SidebarButton {
        id: newChatButton

        anchors.top: chatsLabel.bottom
        anchors.topMargin: 4
        x: Theme.gap
        width: sidebar.width - 2 * Theme.gap
        text: "Yeni Sohbet"
        iconName: "square-pencil"
        onClicked: sidebar.newChat()
    }

    SessionList {
        id: list

        anchors.top: newChatButton.bottom
        anchors.bottom: modelLabel.top
        anchors.bottomMargin: Theme.gap
        width: sidebar.width
        focus: true
        sessions: sidebar.sessions
        onChatSelected: id => sidebar.chatSelected(id)
        onRowChosen: sidebar.rowChosen()
        onRenameChat: (id, title) => sidebar.renameChat(id, title)
        onDeleteChat: id => sidebar.deleteChat(id)
    }

    ArchiveActivity {
        anchors.bottom: list.bottom
        anchors.bottomMargin: Theme.gapSmall
        anchors.horizontalCenter: list.horizontalCenter
        isLoading: sidebar.isLoading
        isSaving: sidebar.isSaving
    }

    SectionLabel {
        id: modelLabel

        anchors.bottom: modelChoice.top
        anchors.bottomMargin: 4
        x: nameLabel.x
        text: "Model"
    }

    Choice {
        id: modelChoice

        anchors.bottom: settingsButton.top
        anchors.bottomMargin: Theme.gapSmall
        x: Theme.gap
        width: sidebar.width - 2 * Theme.gap
        label: "Groq modeli"
        model: sidebar.models
        // A model that is not on offer any more is shown all the same.
        currentIndex: sidebar.models.indexOf(sidebar.selectedModel)
        displayText: sidebar.selectedModel
        onActivated: index => sidebar.modelSelected(sidebar.models[index])
    }

    SidebarButton {
        id: settingsButton

        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.gap
        x: Theme.gap
        width: sidebar.width - 2 * Theme.gap
        text: "API Ayarları"
        iconName: "key"
        onClicked: sidebar.showSettings()
    }
}

pragma Singleton
import QtQuick
import Talvo.Views

/// The fonts, colours, distances and durations that views share.
QtObject {
    id: theme

    readonly property DesktopAppearance desktop: DesktopAppearance {
    }
    /// True in the dark appearance.
    readonly property bool dark: desktop.dark

    // Fonts, relative to the application font
    readonly property int bodySize: desktop.bodyPixelSize
    readonly property font body: desktop.font(bodySize, Font.Normal)
    readonly property font strong: desktop.font(bodySize, Font.DemiBold)
    readonly property font title: desktop.font(Math.round(bodySize * 22 / 13), Font.DemiBold)
    readonly property font title2: desktop.font(Math.round(bodySize * 17 / 13), Font.DemiBold)
    readonly property font headline: strong
    readonly property font caption: desktop.font(Math.round(bodySize * 10 / 13), Font.Normal)
    readonly property string fixedFamily: desktop.fixedFamily

    // Surfaces
    readonly property color window: dark ? "#1b1c20" : "#fcfcfd"
    readonly property color sidebar: dark ? "#222328" : "#f3f4f7"
    readonly property color raised: dark ? "#292a30" : "#ffffff"
    readonly property color bar: Qt.alpha(sidebar, 0.9) // no blur: what lies below must not be read through it
    readonly property color field: dark ? "#222328" : "#ffffff"
    readonly property color fieldEdge: dark ? "#7a7f8c" : "#858a96"
    readonly property color separator: dark ? "#24ffffff" : "#1f0f1220"
    readonly property color dim: dark ? "#8c000000" : "#4d101318"
    readonly property color shadow: dark ? "#14000000" : "#05101828"
    readonly property color hover: dark ? "#12ffffff" : "#0d000000"
    readonly property color pressed: dark ? "#21ffffff" : "#1a000000"

    // Text
    readonly property color text: dark ? "#ecedf1" : "#1b1d22"
    readonly property color textSoft: dark ? "#a9aeb9" : "#5b5f69"
    readonly property color textFaint: dark ? "#999eaa" : "#686c76"
    readonly property color secondary: textSoft
    readonly property color link: desktop.readable(accent, desktop.blended(codeBg, desktop.blended(bubbleBot, window)), 4.5)
    readonly property color danger: dark ? "#ff8078" : "#c22a2a"
    readonly property color success: dark ? "#57cb94" : "#1a7443"

    // Accent: white text has to be readable on it, whichever the desktop names
    readonly property color accent: desktop.readable(desktop.hasAccent ? desktop.accent : avatarUser, "#ffffff", 4.5)
    readonly property color accentText: "#ffffff"
    readonly property color accentSoft: Qt.alpha(dark ? link : accent, dark ? 0.2 : 0.12)
    readonly property color focus: dark ? link : accent
    readonly property color selection: dark ? "#2f4f8c" : "#bcd4fb"
    readonly property color selectedText: text

    // Conversation
    readonly property color bubbleUser: accent
    readonly property color bubbleBot: Qt.alpha(secondary, 0.12)
    readonly property color avatarUser: dark ? "#2f6adb" : "#2a66dc"
    readonly property color avatarBot: dark ? "#8a5cd6" : "#7d4fd0"
    readonly property color codeBg: dark ? "#1affffff" : "#12000000"
    readonly property color tableLine: Qt.alpha(secondary, 0.3)
    readonly property color tableHead: Qt.alpha(secondary, 0.12)
    readonly property color scrollbar: dark ? "#73ffffff" : "#66000000"

    /// Of replies.
    readonly property MessageLooks messageLooks: MessageLooks {
        text: theme.text
        selection: theme.selection
        selectedText: theme.selectedText
        link: theme.link
        focusedLink: theme.window
        codeBackground: theme.codeBg
        tableHead: theme.tableHead
        tableLine: theme.separator
        body: theme.body
        strong: theme.strong
        title: theme.title
        title2: theme.title2
        headline: theme.headline
        codeFamily: theme.fixedFamily
    }
    /// Of the user's own messages, which are text as it stands on the accent colour.
    readonly property MessageLooks ownMessageLooks: MessageLooks {
        text: theme.accentText
        selection: theme.selection
        selectedText: theme.selectedText
        body: theme.body
    }

    // Distances
    readonly property int radius: 14
    readonly property int radiusSmall: 7
    readonly property int radiusTable: 6
    readonly property int gapSmall: 6
    readonly property int gap: 12
    readonly property int gapLarge: 24
    /// Of the messages, with a large gap at either side of them.
    readonly property int columnWidth: 860
    readonly property int controlHeight: Math.max(30, Math.round(bodySize * 2.3))

    // Motion, in milliseconds
    readonly property int duration: desktop.reducedMotion ? 0 : 160
    readonly property int quick: desktop.reducedMotion ? 0 : 90
}

import QtQuick
import Talvo.Views

/// One message: an avatar at its writer's side and a bubble that keeps clear of the other side.
Item {
    id: row

    /// The message's text, for the view in the bubble.
    required property string content
    required property bool isAssistant
    /// The row is made above what is visible: a long text is made from its end on.
    property bool growsUpwards: false
    /// What draws a text that may be long enough to be made in portions, or null.
    property MarkdownBlockStack stack: null
    /// How much of maximumContentWidth the bubble's content needs.
    required property real contentWidth
    required property real contentHeight
    default property alias bubbleContent: bubble.data

    readonly property int horizontalPadding: 14
    readonly property int verticalPadding: 11
    readonly property int columnWidth: Math.min(row.width, Theme.columnWidth) - 2 * Theme.gapLarge
    readonly property int columnX: Math.round((row.width - row.columnWidth) / 2)
    /// The least that stays free at the other side.
    readonly property int clearance: 80
    /// The widest that the bubble's content may become.
    readonly property int maximumContentWidth: row.columnWidth - avatar.width - 2 * Theme.gap - row.clearance - 2 * row.horizontalPadding

    height: Math.max(bubble.height, avatar.height)

    Avatar {
        id: avatar

        x: row.isAssistant ? row.columnX : row.columnX + row.columnWidth - width
        isAssistant: row.isAssistant
    }

    Rectangle {
        id: bubble

        x: row.isAssistant ? avatar.x + avatar.width + Theme.gap : avatar.x - Theme.gap - width
        width: Math.min(Math.ceil(row.contentWidth), row.maximumContentWidth) + 2 * row.horizontalPadding
        height: Math.ceil(row.contentHeight) + 2 * row.verticalPadding
        radius: Theme.radius
        color: row.isAssistant ? Theme.bubbleBot : Theme.bubbleUser
    }
}

import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// A small label beside a control or a link, shown when the pointer has rested there.
T.ToolTip {
    id: hint

    /// Shows the text after a moment; an empty one hides the hint.
    function show(text: string): void {
        if (text !== "")
            hint.text = text;
        hint.visible = text !== "";
    }

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + 6 : 0
    margins: 6
    leftPadding: 9
    rightPadding: 9
    topPadding: 5
    bottomPadding: 5
    implicitWidth: Math.min(420, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    closePolicy: T.Popup.NoAutoClose
    delay: 600

    contentItem: Text {
        text: hint.text
        textFormat: Text.PlainText
        font: Theme.body
        color: Theme.text
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
    }

    background: RaisedSurface {
        radius: Theme.radiusSmall
        depth: 0.3
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.duration
        }
    }
}

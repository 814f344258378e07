import QtQuick
import Talvo.Views

/// A heading; from the third level on all look alike.
MarkdownText {
    required property int level

    font: level === 1 ? Theme.title : level === 2 ? Theme.title2 : Theme.headline
    Accessible.role: Accessible.Heading
}

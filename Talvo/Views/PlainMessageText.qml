import QtQuick
import Talvo.Views

/// A message exactly as written, to read, select and copy.
ReadOnlyText {
    required property string content

    looks: Theme.messageLooks
    source: content
}

import QtQuick
import Talvo.Views

/// The same scroll bar, lying.
ScrollBarV {
    orientation: Qt.Horizontal
}

import QtQuick
import Talvo.Views

/// The small heading over a part of the sidebar.
PlainLabel {
    font: Theme.caption
    color: Theme.textSoft
    Accessible.role: Accessible.Heading
}

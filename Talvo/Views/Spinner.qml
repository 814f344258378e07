import QtQuick
import Talvo.Views

/// A small sign that something is going on: a ring of dots that light up one after the other. It
/// moves ten times a second, and only while it is visible in a window that is shown.
SpinnerDots {
    id: spinner

    color: Theme.textSoft

    Timer {
        interval: 100
        repeat: true
        running: spinner.visible && spinner.Window.visibility !== Window.Hidden && spinner.Window.visibility !== Window.Minimized
        onTriggered: spinner.step = (spinner.step + 1) % 8
    }
}

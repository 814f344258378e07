import QtQuick
import Talvo.Views.Controls as T
import Talvo.Views

/// What the buttons have in common beside their looks: Return clicks them as Space does, but neither a
/// key that is still held from before nor Control-Return, which sends from everywhere.
T.Button {
    id: control

    function clickBy(event: KeyEvent): void {
        if (!event.isAutoRepeat && !(event.modifiers & Qt.ControlModifier))
            control.clicked();
    }

    hoverEnabled: true

    Accessible.name: control.text
    Accessible.onPressAction: if (control.enabled)
        control.clicked()
    onVisualFocusChanged: if (control.visualFocus)
        KeyboardFocus.reveal(control)
    Keys.onReturnPressed: event => control.clickBy(event)
    Keys.onEnterPressed: event => control.clickBy(event)
}

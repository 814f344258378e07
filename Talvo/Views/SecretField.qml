import QtQuick
import Talvo.Views

/// A text field whose characters are never shown, nor learnt by an input method.
Field {
    echoMode: TextInput.Password
    passwordMaskDelay: 0
    passwordCharacter: "●"
    inputMethodHints: Qt.ImhHiddenText | Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
}

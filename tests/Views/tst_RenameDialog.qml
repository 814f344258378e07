import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 600
    height: 400

    Component {
        id: dialogComponent

        RenameDialog {
            id: dialog

            property int saves: 0

            editedTitle: "Ekşi maya"
            onTitleEdited: title => dialog.editedTitle = title
            onSaved: dialog.saves++
        }
    }

    TestCase {
        name: "RenameDialog"
        when: windowShown

        function opened() {
            const dialog = createTemporaryObject(dialogComponent, scene);
            dialog.open();
            tryCompare(dialog, "opened", true);
            return dialog;
        }

        function field(dialog) {
            return Probe.find(dialog.contentItem, "Field")[0];
        }

        function button(dialog, name) {
            return Probe.find(dialog.contentItem, "PushButton").find(item => item.text === name);
        }

        function test_isNamedAndAsksForAName() {
            const dialog = opened();
            compare(Probe.name(dialog.contentItem.parent), "Sohbeti Yeniden Adlandır");
            compare(field(dialog).placeholderText, "Sohbet adı");
            compare(Probe.name(field(dialog)), "Sohbet adı");
            compare(Probe.find(dialog.contentItem, "PushButton").map(item => item.text), ["Vazgeç", "Kaydet"]);
        }

        function test_typingReplacesTheOldTitle() {
            const dialog = createTemporaryObject(dialogComponent, scene);
            dialog.open();
            verify(field(dialog).activeFocus);
            keyClick("Y");
            compare(dialog.editedTitle, "Y");
            tryCompare(dialog, "opened", true);
            keyClick("e");
            compare(dialog.editedTitle, "Ye", "what was typed while the panel faded in stays");
        }

        function test_savesOnceAndCloses_data() {
            return [{
                    "tag": "click"
                }, {
                    "tag": "return",
                    "key": Qt.Key_Return
                }, {
                    "tag": "enter",
                    "key": Qt.Key_Enter
                }];
        }

        function test_savesOnceAndCloses(data) {
            const dialog = opened();
            button(dialog, "Kaydet").forceActiveFocus(Qt.TabFocusReason);
            if (data.key)
                keyClick(data.key);
            else
                mouseClick(button(dialog, "Kaydet"));
            tryCompare(dialog, "visible", false);
            compare(dialog.saves, 1);
        }

        function test_returnInTheFieldOnlyEndsTheEditing_data() {
            return [{
                    "tag": "return",
                    "key": Qt.Key_Return
                }, {
                    "tag": "enter",
                    "key": Qt.Key_Enter
                }];
        }

        function test_returnInTheFieldOnlyEndsTheEditing(data) {
            const dialog = opened();
            keyClick("a");
            keyClick(data.key);
            verify(dialog.opened);
            compare(dialog.saves, 0);
            compare(dialog.editedTitle, "a");
            verify(!field(dialog).activeFocus);
            verify(button(dialog, "Kaydet").visualFocus);
            Probe.repeatKey(button(dialog, "Kaydet"), data.key);
            compare(dialog.saves, 0, "the key is still held");
            keyClick(data.key);
            tryCompare(dialog, "visible", false);
            compare(dialog.saves, 1);
        }

        function test_aKeyThatIsStillHeldSavesNothing() {
            const dialog = opened();
            Probe.repeatKey(field(dialog), Qt.Key_Return);
            compare(dialog.saves, 0);
            verify(dialog.visible);
        }

        function test_leavesNoMenuOfItsFieldBehind() {
            const holder = createTemporaryQmlObject("import QtQuick; Item {}", scene);
            holder.forceActiveFocus();
            const dialog = opened();
            keyClick(Qt.Key_Menu);
            const entries = () => Probe.find(scene.Window.contentItem, "TextMenuItem").filter(item => item.visible);
            tryVerify(() => entries().length > 0);
            Probe.press(button(dialog, "Vazgeç"));
            tryCompare(dialog, "visible", false);
            tryVerify(() => entries().length === 0);
            verify(holder.activeFocus);
        }

        function test_anEmptyNameCanBeSaved() {
            const dialog = opened();
            keyClick(Qt.Key_Backspace);
            compare(dialog.editedTitle, "");
            verify(button(dialog, "Kaydet").enabled);
            mouseClick(button(dialog, "Kaydet"));
            compare(dialog.saves, 1);
        }

        function test_callingOffSavesNothing_data() {
            return [{
                    "tag": "click"
                }, {
                    "tag": "escape",
                    "key": Qt.Key_Escape
                }];
        }

        function test_callingOffSavesNothing(data) {
            const dialog = opened();
            if (data.key)
                keyClick(data.key);
            else
                mouseClick(button(dialog, "Vazgeç"));
            tryCompare(dialog, "visible", false);
            compare(dialog.saves, 0);
        }

        function test_returnOnTheCancelButtonCancels() {
            const dialog = opened();
            button(dialog, "Vazgeç").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            tryCompare(dialog, "visible", false);
            compare(dialog.saves, 0);
        }
    }
}

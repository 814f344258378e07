import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 600
    height: 400

    PushButton {
        id: behind

        text: "Arka"
    }

    Component {
        id: panel

        ModalPanel {
            id: dialog

            property alias field: field
            property alias save: save
            property int saved: 0

            title: "Sohbeti Yeniden Adlandır"
            defaultButton: save

            Field {
                id: field

                focus: true
                placeholderText: "Sohbet adı"
            }

            PushButton {
                id: save

                text: "Kaydet"
                onClicked: dialog.saved++
            }
        }
    }

    TestCase {
        name: "ModalPanel"
        when: windowShown

        function opened() {
            behind.forceActiveFocus();
            const item = createTemporaryObject(panel, scene);
            item.open();
            tryCompare(item, "opened", true);
            return item;
        }

        function test_takesAndReturnsTheFocus() {
            const item = opened();
            verify(item.field.activeFocus);
            keyClick(Qt.Key_Tab);
            verify(item.save.activeFocus);
            keyClick(Qt.Key_Tab);
            verify(item.field.activeFocus, "Tab stays inside");
            item.close();
            tryCompare(item, "visible", false);
            verify(behind.activeFocus);
        }

        function test_hasTheFocusWhenOpenedAgainWhileItFades() {
            const item = opened();
            item.close();
            wait(20);
            verify(item.visible);
            item.open();
            tryCompare(item, "opened", true);
            verify(item.field.activeFocus);
            item.close();
            tryCompare(item, "visible", false);
            verify(behind.activeFocus);
        }

        function test_escapeRejects() {
            const item = opened();
            let rejected = 0;
            item.rejected.connect(() => rejected++);
            keyClick(Qt.Key_Escape);
            tryCompare(item, "visible", false);
            compare(rejected, 1);
        }

        function test_returnAnswers() {
            const item = opened();
            keyClick(Qt.Key_Return);
            compare(item.saved, 1);
            item.save.enabled = false;
            keyClick(Qt.Key_Enter);
            compare(item.saved, 1);
        }

        function test_aKeyThatIsStillHeldAnswersNothing() {
            const item = opened();
            Probe.repeatKey(item.field, Qt.Key_Return);
            compare(item.saved, 0);
        }

        function test_returnOnAButtonAnswersOnce() {
            const item = opened();
            item.save.forceActiveFocus();
            keyClick(Qt.Key_Return);
            compare(item.saved, 1);
        }

        function test_isCentredAndModal() {
            const item = opened();
            fuzzyCompare(item.x + item.width / 2, 300, 1);
            fuzzyCompare(item.y + item.height / 2, 200, 1);
            let clicked = 0;
            behind.clicked.connect(() => clicked++);
            mouseClick(behind);
            compare(clicked, 0);
            verify(item.opened);
        }

        function test_isADialogNamedByItsTitle() {
            const item = opened();
            const root = item.contentItem.parent;
            compare(Probe.name(root), "Sohbeti Yeniden Adlandır");
            compare(Probe.role(root), Accessible.Dialog);
            compare(Probe.texts(root), "Sohbeti Yeniden Adlandır");
        }
    }
}

import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 600
    height: 400

    Component {
        id: field

        Field {
            placeholderText: "Sohbet adı"
            text: "bir iki"
        }
    }

    Component {
        id: composer

        MessageComposer {
            width: 400
            draft: "bir iki"
            canSend: true
            isSending: false
        }
    }

    Component {
        id: message

        PlainMessageText {
            width: 300
            content: "bir iki"
        }
    }

    TestCase {
        name: "TextMenu"
        when: windowShown

        function entries() {
            return Probe.find(scene.Window.contentItem, "TextMenuItem").filter(item => item.visible);
        }

        function test_isOpenedByKey_data() {
            const rows = [];
            for (const [tag, component, type] of [["field", field, null], ["composer", composer, "Talvo::ControlTemplates::TextArea"], ["message", message, null]]) {
                rows.push({
                        "tag": tag + ", menu key",
                        "component": component,
                        "type": type,
                        "key": Qt.Key_Menu,
                        "modifiers": Qt.NoModifier
                    }, {
                        "tag": tag + ", Shift-F10",
                        "component": component,
                        "type": type,
                        "key": Qt.Key_F10,
                        "modifiers": Qt.ShiftModifier
                    });
            }
            return rows;
        }

        function test_isOpenedByKey(data) {
            const item = createTemporaryObject(data.component, scene);
            const text = data.type ? Probe.find(item, data.type)[0] : item;
            text.forceActiveFocus();
            text.cursorPosition = 3;
            keyClick(Qt.Key_F10);
            wait(50);
            compare(entries().length, 0);
            keyClick(data.key, data.modifiers);
            tryVerify(() => entries().length > 0 && !text.activeFocus);
            const place = entries()[0].mapToItem(text, 0, 0);
            verify(place.y >= text.cursorRectangle.y + text.cursorRectangle.height, place);
            verify(Math.abs(place.x - text.cursorRectangle.x) < 20, place);
            keyClick(Qt.Key_Escape);
            tryVerify(() => entries().length === 0 && text.activeFocus);
            compare(text.cursorPosition, 3);
        }
    }
}

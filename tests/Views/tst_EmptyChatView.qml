import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 600
    height: 400

    EmptyChatView {
        id: view

        property int newChats: 0

        width: scene.width
        height: scene.height
        onNewChat: view.newChats++
    }

    TestCase {
        name: "EmptyChatView"
        when: windowShown

        function init() {
            view.newChats = 0;
            view.width = scene.width;
        }

        function button() {
            return Probe.find(view, "PushButton")[0];
        }

        function test_saysThatThereIsNothingAndWhatToDo() {
            compare(Probe.texts(view), "Burada herhangi bir sohbet yok|Talvo ile konuşmaya başlamak için yeni bir sohbet oluştur.");
            compare(Probe.find(view, "Talvo::Icon").map(icon => icon.name), ["bubbles"]);
            compare(button().text, "Yeni Sohbet");
            verify(button().prominent);
        }

        function test_theButtonStartsAChat() {
            mouseClick(button());
            compare(view.newChats, 1);
            button().forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            compare(view.newChats, 2);
            keyClick(Qt.Key_Space);
            compare(view.newChats, 3);
            Probe.press(button());
            compare(view.newChats, 4);
        }

        function test_isCentred_data() {
            return [{
                    "tag": "usual",
                    "width": 600
                }, {
                    "tag": "narrow",
                    "width": 300
                }];
        }

        function test_isCentred(data) {
            view.width = data.width;
            const column = button().parent;
            fuzzyCompare(column.x + column.width / 2, view.width / 2, 1);
            fuzzyCompare(column.y + column.height / 2, view.height / 2, 1);
            for (const label of Probe.find(view, "PlainLabel")) {
                verify(!label.truncated);
                verify(label.contentWidth <= column.width);
            }
            verify(column.width <= view.width - 48);
        }
    }
}

import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 400
    height: 300

    Component {
        id: text

        PlainMessageText {
            width: 300
        }
    }

    TestCase {
        name: "PlainMessageText"
        when: windowShown

        function test_showsMarkupAsItIs_data() {
            return [{
                    "tag": "markdown",
                    "content": "# x\n**y**\n\n- z"
                }, {
                    "tag": "html",
                    "content": "<img src='http://example.com/x.png'><b>x</b>"
                }, {
                    "tag": "blanks",
                    "content": "  a   b\n\n\tc  "
                }];
        }

        function test_showsMarkupAsItIs(data) {
            const item = createTemporaryObject(text, scene, {
                    "content": data.content
                });
            compare(Probe.name(item), data.content);
            compare(Probe.text(item), data.content);
            compare(item.textFormat, TextEdit.PlainText);
        }

        function test_copiesExactly() {
            const content = "a\u00A0b\nc 🙂";
            const item = createTemporaryObject(text, scene, {
                    "content": content
                });
            item.forceActiveFocus();
            item.selectAll();
            keySequence(StandardKey.Copy);
            compare(Probe.clipboard(), content);
            compare(Probe.clipboardHtml(), "");
        }

        function test_cannotBeWritten() {
            const item = createTemporaryObject(text, scene, {
                    "content": "x"
                });
            verify(!Probe.write(item, "y"));
            Probe.setValue(item, "y");
            item.forceActiveFocus();
            keyClick(Qt.Key_Y);
            compare(item.text, "x");
        }
    }
}

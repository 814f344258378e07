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

    Component {
        id: row

        UserMessageRow {
            width: 400
        }
    }

    Component {
        id: scrolled

        Flickable {
            width: 300
            height: 100
            contentHeight: message.height
            boundsBehavior: Flickable.StopAtBounds

            PlainMessageText {
                id: message

                objectName: "message"
                width: 300
                content: "satır\n".repeat(60)
            }
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

        function test_aDragSelectsBeyondTheEdge() {
            const view = createTemporaryObject(scrolled, scene);
            const item = findChild(view, "message");
            mousePress(view, 20, 50);
            for (let y = 60; y <= 130; y += 10)
                mouseMove(view, 20, y, -1, Qt.LeftButton);
            const below = view.contentY;
            verify(below > 20, below);
            mouseMove(view, 21, 130, -1, Qt.LeftButton);
            verify(view.contentY > below, view.contentY);
            verify(item.selectionEnd - item.selectionStart > 50, item.selectedText);
            for (let step = 0; step < 20; ++step)
                mouseMove(view, 20 + step, -40, -1, Qt.LeftButton);
            compare(view.contentY, 0);
            mouseRelease(view, 20, -40);
            verify(item.selectionStart < 10);
        }

        function test_aDragWithinTheEdgesScrollsNothing() {
            const view = createTemporaryObject(scrolled, scene);
            mousePress(view, 20, 10);
            for (let y = 10; y < 100; y += 10)
                mouseMove(view, 20, y, -1, Qt.LeftButton);
            compare(view.contentY, 0);
            mouseRelease(view, 20, 99);
        }

        function test_knowsWhatHoldsUpTheWindow() {
            const item = createTemporaryObject(text, scene, {
                    "content": ""
                });
            verify(item.isQuick("x".repeat(20000)));
            verify(!item.isQuick("x".repeat(20001)));
            verify(!item.isQuick("e" + "\u0301".repeat(1000)));
        }

        function test_aRowShowsInPiecesWhatHoldsUpTheWindow() {
            const item = createTemporaryObject(row, scene, {
                    "content": "e" + "\u0301".repeat(1000)
                });
            verify(item.inPieces);
            item.content = "kısa";
            verify(!item.inPieces);
        }

        function test_tellsWhereEachCharacterStands() {
            const item = createTemporaryObject(text, scene, {
                    "x": 20,
                    "y": 30,
                    "content": "wm\nw"
                });
            const places = [0, 1, 2, 3].map(offset => Probe.placeOfCharacter(item, offset));
            compare([places[0].x, places[0].y], [20, 30]);
            verify(places[0].width > 2);
            fuzzyCompare(places[1].x, places[0].right, 2);
            verify(places[3].y > places[0].y);
            compare(places[3].width, places[0].width);
            compare(Probe.placeOfCharacter(item, 4).width, 0);
            compare(Probe.placeOfCharacter(item, -1).width, 0);
            for (const offset of [0, 1, 3]) {
                const place = places[offset];
                compare(Probe.characterAt(item, Qt.point(place.x + 1, place.y + place.height / 2)), offset);
            }
            compare(Probe.characterAt(item, Qt.point(0, 0)), -1);
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

        function test_placeIsNoWiderThanTheText() {
            const item = createTemporaryObject(text, scene, {
                    "x": 20,
                    "y": 30,
                    "content": "kısa"
                });
            compare(Probe.place(item), Qt.rect(20, 30, item.naturalWidth, Math.floor(item.height)));
            verify(item.naturalWidth < 100);
            item.y = -1000;
            compare(Probe.place(item).y, -1000, "what is scrolled away keeps its place");
            compare(Probe.place(item).width, item.naturalWidth);
        }

        function test_placeHoldsTheTextFromRightToLeft_data() {
            return [{
                    "tag": "alone",
                    "content": "مرحبا"
                }, {
                    "tag": "as the second paragraph",
                    "content": "kısa\nمرحبا"
                }, {
                    "tag": "before a paragraph from left to right",
                    "content": "مرحبا\nkısa"
                }];
        }

        function test_placeHoldsTheTextFromRightToLeft(data) {
            const item = createTemporaryObject(text, scene, {
                    "content": data.content
                });
            const place = Probe.place(item);
            for (let at = 0; at <= data.content.length; ++at) {
                const x = item.positionToRectangle(at).x;
                verify(x >= place.x && x <= place.x + place.width, x + " in " + place);
            }
        }

        function test_tellsItsState() {
            const item = createTemporaryObject(text, scene, {
                    "content": "x"
                });
            compare(Probe.states(item).join(), "focusable,multiLine,readOnly,selectableText");
            item.forceActiveFocus();
            compare(Probe.states(item).join(), "focusable,focused,multiLine,readOnly,selectableText");
            item.y = -1000;
            verify(!Probe.states(item).includes("offscreen"), "is read on all the same");
            verify(!Probe.states(item).includes("invisible"));
            item.y = 0;
            item.visible = false;
            verify(Probe.states(item).includes("invisible"));
            item.visible = true;
            item.enabled = false;
            compare(Probe.states(item).join(), "disabled,multiLine,readOnly,selectableText");
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

import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 700
    height: 500

    Component {
        id: sceneryComponent

        Item {
            id: scenery
            property alias fixture: chats
            property alias column: rows
            property alias footer: foot
            property int replacements: 0
            property int additions: 0

            anchors.fill: parent

            MessageColumn {
                id: rows

                width: 600
                spacing: 14
                padding: 24
                viewportHeight: 500
                model: SelectedMessages {
                    controller: chats.model
                }
                onViewportRequested: y => rows.viewportY = y
                onContentReplaced: scenery.replacements++
                onContentAppended: scenery.additions++

                userDelegate: Rectangle {
                    property string content
                    property bool growsUpwards

                    objectName: "user"
                    height: 40
                }
                assistantDelegate: Rectangle {
                    property string content
                    property bool growsUpwards

                    objectName: "assistant"
                    height: 100
                }
                footer: Item {
                    id: foot

                    visible: false
                    height: 30
                }
            }

            ChatFixture {
                id: chats
            }
        }
    }

    TestCase {
        name: "MessageColumn"
        when: windowShown

        property var scenery: null

        function make(count) {
            return show(Array.from({
                        "length": count
                    }, (_, index) => "İleti " + index));
        }

        function show(messages) {
            scenery = createTemporaryObject(sceneryComponent, scene);
            scenery.fixture.storeKey("gsk_deneme");
            scenery.fixture.load([{
                        "title": "Bir",
                        "messages": messages
                    }, {
                        "title": "İki",
                        "messages": ["Öteki"]
                    }]);
            scenery.column.forceLayout();
            return scenery.column;
        }

        function rows(column) {
            return Probe.find(column, "QQuickRectangle").filter(row => row.visible).sort((one, other) => one.y - other.y);
        }

        function contents(column) {
            return rows(column).map(row => row.content);
        }

        function test_stacksTheRowsByTheirWriters() {
            const column = make(4);
            compare(rows(column).map(row => row.objectName), ["assistant", "user", "assistant", "user"]);
            compare(contents(column), ["İleti 0", "İleti 1", "İleti 2", "İleti 3"]);
            const top = column.originY + 24;
            compare(rows(column).map(row => row.y - top), [0, 114, 168, 282]);
            compare(column.endY - column.originY, 24 + 282 + 40 + 24);
            verify(rows(column).every(row => row.width === 600));
        }

        function test_aRowHasEveryCharacterOfItsMessage() {
            const messages = ["\uFEFF# Başlık", "iki\u2028satır\n\uFEFF"];
            compare(contents(show(messages)), messages);
        }

        function test_nothingInAnEmptyConversation() {
            const column = make(0);
            compare(rows(column).length, 0);
            compare(column.endY - column.originY, 48);
        }

        function test_onlyRowsNearTheViewportExist() {
            const column = make(5000);
            verify(column.isAtEnd);
            const made = rows(column);
            compare(made[made.length - 1].content, "İleti 4999");
            verify(made.length < 60, made.length + " rows");
            column.viewportY = column.originY;
            column.forceLayout();
            compare(contents(column)[0], "İleti 0");
            verify(rows(column).length < 60);
            verify(!column.isAtEnd);
        }

        /// Goes from the beginning of a conversation with 40 messages to one with `count`; gives how far below
        /// its beginning that is shown.
        function placeInTheSecondOf(count) {
            const messages = number => Array.from({
                        "length": number
                    }, (_, index) => "İleti " + index);
            scenery = createTemporaryObject(sceneryComponent, scene);
            scenery.fixture.load([{
                        "title": "Bir",
                        "messages": messages(40)
                    }, {
                        "title": "İki",
                        "messages": messages(count)
                    }]);
            const column = scenery.column;
            column.forceLayout();
            column.viewportY = column.originY;
            column.forceLayout();
            scenery.fixture.model.selectChat(scenery.fixture.idAt(1));
            column.forceLayout();
            tryVerify(() => !isPolishScheduled(column));
            return column.viewportY - column.originY;
        }

        function test_asManyMessagesAreShownWhereTheOthersWere() {
            compare(placeInTheSecondOf(40), 0);
            compare(contents(scenery.column)[0], "İleti 0");
            verify(!scenery.column.isAtEnd);
        }

        function test_moreOrFewerMessagesAreShownFromTheirEnd_data() {
            return [{
                    "tag": "more",
                    "count": 41
                }, {
                    "tag": "fewer",
                    "count": 39
                }];
        }

        function test_moreOrFewerMessagesAreShownFromTheirEnd(data) {
            const place = placeInTheSecondOf(data.count);
            verify(scenery.column.isAtEnd);
            fuzzyCompare(place + scenery.column.viewportHeight, scenery.column.endY - scenery.column.originY, 2);
        }

        function test_aConversationBeginsWithWhatIsVisible() {
            const column = make(100);
            scenery.fixture.model.selectChat(scenery.fixture.idAt(1));
            column.forceLayout();
            scenery.fixture.model.selectChat(scenery.fixture.idAt(0));
            column.forceLayout();
            const visible = rows(column);
            verify(visible[0].y <= column.viewportY);
            verify(visible[1].y > column.viewportY, "no row above the visible ones");
            tryVerify(() => rows(column).length > visible.length + 5, 5000, "those near follow");
            compare(rows(column).slice(-visible.length), visible);
        }

        function test_whatIsVisibleStaysWhenARowAboveGrows() {
            const column = make(100);
            column.viewportY = column.originY + 3000;
            column.forceLayout();
            tryVerify(() => rows(column)[0].y + rows(column)[0].height <= column.viewportY, 5000, "rows are made ahead");
            const visible = () => rows(column).filter(row => row.y + row.height > column.viewportY);
            const first = visible()[0];
            const distance = first.y - column.viewportY;
            const above = rows(column).filter(row => row.y + row.height <= column.viewportY).pop();
            above.height += 333;
            column.forceLayout();
            compare(visible()[0], first);
            compare(first.y - column.viewportY, distance);
        }

        function test_theEndStaysWhenTheLastRowGrows() {
            const column = make(100);
            const last = rows(column).pop();
            last.height += 200;
            column.forceLayout();
            verify(column.isAtEnd);
            compare(column.viewportY + 500, column.endY);
            compare(last.y + last.height + 24, column.endY);
        }

        function test_aFooterLiesBelowTheLastRowWhileItIsVisible() {
            const column = make(3);
            const before = column.endY - column.originY;
            scenery.footer.visible = true;
            column.forceLayout();
            compare(column.endY - column.originY, before + 30 + 14);
            const last = rows(column).pop();
            compare(scenery.footer.y, last.y + last.height + 14);
            scenery.footer.visible = false;
            column.forceLayout();
            compare(column.endY - column.originY, before);
        }

        function test_aNewMessageIsAddedBelow() {
            const column = make(3);
            const before = rows(column);
            scenery.fixture.model.draft = "Yeni";
            scenery.fixture.model.startSending();
            tryVerify(() => scenery.additions === 1);
            column.forceLayout();
            compare(contents(column), ["İleti 0", "İleti 1", "İleti 2", "Yeni"]);
            compare(rows(column).slice(0, 3), before, "the rows before it are the same items");
        }

        function test_anotherConversationReplacesEverything() {
            const column = make(50);
            const before = scenery.replacements;
            scenery.fixture.model.selectChat(scenery.fixture.idAt(1));
            compare(scenery.replacements, before + 1);
            column.forceLayout();
            compare(contents(column), ["Öteki"]);
            verify(column.isAtEnd);
        }

        function test_rowsTakeANewWidth() {
            const column = make(10);
            column.width = 400;
            column.forceLayout();
            verify(rows(column).every(row => row.width === 400));
        }

        function test_rowsAreReadInTheirOrder() {
            const column = make(200);
            column.viewportY -= 2000;
            column.forceLayout();
            const children = Array.from(column.children).filter(child => child.visible && child.content !== undefined);
            const numbers = children.map(child => Number(child.content.split(" ")[1]));
            compare(numbers, numbers.slice().sort((one, other) => one - other));
        }
    }
}

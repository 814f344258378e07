import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 600
    height: 400

    Component {
        id: sceneryComponent

        Item {
            property alias fixture: chats
            property alias list: view

            anchors.fill: parent

            SessionList {
                id: view

                property var selected: []
                property var renames: []

                width: 250
                height: parent.height
                sessions: SessionListModel {
                    controller: chats.model
                }
                onChatSelected: id => {
                    view.selected = view.selected.concat([id]);
                    chats.model.selectChat(id);
                }
                onDeleteChat: id => chats.model.deleteChat(id)
                onRenameChat: (id, title) => view.renames = view.renames.concat([[id, title]])
            }

            ChatFixture {
                id: chats
            }
        }
    }

    TestCase {
        name: "SessionList"
        when: windowShown

        property var fixture: null

        function make(count) {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            fixture = scenery.fixture;
            const conversations = [];
            for (let number = 1; number <= count; ++number)
                conversations.push({
                        "title": "Sohbet " + number,
                        "messages": ["Merhaba"]
                    });
            fixture.load(conversations);
            scenery.list.forceLayout();
            scenery.list.forceActiveFocus();
            return scenery.list;
        }

        function rows(list) {
            return Probe.find(list, "ChatSessionRow").filter(row => row.visible).sort((one, other) => one.y - other.y);
        }

        function inWindow(type, name) {
            return Probe.find(scene.Window.contentItem, type).find(item => item.visible && Probe.name(item) === name);
        }

        function shownField() {
            return inWindow("Field", "Sohbet adı");
        }

        function openDialog(row) {
            mouseClick(Probe.find(row, "IconButton").find(button => Probe.name(button) === "Sohbeti yeniden adlandır"));
            tryVerify(() => shownField() !== undefined && shownField().activeFocus);
            return shownField();
        }

        function closed(list) {
            tryCompare(list, "isRenaming", false);
            tryVerify(() => shownField() === undefined);
        }

        function test_arrowsHomeAndEndWalk() {
            const list = make(4);
            keyClick(Qt.Key_Down);
            compare(list.currentIndex, 1);
            keyClick(Qt.Key_End);
            compare(list.currentIndex, 3);
            keyClick(Qt.Key_Up);
            compare(list.currentIndex, 2);
            keyClick(Qt.Key_Home);
            compare(list.currentIndex, 0);
            compare(list.selected, [1, 3, 2, 0].map(index => fixture.idAt(index)));
        }

        function test_thereIsNothingBeyondTheEnds() {
            const list = make(2);
            keyClick(Qt.Key_Up);
            compare(list.selected.length, 0);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            compare(list.selected.length, 1);
        }

        function test_theDeleteKeyDeletesNothing() {
            const list = make(2);
            keyClick(Qt.Key_Delete);
            keyClick(Qt.Key_Backspace);
            compare(fixture.titles(), ["Sohbet 1", "Sohbet 2"]);
            const bin = Probe.find(rows(list)[0], "IconButton").find(button => Probe.name(button) === "Sohbeti sil");
            mouseClick(bin);
            compare(fixture.titles(), ["Sohbet 2"], "as its button does");
        }

        function test_onlyTheSelectedRowIsMarked() {
            const list = make(3);
            keyClick(Qt.Key_Down);
            compare(rows(list).map(row => row.isSelected), [false, true, false]);
            compare(rows(list).map(row => row.showsFocus), [false, true, false]);
            scene.forceActiveFocus();
            compare(rows(list).map(row => row.showsFocus), [false, false, false]);
        }

        function test_scrollsToTheSelection() {
            const list = make(60);
            keyClick(Qt.Key_End);
            tryVerify(() => list.contentY + list.height >= list.contentHeight - 1);
            compare(rows(list).filter(row => row.isSelected).length, 1);
        }

        function test_makesOnlyTheRowsNearby() {
            const list = make(500);
            verify(Probe.find(list, "ChatSessionRow").length < 40);
        }

        function test_aRowKeepsItsStateWhileOthersComeAndGo() {
            const list = make(3);
            const row = rows(list)[1];
            const field = openDialog(row);
            field.text = "yarım kalmış";
            fixture.model.newChat();
            fixture.model.deleteChat(fixture.idAt(3));
            tryVerify(() => rows(list).length === 3);
            compare(rows(list)[2], row);
            compare(row.title, "Sohbet 2");
            compare(shownField(), field);
            compare(field.text, "yarım kalmış");
            keyClick(Qt.Key_Escape);
            closed(list);
        }

        function test_aConversationThatIsWrittenInComesToTheTop() {
            const list = make(4);
            fixture.storeKey("gsk_deneme");
            keyClick(Qt.Key_End);
            const row = rows(list)[3];
            fixture.model.draft = "Soru";
            fixture.model.startSending();
            tryVerify(() => rows(list)[0] === row);
            compare(rows(list).map(other => other.title), ["Sohbet 4", "Sohbet 1", "Sohbet 2", "Sohbet 3"]);
            compare(rows(list).map(other => other.isSelected), [true, false, false, false]);
            compare(list.currentIndex, 0);
        }

        function test_aRenameShowsInItsRow() {
            const list = make(2);
            fixture.model.renameChat(fixture.idAt(1), "Yeni ad");
            tryVerify(() => rows(list)[1].title === "Yeni ad");
            compare(rows(list)[0].title, "Sohbet 1");
        }

        function test_theDialogBeginsWithTheTitle() {
            const list = make(2);
            const field = openDialog(rows(list)[1]);
            compare(field.text, "Sohbet 2");
            tryCompare(field, "selectedText", "Sohbet 2");
            mouseClick(inWindow("PushButton", "Vazgeç"));
            closed(list);
        }

        function test_savingPassesTheTextAsTyped_data() {
            return [{
                    "tag": "unchanged",
                    "typed": "Sohbet 2"
                }, {
                    "tag": "empty",
                    "typed": ""
                }, {
                    "tag": "blank",
                    "typed": "   "
                }, {
                    "tag": "with blanks around",
                    "typed": "  Yeni ad "
                }, {
                    "tag": "longer than is kept",
                    "typed": "x".repeat(70)
                }];
        }

        function test_savingPassesTheTextAsTyped(data) {
            const list = make(2);
            openDialog(rows(list)[1]).text = data.typed;
            mouseClick(inWindow("PushButton", "Kaydet"));
            closed(list);
            compare(list.renames, [[fixture.idAt(1), data.typed]]);
            compare(rows(list)[1].title, "Sohbet 2", "the title is the controller's");
        }

        function test_savingWithLessMotionPassesTheText() {
            Probe.setReducedMotion(Theme.desktop, true);
            const list = make(2);
            openDialog(rows(list)[1]).text = "Yeni ad";
            mouseClick(inWindow("PushButton", "Kaydet"));
            closed(list);
            Probe.setReducedMotion(Theme.desktop, false);
            compare(list.renames, [[fixture.idAt(1), "Yeni ad"]]);
        }

        function test_callingOffCallsNothing_data() {
            return [{
                    "tag": "button",
                    "key": 0
                }, {
                    "tag": "escape",
                    "key": Qt.Key_Escape
                }];
        }

        function test_callingOffCallsNothing(data) {
            const list = make(2);
            openDialog(rows(list)[1]).text = "Başka";
            if (data.key)
                keyClick(data.key);
            else
                mouseClick(inWindow("PushButton", "Vazgeç"));
            closed(list);
            compare(list.renames, []);
            compare(list.editedTitle, "Başka", "kept until the dialog opens again");
            compare(openDialog(rows(list)[1]).text, "Sohbet 2");
            keyClick(Qt.Key_Escape);
            closed(list);
        }

        function test_theDialogOutlivesItsRow() {
            const list = make(60);
            const id = fixture.idAt(3);
            const field = openDialog(rows(list)[3]);
            field.text = "yarım kalmış";
            list.positionViewAtEnd();
            tryVerify(() => rows(list).every(row => row.title !== "Sohbet 4"));
            list.positionViewAtBeginning();
            compare(shownField(), field);
            compare(field.text, "yarım kalmış");
            mouseClick(inWindow("PushButton", "Kaydet"));
            closed(list);
            compare(list.renames, [[id, "yarım kalmış"]]);
        }

        function test_theDialogGoesWithItsConversation() {
            const list = make(3);
            openDialog(rows(list)[1]);
            fixture.model.deleteChat(fixture.idAt(0));
            tryVerify(() => rows(list).length === 2);
            compare(list.isRenaming, true);
            fixture.model.deleteChat(list.renamedId);
            closed(list);
            compare(list.renames, []);
        }

        function test_theDialogGoesWhenTheLoadReplacesItsConversation() {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            fixture = scenery.fixture;
            const list = scenery.list;
            list.forceLayout();
            list.forceActiveFocus();
            openDialog(rows(list)[0]);
            fixture.load([{
                        "title": "Birinci",
                        "messages": []
                    }, {
                        "title": "İkinci",
                        "messages": []
                    }]);
            closed(list);
            compare(list.renames, []);
        }

        function test_aButtonReachedByKeyboardIsInView() {
            const list = make(60);
            const isBelow = row => row.y - list.contentY >= list.height;
            tryVerify(() => rows(list).some(isBelow), 5000, "rows are made ahead");
            const row = rows(list).find(isBelow);
            const bin = Probe.find(row, "IconButton")[1];
            bin.forceActiveFocus(Qt.TabFocusReason);
            verify(bin.visualFocus);
            const top = bin.mapToItem(list, 0, 0).y;
            verify(top >= 0 && top + bin.height <= list.height, top);
        }

        function test_isAListForAssistiveTechnology() {
            const list = make(2);
            compare(Probe.role(list), Accessible.List);
            compare(Probe.name(list), "Sohbetler");
            compare(Probe.role(rows(list)[1]), Accessible.ListItem);
            Probe.press(rows(list)[1]);
            compare(list.selected, [fixture.idAt(1)]);
        }
    }
}

import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 980
    height: 700

    Component {
        id: sceneryComponent

        Item {
            property alias fixture: chats
            property alias content: view

            anchors.fill: parent

            ContentView {
                id: view

                anchors.fill: parent
                model: chats.model
                keychain: chats.keychain
            }

            ChatFixture {
                id: chats
            }
        }
    }

    Component {
        id: otherWindow

        Window {
            width: 100
            height: 100
            visible: true
        }
    }

    TestCase {
        name: "KeyboardFocus"
        when: windowShown

        property var fixture: null
        property var content: null

        function make() {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            fixture = scenery.fixture;
            content = scenery.content;
            fixture.storeKey("gsk_deneme");
            fixture.waitForLoad();
            waitForRendering(scene);
        }

        /// With a reply in the conversation.
        function makeWithReply(reply) {
            make();
            startSending();
            answerAll(reply);
            tryVerify(() => Probe.find(content, "AssistantMessageRow").some(row => row.content === reply));
            waitForRendering(scene);
        }

        function area() {
            return Probe.find(content, "Talvo::ControlTemplates::TextArea")[0];
        }

        function sidebarButton(text) {
            return Probe.find(content, "SidebarButton").find(button => button.text === text);
        }

        function pencil() {
            return Probe.find(Probe.find(content, "ChatSessionRow")[0], "IconButton")[0];
        }

        function replyText(beginning) {
            return Probe.find(content, "Talvo::MarkdownText").find(text => Probe.name(text).startsWith(beginning));
        }

        function menuEntries() {
            return Probe.find(scene.Window.contentItem, "TextMenuItem").filter(item => item.visible);
        }

        function isIn(item, ancestor) {
            return item !== null && (item === ancestor || isIn(item.parent, ancestor));
        }

        function isPanelFocused() {
            return !isIn(scene.Window.activeFocusItem, content);
        }

        function switchAway() {
            const other = createTemporaryObject(otherWindow, null);
            other.requestActivate();
            tryVerify(() => !scene.Window.window.active);
        }

        function switchBack() {
            scene.Window.window.requestActivate();
            tryVerify(() => scene.Window.window.active);
        }

        function startSending() {
            area().forceActiveFocus();
            fixture.model.draft = "Soru";
            keyClick(Qt.Key_Return);
            tryVerify(() => fixture.requestCount() === 1);
        }

        /// The reply, and what is asked after it for the title and the memory.
        function answerAll(reply) {
            for (let i = 0; i < 3; ++i) {
                tryVerify(() => fixture.requestCount() > i);
                fixture.answer(i, i === 0 && reply ? reply : "Yanıt");
            }
            tryVerify(() => !fixture.model.isSending);
        }

        function test_theSheetKeepsTheKeyboardWhenAReplyArrivesInTheBackground() {
            make();
            startSending();
            mouseClick(sidebarButton("API Ayarları"));
            tryVerify(() => isPanelFocused());
            fixture.waitUntilAtRest();
            switchAway();
            answerAll();
            switchBack();
            verify(isPanelFocused());
            Probe.setClipboard("gsk_gizli");
            keySequence(StandardKey.Paste);
            compare(fixture.model.draft, "");
            keyClick(Qt.Key_Escape);
        }

        function test_theRenameDialogKeepsTheKeyboardWhenAReplyArrivesInTheBackground() {
            make();
            startSending();
            mouseClick(pencil());
            tryVerify(() => isPanelFocused());
            switchAway();
            answerAll();
            switchBack();
            verify(isPanelFocused());
            keyClick("a");
            compare(fixture.model.draft, "");
            keyClick(Qt.Key_Escape);
        }

        function test_aSelectionStaysWhenAReplyArrivesInTheBackground() {
            make();
            startSending();
            const text = Probe.find(content, "Talvo::MarkdownText")[0];
            text.forceActiveFocus();
            text.select(0, 5);
            switchAway();
            answerAll();
            switchBack();
            verify(text.activeFocus);
        }

        function test_aReturnHeldInADialogSendsNothing() {
            make();
            area().forceActiveFocus();
            keyClick("a");
            mouseClick(pencil());
            tryVerify(() => isPanelFocused());
            keyClick("b");
            keyClick(Qt.Key_Return);
            keyPress(Qt.Key_Return);
            tryVerify(() => area().activeFocus);
            Probe.repeatKey(area(), Qt.Key_Return);
            keyRelease(Qt.Key_Return);
            fixture.waitUntilAtRest();
            compare(fixture.model.draft, "a");
            compare(fixture.requestCount(), 0);
        }

        function test_controlReturnSendsFrom_data() {
            return [{
                    "tag": "a link",
                    "take": () => replyText("bir").forceActiveFocus(Qt.TabFocusReason)
                }, {
                    "tag": "a clicked text",
                    "take": () => mouseClick(replyText("sade"), 5, 5)
                }, {
                    "tag": "a clicked text with a link",
                    "take": () => mouseClick(replyText("bir"), 60, 5)
                }];
        }

        function test_controlReturnSendsFrom(data) {
            makeWithReply("[bir](https://example.com/1) metin metin metin\n\nsade metin");
            fixture.model.draft = "taslak";
            data.take();
            verify(!area().activeFocus);
            const opened = Probe.opened.length;
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            tryCompare(fixture.model, "draft", "");
            compare(Probe.opened.length, opened);
        }

        function test_thePageKeysScrollWhileTheRestOfASendRuns() {
            make();
            startSending();
            fixture.answer(0, "Uzun yanıt.\n\n".repeat(200));
            tryVerify(() => fixture.requestCount() === 2);
            const list = Probe.find(content, "MessageList")[0];
            tryVerify(() => list.contentY > 0 && list.contentY === list.endContentY);
            verify(fixture.model.isSending);
            keyClick(Qt.Key_PageUp);
            verify(list.contentY < list.endContentY);
            // What is above may still grow a little.
            tryVerify(() => {
                    keyClick(Qt.Key_PageDown);
                    return list.contentY === list.endContentY;
                });
            fixture.answer(1, "-");
            tryVerify(() => fixture.requestCount() === 3);
            fixture.answer(2, "-");
            tryVerify(() => !fixture.model.isSending);
        }

        function test_thePageKeysScrollFromALink() {
            makeWithReply("Uzun bir söz.\n\n".repeat(200) + "[son](https://example.com/1)");
            const list = Probe.find(content, "MessageList")[0];
            tryVerify(() => replyText("son") !== undefined);
            tryVerify(() => list.contentY > 0 && list.contentY === list.endContentY);
            replyText("son").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_PageUp);
            verify(list.contentY < list.endContentY);
        }

        function test_aTableReachedByKeyboardIsInView() {
            makeWithReply("| A | B | C | D | E | F | G |\n|" + "---|".repeat(7) + "\n\n" + "Uzun bir söz.\n\n".repeat(100));
            const list = Probe.find(content, "MessageList")[0];
            const tables = () => Probe.find(content, "MarkdownTableView");
            tryVerify(() => tables().length === 1 && list.contentY > 0 && list.contentY === list.endContentY);
            const top = () => tables()[0].mapToItem(list, 0, 0).y;
            verify(top() < 0);
            tables()[0].forceActiveFocus(Qt.TabFocusReason);
            verify(top() >= 0 && top() + tables()[0].height <= list.height, top());
        }

        function test_aLinkIsStillMarkedAfter_data() {
            return [{
                    "tag": "a switch of windows",
                    "leave": () => {
                        switchAway();
                        switchBack();
                    }
                }, {
                    "tag": "an alert",
                    "leave": () => {
                        fixture.setError("Olmadı");
                        tryVerify(() => isPanelFocused());
                        keyClick(Qt.Key_Return);
                    }
                }];
        }

        function test_aLinkIsStillMarkedAfter(data) {
            makeWithReply("[bir](https://example.com/1) ve [iki](https://example.com/2)");
            const text = replyText("bir");
            text.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            compare(text.selectedText, "iki");
            data.leave();
            tryVerify(() => text.activeFocus);
            compare(text.selectedText, "iki");
            area().forceActiveFocus();
            compare(text.selectedText, "");
        }

        function test_backwardsTheLastLinkComesFirst() {
            makeWithReply("[bir](https://example.com/1) ve [iki](https://example.com/2)");
            area().forceActiveFocus();
            keyClick(Qt.Key_Backtab);
            compare(replyText("bir").selectedText, "iki");
            keyClick(Qt.Key_Backtab);
            compare(replyText("bir").selectedText, "bir");
        }

        function alertButton() {
            return Probe.find(scene.Window.contentItem, "PushButton").find(button => button.text === "Tamam");
        }

        function test_anAlertHasTheKeyboardWhenARenameCannotBeSaved_data() {
            return [{
                    "tag": "by key",
                    "save": () => {
                        keyClick(Qt.Key_Return);
                        keyClick(Qt.Key_Return);
                    }
                }, {
                    "tag": "by mouse",
                    "save": () => mouseClick(Probe.find(scene.Window.contentItem, "PushButton").find(button => button.text === "Kaydet"))
                }];
        }

        function test_anAlertHasTheKeyboardWhenARenameCannotBeSaved(data) {
            make();
            area().forceActiveFocus();
            mouseClick(pencil());
            tryVerify(() => isPanelFocused());
            keyClick("b");
            fixture.fillDisk();
            data.save();
            tryVerify(() => alertButton() !== undefined);
            tryVerify(() => Probe.find(scene.Window.contentItem, "Field").length === 0, 5000, "the dialog has faded out");
            verify(alertButton().activeFocus);
            keyClick("x");
            compare(fixture.model.draft, "");
            keyClick(Qt.Key_Return);
            tryVerify(() => alertButton() === undefined);
            verify(area().activeFocus);
        }

        function test_anAlertGivesTheKeyboardToWhoHadItBeforeTheModels() {
            make();
            area().forceActiveFocus();
            const choice = Probe.find(content, "Choice")[0];
            mouseClick(choice);
            tryVerify(() => choice.popup.opened);
            keyClick(Qt.Key_Escape);
            verify(choice.popup.visible, "it fades out");
            fixture.setError("Olmadı");
            tryVerify(() => !choice.popup.visible);
            tryVerify(() => alertButton().activeFocus);
            keyClick(Qt.Key_Return);
            tryVerify(() => alertButton() === undefined);
            verify(area().activeFocus);
        }

        function test_anAlertClosesTheModels() {
            make();
            area().forceActiveFocus();
            const choice = Probe.find(content, "Choice")[0];
            mouseClick(choice);
            tryVerify(() => choice.popup.opened);
            fixture.setError("Olmadı");
            tryVerify(() => alertButton() !== undefined && alertButton().activeFocus);
            tryVerify(() => !choice.popup.visible);
            verify(alertButton().activeFocus);
            keyClick(Qt.Key_Return);
            tryVerify(() => alertButton() === undefined);
            verify(area().activeFocus);
        }

        function test_anAlertClosesTheMenuOfAText() {
            make();
            area().forceActiveFocus();
            mouseClick(area(), 5, 5, Qt.RightButton);
            tryVerify(() => menuEntries().length > 0 && !area().activeFocus);
            fixture.setError("Olmadı");
            tryVerify(() => alertButton() !== undefined && alertButton().activeFocus);
            compare(menuEntries().length, 0);
            keyClick(Qt.Key_Return);
            tryVerify(() => alertButton() === undefined);
            verify(area().activeFocus);
        }

        function test_aConversationThatGoesTakesAlong_data() {
            return [{
                    "tag": "the menu of its text",
                    "opener": () => Probe.find(content, "Talvo::MarkdownText")[0],
                    "button": Qt.RightButton,
                    "entries": menuEntries
                }, {
                    "tag": "the list of models",
                    "opener": () => Probe.find(content, "Choice")[0],
                    "button": Qt.LeftButton,
                    "entries": () => Probe.find(scene.Window.contentItem, "ChoiceEntry").filter(item => item.visible)
                }];
        }

        function test_aConversationThatGoesTakesAlong(data) {
            make();
            fixture.model.newChat();
            waitForRendering(scene);
            mouseClick(data.opener(), 10, 5, data.button);
            tryVerify(() => data.entries().length > 0 && !area().activeFocus);
            fixture.model.selectChat(fixture.idAt(1));
            tryVerify(() => area().activeFocus);
            tryVerify(() => data.entries().length === 0);
            keyClick("a");
            compare(fixture.model.draft, "a");
        }

        function test_anAlertThatOpenedInTheBackgroundGivesTheKeyboardBack_data() {
            return [{
                    "tag": "to the draft, after a send that failed",
                    "prepare": () => {
                        startSending();
                        switchAway();
                        fixture.refuse(0, 500, "bozuk");
                        tryVerify(() => !fixture.model.isSending);
                    }
                }, {
                    "tag": "to who had it before the models",
                    "prepare": () => {
                        area().forceActiveFocus();
                        const choice = Probe.find(content, "Choice")[0];
                        mouseClick(choice);
                        tryVerify(() => choice.popup.opened);
                        switchAway();
                        fixture.setError("Olmadı");
                        tryVerify(() => !choice.popup.visible);
                    }
                }, {
                    "tag": "to who had it before its menu",
                    "prepare": () => {
                        area().forceActiveFocus();
                        keyClick(Qt.Key_Menu);
                        tryVerify(() => !area().activeFocus);
                        switchAway();
                        fixture.setError("Olmadı");
                    }
                }];
        }

        function test_anAlertThatOpenedInTheBackgroundGivesTheKeyboardBack(data) {
            make();
            data.prepare();
            switchBack();
            tryVerify(() => alertButton() !== undefined && alertButton().activeFocus);
            keyClick(Qt.Key_Return);
            tryVerify(() => alertButton() === undefined);
            verify(area().activeFocus);
        }

        function test_noMenuOpensOverAPanelThatWasFaster() {
            make();
            area().forceActiveFocus();
            Probe.find(area(), "TextMenuLoader")[0].openFor(area());
            fixture.setError("Olmadı");
            tryVerify(() => alertButton() !== undefined && alertButton().activeFocus);
            fixture.waitUntilAtRest();
            waitForRendering(scene);
            compare(menuEntries().length, 0);
            verify(alertButton().activeFocus);
            keyClick(Qt.Key_Return);
            tryVerify(() => alertButton() === undefined);
            verify(area().activeFocus);
        }

        function test_theMarkOfTheFocusIsThereAfter_data() {
            return [{
                    "tag": "a sheet",
                    "leave": () => {
                        keyClick(Qt.Key_Return);
                        tryVerify(() => isPanelFocused());
                        keyClick(Qt.Key_Escape);
                    }
                }, {
                    "tag": "a switch of windows",
                    "leave": () => {
                        switchAway();
                        switchBack();
                    }
                }];
        }

        function test_theMarkOfTheFocusIsThereAfter(data) {
            make();
            const button = sidebarButton("API Ayarları");
            button.forceActiveFocus(Qt.TabFocusReason);
            data.leave();
            tryVerify(() => button.activeFocus);
            verify(Probe.find(button, "FocusRing")[0].visible);
        }
    }
}

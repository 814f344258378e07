import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 600
    height: 400

    Component {
        id: composerComponent

        MessageComposer {
            id: composer

            property int sends: 0
            property int pages: 0

            width: scene.width
            y: scene.height - height
            draft: ""
            canSend: composer.draft.trim() !== "" && !composer.isSending
            isSending: false
            onDraftEdited: text => composer.draft = text
            onSend: composer.sends++
            onPageRequested: count => composer.pages += count
        }
    }

    TextInput {
        id: elsewhere

        width: 100
        height: 20
        activeFocusOnTab: true
    }

    TestCase {
        name: "MessageComposer"
        when: windowShown

        function make(draft) {
            const composer = createTemporaryObject(composerComponent, scene, {
                    "draft": draft
                });
            composer.takeFocus();
            verify(area(composer).activeFocus);
            return composer;
        }

        function area(composer) {
            return Probe.find(composer, "Talvo::ControlTemplates::TextArea")[0];
        }

        function button(composer) {
            return Probe.find(composer, "IconButton")[0];
        }

        function lines(count) {
            return Array.from({
                    "length": count
                }, (_, index) => "satır " + index).join("\n");
        }

        function test_isNamedByItsPlaceholder() {
            const composer = make("");
            compare(Probe.name(area(composer)), "Mesajını yaz…");
            verify(Probe.states(area(composer)).includes("multiLine"));
            compare(Probe.name(button(composer)), "Mesajı gönder");
            const placeholder = Probe.find(composer, "QQuickText").find(text => text.text === "Mesajını yaz…");
            verify(placeholder.visible);
            keyClick("a");
            verify(!placeholder.visible);
        }

        function test_theScrollBarLiesBetweenTheTextAndTheButton() {
            const composer = make(lines(20));
            const bar = Probe.find(composer, "ScrollBarV")[0];
            tryVerify(() => bar.visible);
            const at = bar.mapToItem(composer, 0, 0);
            const text = area(composer).mapToItem(composer, 0, 0);
            verify(at.x >= text.x + area(composer).width, at);
            verify(at.x + bar.width <= button(composer).x, at);
            verify(at.y > 0 && bar.height > 3 * composer.lineHeight && at.y + bar.height < composer.height, at);
            mouseDrag(bar, bar.width / 2, bar.height - 10, 0, -bar.height);
            verify(bar.position < 0.1, "it can be dragged");
        }

        function test_draftIsBoundBothWays() {
            const composer = make("");
            keyClick("a");
            keyClick("b");
            compare(composer.draft, "ab");
            composer.draft = "başka";
            compare(area(composer).text, "başka");
        }

        function test_textThatCameBackIsGoneOnWithAtItsEnd() {
            const composer = make("");
            composer.draft = "geri gelen";
            keyClick("X");
            compare(composer.draft, "geri gelenX");
        }

        function test_typingInTheMiddleStaysThere() {
            const composer = make("ac");
            area(composer).cursorPosition = 1;
            keyClick("b");
            keyClick("b");
            compare(composer.draft, "abbc");
        }

        function test_returnSendsWhateverTheDraft_data() {
            return [{
                    "tag": "empty",
                    "draft": ""
                }, {
                    "tag": "blank",
                    "draft": "  \n "
                }, {
                    "tag": "text",
                    "draft": "Merhaba"
                }];
        }

        function test_returnSendsWhateverTheDraft(data) {
            const composer = make(data.draft);
            keyClick(Qt.Key_Return);
            compare(composer.sends, 1);
            keyClick(Qt.Key_Enter);
            compare(composer.sends, 2);
            compare(composer.draft, data.draft);
        }

        function test_shiftReturnBreaksTheLine() {
            const composer = make("bir");
            keyClick(Qt.Key_Return, Qt.ShiftModifier);
            keyClick("i");
            compare(composer.sends, 0);
            compare(composer.draft, "bir\ni");
        }

        function test_buttonAndControlReturnNeedSomethingToSend_data() {
            return [{
                    "tag": "empty",
                    "draft": "",
                    "sends": 0
                }, {
                    "tag": "blank",
                    "draft": " \n",
                    "sends": 0
                }, {
                    "tag": "text",
                    "draft": "Merhaba",
                    "sends": 1
                }];
        }

        function test_buttonAndControlReturnNeedSomethingToSend(data) {
            const composer = make(data.draft);
            compare(button(composer).enabled, data.sends === 1);
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            compare(composer.sends, data.sends);
            mouseClick(button(composer));
            compare(composer.sends, 2 * data.sends);
            Probe.press(button(composer));
            compare(composer.sends, 3 * data.sends);
        }

        function test_controlReturnSendsFromElsewhere_data() {
            return [{
                    "tag": "something to send",
                    "draft": "Merhaba",
                    "sends": 1
                }, {
                    "tag": "nothing to send",
                    "draft": " ",
                    "sends": 0
                }];
        }

        function test_controlReturnSendsFromElsewhere(data) {
            const composer = make(data.draft);
            elsewhere.forceActiveFocus();
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            compare(composer.sends, data.sends);
            keyClick(Qt.Key_Enter, Qt.ControlModifier);
            compare(composer.sends, 2 * data.sends);
            compare(composer.draft, data.draft);
        }

        function test_theEndOfASendTakesTheFocusFromNobody() {
            const composer = make("taslak");
            composer.isSending = true;
            elsewhere.forceActiveFocus();
            composer.takeFocus();
            verify(elsewhere.activeFocus, "nothing can be written");
            composer.isSending = false;
            verify(elsewhere.activeFocus);
        }

        function test_tabMovesTheFocus() {
            const composer = make("taslak");
            keyClick(Qt.Key_Tab);
            verify(button(composer).activeFocus);
            keyClick(Qt.Key_Backtab);
            verify(area(composer).activeFocus);
            composer.draft = "";
            keyClick(Qt.Key_Tab);
            verify(!area(composer).activeFocus, "past a button that is disabled");
            compare(composer.draft, "");
        }

        function test_blanksStayWhatTheyAre() {
            const composer = make("");
            const text = "1\u00a0000\u202f₺\u2009x";
            area(composer).insert(0, text);
            compare(composer.draft, text);
            keyClick("y");
            compare(composer.draft, text + "y");
        }

        function test_aNoBreakBlankLeavesTheCursorAndTheUndoAlone() {
            const composer = make("ab\u00a0cd ef");
            area(composer).cursorPosition = 1;
            for (const key of ["x", "y", "z"])
                keyClick(key);
            compare(composer.draft, "axyzb\u00a0cd ef");
            compare(area(composer).cursorPosition, 4);
            verify(area(composer).canUndo);
        }

        function test_aClickBesideTheTextIsMeantForIt() {
            const composer = make("");
            elsewhere.forceActiveFocus();
            mouseClick(composer, 8, 4);
            verify(area(composer).activeFocus);
        }

        function test_returnEndsACompositionBeforeItSends() {
            const composer = make("bir ");
            Probe.compose("iki");
            compare(area(composer).preeditText, "iki");
            compare(composer.draft, "bir ");
            keyClick(Qt.Key_Return);
            compare(composer.sends, 0);
            compare(composer.draft, "bir iki");
            keyClick(Qt.Key_Return);
            compare(composer.sends, 1);
        }

        function test_aCompositionGoesAlong_data() {
            return [{
                    "tag": "button",
                    "sendIt": composer => mouseClick(button(composer))
                }, {
                    "tag": "Control-Return",
                    "sendIt": () => keyClick(Qt.Key_Return, Qt.ControlModifier)
                }];
        }

        function test_aCompositionGoesAlong(data) {
            const composer = make("bir ");
            let sent = "";
            composer.send.connect(() => {
                    sent = composer.draft;
                    composer.draft = "";
                });
            Probe.compose("iki");
            data.sendIt(composer);
            compare(sent, "bir iki");
            compare(area(composer).text, "");
            compare(composer.draft, "");
        }

        function test_aCompositionDoesNotBringAnOldDraftBack() {
            const composer = make("bir ");
            Probe.compose("iki");
            const drafts = [];
            composer.draftEdited.connect(text => drafts.push(text));
            composer.draft = "";
            compare(drafts, []);
            compare(area(composer).text, "");
            compare(area(composer).preeditText, "");
            keyClick("x");
            compare(composer.draft, "x");
        }

        function test_thePlaceholderGivesWayToAComposition() {
            const composer = make("");
            const placeholder = Probe.find(composer, "QQuickText").find(text => text.text === "Mesajını yaz…");
            Probe.compose("m");
            verify(!placeholder.visible);
            Probe.compose("");
            verify(placeholder.visible);
        }

        function test_isLockedDuringASend() {
            const composer = make("taslak");
            composer.isSending = true;
            keyClick("x");
            keyClick(Qt.Key_Return);
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            mouseClick(button(composer));
            compare(composer.draft, "taslak");
            compare(composer.sends, 0);
            verify(!area(composer).enabled);
            composer.isSending = false;
            verify(area(composer).activeFocus, "the focus comes back after the send");
            keyClick("x");
            compare(composer.draft, "taslakx");
        }

        function test_aDragUpwardsSelectsBeyondTheEdge() {
            const composer = make(lines(30));
            const text = area(composer);
            const field = text.parent.parent;
            tryVerify(() => field.contentY > 100);
            const before = field.contentY;
            mousePress(field, 30, 50);
            for (let y = 45; y >= -30; y -= 5)
                mouseMove(field, 30, y, -1, Qt.LeftButton);
            verify(text.selectedText.length > 40, text.selectedText);
            verify(field.contentY < before - 20, field.contentY);
            mouseRelease(field, 30, -30);
            verify(text.selectedText.length > 40, text.selectedText);
        }

        function test_aSlowClickSetsTheCursor() {
            const composer = make("bir iki üç dört");
            const text = area(composer);
            elsewhere.forceActiveFocus();
            mousePress(text, 30, text.height / 2);
            wait(Application.styleHints.mousePressAndHoldInterval + 50);
            mouseRelease(text, 30, text.height / 2);
            verify(text.activeFocus);
            verify(text.cursorPosition > 2 && text.cursorPosition < text.length, text.cursorPosition);
        }

        function test_theMenuHasTheKeyboard() {
            const composer = make("bir iki");
            const text = area(composer);
            const menu = () => Probe.find(scene.Window.contentItem, "TextMenuItem").filter(item => item.visible);
            mouseClick(text, 10, 5, Qt.RightButton);
            tryVerify(() => menu().length > 0 && !text.activeFocus);
            keyClick(Qt.Key_Escape);
            tryVerify(() => menu().length === 0);
            tryVerify(() => text.activeFocus);
            mouseClick(text, 10, 5, Qt.RightButton);
            tryVerify(() => menu().length > 0 && !text.activeFocus);
            const all = menu().find(item => item.text === "Tümünü Seç");
            for (let step = 0; step < 2 && !all.highlighted; ++step)
                keyClick(Qt.Key_Down);
            verify(all.highlighted);
            keyClick(Qt.Key_Return);
            tryCompare(text, "selectedText", "bir iki");
            compare(composer.sends, 0);
        }

        function test_aMenuThatIsOpenChangesNothingDuringASend() {
            const composer = make("bir iki");
            const text = area(composer);
            const entry = label => Probe.find(scene.Window.contentItem, "TextMenuItem").find(item => item.visible && item.text === label);
            Probe.setClipboard("pano");
            text.selectAll();
            keyClick(Qt.Key_Menu);
            tryVerify(() => entry("Kes") !== undefined);
            verify(entry("Kes").enabled && entry("Yapıştır").enabled);
            composer.isSending = true;
            Probe.press(entry("Yapıştır"));
            Probe.press(entry("Kes"));
            compare(composer.draft, "bir iki");
            verify(!entry("Kes").enabled && !entry("Yapıştır").enabled);
            keyClick(Qt.Key_Escape);
            tryVerify(() => entry("Kes") === undefined);
            composer.isSending = false;
            verify(text.activeFocus);
        }

        function test_growsFromOneToSixLines() {
            const composer = make("bir");
            const single = composer.height;
            const line = composer.lineHeight;
            for (let count = 2; count <= 6; ++count) {
                composer.draft = lines(count);
                const content = Math.max(button(composer).height, count * line + 4);
                fuzzyCompare(composer.height, 2 * 16 + content, 1);
            }
            const six = composer.height;
            verify(six > single);
            composer.draft = lines(30);
            compare(composer.height, six);
            const field = area(composer).parent.parent;
            verify(field.contentHeight > field.height, "the rest is scrolled to");
        }

        function test_placeIsThatOfTheVisibleField() {
            const composer = make(lines(40));
            const field = area(composer).parent.parent;
            verify(area(composer).height > 2 * field.height);
            for (const y of [0, 50, field.contentHeight - field.height]) {
                field.contentY = y;
                const top = field.mapToItem(null, 0, 0);
                const place = Probe.place(area(composer));
                fuzzyCompare(place.x, top.x, 1);
                fuzzyCompare(place.y, top.y, 1);
                fuzzyCompare(place.width, area(composer).width, 1);
                fuzzyCompare(place.height, field.height, 1);
            }
            composer.draft = "";
            fuzzyCompare(Probe.place(area(composer)).height, area(composer).height, 1);
        }

        function test_textStandsWhereThePlaceholderStood() {
            const composer = make("");
            const before = area(composer).mapToItem(composer, 0, 0);
            keyClick("a");
            waitForRendering(scene);
            compare(area(composer).mapToItem(composer, 0, 0).y, before.y);
        }

        function test_isPaddedAndBottomAligned() {
            const composer = make(lines(4));
            const send = button(composer).mapToItem(composer, 0, 0);
            compare(composer.width - send.x - button(composer).width, 16);
            compare(composer.height - send.y - button(composer).height, 16);
            compare(area(composer).mapToItem(composer, 0, 0).x, 16);
            compare(send.x - area(composer).mapToItem(composer, area(composer).width, 0).x, 12);
            compare(button(composer).iconName, "arrow-up");
        }

        function test_itsCharactersHaveAPlace() {
            const composer = make("ab");
            const first = Probe.placeOfCharacter(area(composer), 0);
            verify(first.width > 2 && first.height > 2);
            fuzzyCompare(Probe.placeOfCharacter(area(composer), 1).x, first.right, 2);
        }

        function test_pageKeysAreForTheConversation() {
            const composer = make("taslak");
            keyClick(Qt.Key_PageUp);
            keyClick(Qt.Key_PageUp);
            compare(composer.pages, -2);
            keyClick(Qt.Key_PageDown);
            compare(composer.pages, -1);
        }

        function test_assistiveTechnologyWritesIntoTheDraft() {
            const composer = make("");
            verify(Probe.write(area(composer), "sesle yazıldı"));
            compare(composer.draft, "sesle yazıldı");
            composer.isSending = true;
            verify(Probe.write(area(composer), "x"), "the platform would set the value otherwise");
            Probe.setValue(area(composer), "x");
            compare(area(composer).text, "sesle yazıldı");
            compare(composer.draft, "sesle yazıldı");
        }

        function test_textIsNoMarkup() {
            const composer = make("<b>kalın</b> <img src='http://127.0.0.1/x.png'>");
            compare(area(composer).textFormat, TextEdit.PlainText);
            compare(area(composer).getText(0, 12), "<b>kalın</b>");
        }
    }
}

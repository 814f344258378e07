import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 1200
    height: 500

    Component {
        id: sceneryComponent

        Item {
            property alias fixture: chats
            property alias list: view

            anchors.fill: parent

            MessageList {
                id: view

                width: 700
                height: parent.height
                isSending: false
                messages: SelectedMessages {
                    controller: chats.model
                }
            }

            ChatFixture {
                id: chats
            }
        }
    }

    TestCase {
        name: "MessageList"
        when: windowShown

        property var fixture: null

        function make(messages) {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            fixture = scenery.fixture;
            fixture.storeKey("gsk_deneme");
            fixture.load([{
                        "title": "Adı var",
                        "messages": messages
                    }]);
            settle(scenery.list);
            return scenery.list;
        }

        function cleanup() {
            Probe.releaseParsing();
            Probe.setReducedMotion(Theme.desktop, false);
        }

        function settle(list) {
            const column = Probe.find(list, "Talvo::MessageColumn")[0];
            tryVerify(() => !isPolishScheduled(column));
        }

        function many(count) {
            return Array.from({
                    "length": count
                }, (_, index) => "İleti " + index + ". " + "Söz. ".repeat(40));
        }

        function rows(list) {
            return Probe.find(list, "AssistantMessageRow").concat(Probe.find(list, "UserMessageRow")).filter(row => row.visible).sort((one, other) => one.y - other.y);
        }

        function bubble(row) {
            return Probe.find(row, "MarkdownMessageView").concat(Probe.find(row, "PlainMessageText"))[0].parent;
        }

        function avatar(row) {
            return Probe.find(row, "Avatar")[0];
        }

        function isAtEnd(list) {
            return Math.abs(list.contentY + list.height - list.endY) < 2;
        }

        function send(text) {
            fixture.model.draft = text;
            fixture.model.startSending();
            tryVerify(() => fixture.requestCount() === 1);
        }

        /// Whether anything is written in the text of a row's bubble, between two heights of the scene.
        function isWritten(row, top, bottom) {
            const image = grabImage(scene);
            const left = Math.round(bubble(row).mapToItem(scene, 0, 0).x);
            for (let y = top; y < bottom; ++y) {
                for (let x = left + 20; x < left + 60; ++x) {
                    if (!Qt.colorEqual(image.pixel(x, y), image.pixel(left + 5, y)))
                        return true;
                }
            }
            return false;
        }

        function test_aReplyIsDrawnAsFarAsItIsInView() {
            const list = make([Array(60).fill("Paragraf.").join("\n\n"), "Soru"]);
            const reply = rows(list)[0];
            tryVerify(() => Probe.find(reply, "Talvo::MarkdownText").length === 60);
            list.height = 200;
            list.contentY = list.startY;
            settle(list);
            verify(isWritten(reply, 50, 200), "in view");
            verify(!isWritten(reply, 230, 400), "below it");
            list.contentY += 100;
            settle(list);
            verify(isWritten(reply, 140, 200), "come into view");
            list.height = 400;
            verify(isWritten(reply, 230, 400), "in view of a taller list");
        }

        function test_anEmptyConversationShowsNothingAndDoesNotScroll() {
            const list = make([]);
            compare(rows(list).length, 0);
            compare(list.contentY, list.startY);
            list.scrollByPages(1);
            compare(list.contentY, list.startY);
            list.scrollByPages(-1);
            compare(list.contentY, list.startY);
        }

        function test_spacingAndPadding() {
            const list = make(["Bir", "İki", "Üç"]);
            const all = rows(list);
            compare(all.length, 3);
            compare(all[0].y - list.startY, 24);
            compare(all[1].y - all[0].y - all[0].height, 14);
            compare(all[2].y - all[1].y - all[1].height, 14);
            compare(list.endY - all[2].y - all[2].height, 24);
            compare(bubble(all[0]).mapToItem(list, 0, 0).x, 24 + 30 + 12);
            compare(avatar(all[0]).mapToItem(list, 0, 0).x, 24);
            compare(avatar(all[1]).mapToItem(list, 0, 0).x, list.width - 24 - 30);
            compare([avatar(all[0]).width, avatar(all[0]).height], [30, 30]);
        }

        function test_theUsersTextIsNeverMarkdown() {
            const text = "**Bu** yazı\n- olduğu gibi\n# kalır";
            const list = make([text, text]);
            tryVerify(() => Probe.find(rows(list)[0], "Talvo::MarkdownText").length === 3);
            const user = rows(list)[1];
            compare(Probe.find(user, "Talvo::MarkdownText").length, 0);
            compare(Probe.text(Probe.find(user, "PlainMessageText")[0]), text);
            compare(Probe.find(user, "PlainMessageText")[0].lineCount, 3);
        }

        function test_theUsersTextStaysInItsBubble_data() {
            return [{
                    "tag": "short",
                    "text": "Kısa."
                }, {
                    "tag": "long",
                    "text": "Uzun bir söz. ".repeat(60)
                }, {
                    "tag": "right to left",
                    "text": "שלום עולם"
                }, {
                    "tag": "long and right to left",
                    "text": "שלום עולם ".repeat(60)
                }];
        }

        function test_theUsersTextStaysInItsBubble(data) {
            const list = make(["Bir", data.text]);
            const text = Probe.find(rows(list)[1], "PlainMessageText")[0];
            verify(text.width > 0);
            verify(text.x + text.naturalWidth <= bubble(rows(list)[1]).width - 13, "on the right");
            verify(text.x === 14, "on the left");
            verify(text.contentWidth <= text.width);
        }

        function test_bubbleColours() {
            const list = make(["Bir", "İki"]);
            compare(bubble(rows(list)[0]).color, Theme.bubbleBot);
            compare(bubble(rows(list)[1]).color, Theme.accent);
            fuzzyCompare(bubble(rows(list)[0]).color.a, 0.12, 0.01);
            compare(bubble(rows(list)[0]).radius, 14);
            compare(Probe.find(rows(list)[1], "PlainMessageText")[0].color, "#ffffff");
            compare(rows(list).map(row => Probe.find(avatar(row), "Talvo::Icon")[0].name), ["sparkles", "person"]);
        }

        function test_theColumnIsAtMost860WideAndCentred_data() {
            return [{
                    "tag": "narrowest",
                    "width": 510,
                    "column": 510
                }, {
                    "tag": "just",
                    "width": 860,
                    "column": 860
                }, {
                    "tag": "wide",
                    "width": 1200,
                    "column": 860
                }];
        }

        function test_theColumnIsAtMost860WideAndCentred(data) {
            const text = "Çok uzun bir söz ".repeat(30);
            const list = make([text, text]);
            list.width = data.width;
            settle(list);
            const margin = (data.width - data.column) / 2 + 24;
            const assistant = rows(list)[0];
            const user = rows(list)[1];
            compare(avatar(assistant).mapToItem(list, 0, 0).x, margin);
            compare(avatar(user).mapToItem(list, 30, 0).x, data.width - margin);
            tryVerify(() => bubble(assistant).width > data.column / 2);
            const right = bubble(assistant).mapToItem(list, bubble(assistant).width, 0).x;
            verify(data.width - margin - right >= 80, "free on the right: " + (data.width - margin - right));
            const left = bubble(user).mapToItem(list, 0, 0).x;
            verify(left - margin >= 80, "free on the left: " + (left - margin));
        }

        function test_opensAtTheEnd() {
            const list = make(many(300));
            tryVerify(() => isAtEnd(list));
            verify(rows(list).length < 40, "only rows nearby exist");
        }

        function test_whatIsOutOfSightWaitsUntilTheRestIsOnScreen() {
            const list = make(many(300).concat(Array(14).fill("Paragraf.").join("\n\n")));
            fixture.model.newChat();
            settle(list);
            const frames = [];
            const count = () => frames.push(rows(list).length);
            list.Window.window.frameSwapped.connect(count);
            fixture.model.selectChat(fixture.idAt(1));
            tryVerify(() => frames.length > 1 && rows(list).length > frames[0]);
            list.Window.window.frameSwapped.disconnect(count);
            const visible = rows(list).filter(row => row.y + row.height > list.contentY);
            compare(frames[0], visible.length, "rows of the first frame");
        }

        function itemsOf(list) {
            return Probe.find(list, "Talvo::MarkdownText").filter(text => Probe.name(text).startsWith("madde "));
        }

        function placeOf(text, list) {
            return text.mapToItem(list, 0, 0).y;
        }

        function longReply(count) {
            return Array.from({
                    "length": count
                }, (_, index) => "- madde " + index).join("\n");
        }

        function test_aLongReplyIsMadeFromItsEndOn() {
            const list = make(["Önce", "Soru", longReply(1000)]);
            const last = itemsOf(list).find(text => Probe.name(text) === "madde 999");
            const place = placeOf(last, list);
            verify(place < list.height, "the end is visible");
            tryVerify(() => itemsOf(list).length === 1000);
            settle(list);
            compare(placeOf(last, list), place, "what is visible stays where it is");
        }

        function test_aLongReplyIsThereWhereverTheUserGoes_data() {
            return [{
                    "tag": "upwards",
                    "step": -300
                }, {
                    "tag": "downwards",
                    "step": 300
                }];
        }

        function test_aLongReplyIsThereWhereverTheUserGoes(data) {
            const list = make(many(12).concat(longReply(300)).concat(many(13)));
            if (data.step > 0) {
                list.contentY = list.startY;
                settle(list);
            }
            const isInside = () => data.step > 0 ? list.contentY < list.endContentY - data.step : list.contentY > list.startY - data.step;
            let seen = 0;
            while (isInside()) {
                const before = new Map(itemsOf(list).map(text => [text, placeOf(text, list)]));
                list.contentY += data.step;
                settle(list);
                const shown = itemsOf(list).filter(text => placeOf(text, list) >= 0 && placeOf(text, list) < list.height);
                const known = shown.filter(text => before.has(text));
                for (const text of known)
                    compare(placeOf(text, list), before.get(text) - data.step, Probe.name(text));
                seen = Math.max(seen, shown.length);
            }
            verify(seen > 10, "a view full of items was passed: " + seen);
        }

        /// Shows a conversation while no reply in it can be parsed, from its beginning on.
        function makeUnparsed(messages) {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            fixture = scenery.fixture;
            fixture.load([{
                        "title": "Önceki",
                        "messages": messages.map(() => "Kısa")
                    }, {
                        "title": "Sonraki",
                        "messages": messages
                    }]);
            settle(scenery.list);
            scenery.list.contentY = scenery.list.startY;
            settle(scenery.list);
            Probe.holdParsing();
            // As many messages as before are shown where those were.
            fixture.model.selectChat(fixture.idAt(1));
            settle(scenery.list);
            return scenery.list;
        }

        function isInView(row, list) {
            const top = row.mapToItem(list, 0, 0).y;
            return top < list.height && top + row.height > 0;
        }

        function test_aReplyThatIsShorterOnceParsedStaysInView() {
            const list = makeUnparsed(["Önce", "Soru", "- madde\n".repeat(20000)]);
            const row = rows(list)[2];
            verify(row.height > 4 * list.height, "as it stands");
            list.contentY = row.mapToItem(list.contentItem, 0, row.height).y - list.height;
            settle(list);
            Probe.releaseParsing();
            tryVerify(() => Probe.find(row, "Talvo::MarkdownText").length > 1);
            settle(list);
            compare(rows(list).pop(), row, "it is not made anew");
            verify(isInView(row, list));
        }

        function test_aReplyGrowsInPortionsAlsoAtItsEnd() {
            const list = makeUnparsed(["Önce", "Soru", "- madde\n".repeat(3000)]);
            const row = rows(list)[2];
            list.contentY = list.endContentY;
            settle(list);
            Probe.releaseParsing();
            const made = () => Probe.find(row, "Talvo::MarkdownText").length;
            tryVerify(() => made() > 1);
            verify(made() < 2000, made() + " of 3000 at once");
            tryVerify(() => made() === 3000, 20000);
            settle(list);
            verify(isAtEnd(list));
        }

        function test_theMiddleOfAReplyThatIsNotParsedYet() {
            const list = makeUnparsed(["madde ".repeat(30000)].concat(many(299)));
            const row = rows(list)[0];
            list.contentY = list.startY + 20000;
            settle(list);
            compare(rows(list)[0], row, "not the messages below it");
            verify(isInView(row, list));
            Probe.releaseParsing();
            tryVerify(() => Probe.find(row, "Talvo::MarkdownText").length > 1);
            settle(list);
            verify(rows(list).some(row => isInView(row, list)));
        }

        /// Waits until the list has followed to its end and rests there.
        function restAtEnd(list) {
            const column = Probe.find(list, "Talvo::MessageColumn")[0];
            tryVerify(() => !column.isFollowing && isAtEnd(list));
        }

        function goAway(list) {
            restAtEnd(list);
            list.scrollByPages(-3);
            settle(list);
            verify(!isAtEnd(list));
        }

        function test_followsTheMessageTheThinkingRowAndTheReply() {
            const list = make(many(60));
            const thinking = Probe.find(list, "ThinkingRow")[0];
            goAway(list);
            send("Soru");
            restAtEnd(list);
            goAway(list);
            list.isSending = true;
            restAtEnd(list);
            verify(thinking.mapToItem(list, 0, thinking.height).y <= list.height);
            goAway(list);
            fixture.answer(0, "Yanıt. ".repeat(200));
            tryVerify(() => fixture.messages().length === 62);
            restAtEnd(list);
            goAway(list);
            list.isSending = false;
            restAtEnd(list);
        }

        function test_aUserWhoScrollsUpMeanwhileIsNotBroughtBackBeforeTheReply() {
            const list = make(many(60));
            const column = Probe.find(list, "Talvo::MessageColumn")[0];
            send("Soru");
            restAtEnd(list);
            list.isSending = true;
            tryVerify(() => column.isFollowing);
            mouseWheel(list, 100, 100, 0, 1200);
            tryVerify(() => !column.isFollowing && !list.moving);
            settle(list);
            verify(!isAtEnd(list));
            const before = list.contentY;
            fixture.model.draft = "Sonraki soru";
            wait(0);
            compare(list.contentY, before);
            fixture.answer(0, "Yanıt. ".repeat(200));
            tryVerify(() => fixture.messages().length === 62);
            restAtEnd(list);
        }

        function test_followsWithoutMotionToo() {
            const list = make(many(60));
            Probe.setReducedMotion(Theme.desktop, true);
            compare(Theme.duration, 0);
            list.contentY -= 1500;
            send("Soru");
            tryVerify(() => isAtEnd(list));
            list.contentY -= 300;
            list.isSending = true;
            tryVerify(() => isAtEnd(list));
            fixture.answer(0, "Yanıt. ".repeat(200));
            tryVerify(() => fixture.messages().length === 62);
            list.isSending = false;
            settle(list);
            tryVerify(() => isAtEnd(list));
        }

        function test_aLongWayIsNotFlownOverRowByRow() {
            const list = make(many(300));
            list.contentY = list.startY;
            settle(list);
            list.scrollToEnd();
            verify(list.endContentY - list.contentY <= list.height);
            restAtEnd(list);
        }

        function test_aLinkReachedByKeyboardIsInView() {
            const list = make(["[bir](http://bir.example)\n\n" + "Satır.\n\n".repeat(40) + "[iki](http://iki.example)", "Soru"]);
            list.contentY = list.startY;
            settle(list);
            const links = Probe.find(list, "Talvo::MarkdownText").filter(text => text.activeFocusOnTab);
            compare(links.length, 2);
            const isInView = link => link.mapToItem(list, 0, 0).y >= 0 && link.mapToItem(list, 0, link.height).y <= list.height;
            links[1].forceActiveFocus(Qt.TabFocusReason);
            verify(isInView(links[1]), links[1].mapToItem(list, 0, 0).y);
            links[0].forceActiveFocus(Qt.BacktabFocusReason);
            verify(isInView(links[0]), links[0].mapToItem(list, 0, 0).y);
        }

        function test_staysWhereItIsOtherwise() {
            const list = make(many(60));
            tryVerify(() => isAtEnd(list));
            list.scrollByPages(-3);
            settle(list);
            const before = list.contentY - list.startY;
            fixture.model.renameChat(fixture.idAt(0), "Başka ad");
            fixture.model.draft = "taslak";
            wait(0);
            compare(list.contentY - list.startY, before);
        }

        function test_thinkingRowIsOneElement() {
            const list = make(["Bir"]);
            list.isSending = true;
            const thinking = Probe.find(list, "ThinkingRow")[0];
            tryCompare(thinking, "visible", true);
            compare(Probe.name(thinking), "Talvo düşünüyor…");
            compare(Probe.texts(thinking), "Talvo düşünüyor…");
            const label = Probe.find(thinking, "QQuickText")[0];
            compare(label.color, Theme.secondary);
            const parts = ["Avatar", "Spinner", "QQuickText"].map(type => Probe.find(thinking, type)[0]);
            for (let i = 1; i < parts.length; ++i)
                compare(parts[i].x - parts[i - 1].x - parts[i - 1].width, 12);
            verify(parts[0].isAssistant);
            list.isSending = false;
            tryCompare(thinking, "visible", false);
        }

        function test_pagesStopAtTheEnds() {
            const list = make(many(12));
            for (let step = 0; step < 20; ++step)
                list.scrollByPages(-1);
            settle(list);
            fuzzyCompare(list.contentY, list.startY, 1);
            for (let step = 0; step < 20; ++step)
                list.scrollByPages(1);
            settle(list);
            verify(isAtEnd(list));
        }
    }
}

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
            property alias fixture: chats
            property alias chat: view

            anchors.fill: parent

            ChatView {
                id: view

                anchors.fill: parent
                model: chats.model
            }

            ChatFixture {
                id: chats
            }
        }
    }

    TestCase {
        name: "ChatView"
        when: windowShown

        property var fixture: null

        function make() {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            fixture = scenery.fixture;
            fixture.storeKey("gsk_deneme");
            fixture.load([{
                        "title": "Adı var",
                        "messages": ["Merhaba", "Selam", "Buyur"]
                    }, {
                        "title": "Öteki",
                        "messages": ["Merhaba", "Söz", "Uzun bir söz. ".repeat(400), "Soru", "Uzun bir yanıt. ".repeat(400)]
                    }]);
            waitForRendering(scene);
            return scenery.chat;
        }

        function area(chat) {
            return Probe.find(chat, "Talvo::ControlTemplates::TextArea")[0];
        }

        function thinkingRow(chat) {
            return Probe.find(chat, "ThinkingRow")[0];
        }

        function send(chat, text) {
            area(chat).forceActiveFocus();
            fixture.model.draft = text;
            keyClick(Qt.Key_Return);
            tryVerify(() => fixture.requestCount() === 1);
        }

        function test_theDraftIsTheModels() {
            const chat = make();
            area(chat).forceActiveFocus();
            keyClick("a");
            compare(fixture.model.draft, "a");
            fixture.model.draft = "başka";
            compare(area(chat).text, "başka");
        }

        function test_aBlankDraftIsSentToTheModelWhichRefuses() {
            const chat = make();
            area(chat).forceActiveFocus();
            fixture.model.draft = "  ";
            keyClick(Qt.Key_Return);
            compare(fixture.model.draft, "  ");
            compare(fixture.messages().length, 3);
            compare(fixture.requestCount(), 0);
        }

        function test_oneExchange() {
            const chat = make();
            verify(!thinkingRow(chat).visible);
            send(chat, "Nasılsın?");
            compare(fixture.messages()[3], "Nasılsın?");
            verify(thinkingRow(chat).visible);
            verify(!area(chat).enabled);
            compare(area(chat).text, "");
            fixture.answer(0, "İyiyim.");
            tryVerify(() => !thinkingRow(chat).visible);
            compare(fixture.messages()[4], "İyiyim.");
            tryVerify(() => fixture.requestCount() === 2);
            verify(!area(chat).enabled, "the memory request still belongs to the send");
            fixture.answer(1, "- Nazik");
            tryVerify(() => area(chat).enabled);
            tryVerify(() => area(chat).activeFocus);
        }

        function test_aReplyIsAnnouncedWithoutItsMarkup() {
            const chat = make();
            const announcement = Probe.find(chat, "Talvo::ReplyAnnouncement")[0];
            verify(!announcement.visible);
            send(chat, "Nasılsın?");
            fixture.answer(0, "# Başlık\n\nBir *vurgulu* söz.\n\n- ilk");
            tryVerify(() => announcement.visible);
            compare(Probe.name(announcement), "Yanıt: Başlık Bir vurgulu söz. ilk");
            compare(Probe.role(announcement), Accessible.Notification);
            tryVerify(() => fixture.requestCount() === 2);
            fixture.answer(1, "-");
            tryVerify(() => !fixture.model.isSending);
            fixture.model.selectChat(fixture.idAt(1));
            verify(!announcement.visible, "it is over with another conversation");
        }

        function test_aFailureEndsTheWaitAndLeavesTheTextInTheConversation() {
            const chat = make();
            send(chat, "Nasılsın?");
            fixture.refuse(0, 500, "Olmadı.");
            tryVerify(() => fixture.model.hasErrorMessage);
            verify(!thinkingRow(chat).visible);
            tryVerify(() => area(chat).enabled);
            compare(fixture.messages()[3], "Nasılsın?");
            compare(area(chat).text, "", "it is not there twice");
        }

        function test_theThinkingRowIsInView() {
            const chat = make();
            fixture.model.selectChat(fixture.idAt(1));
            waitForRendering(scene);
            send(chat, "Nasılsın?");
            const list = Probe.find(chat, "MessageList")[0];
            const bottom = () => thinkingRow(chat).mapToItem(list, 0, thinkingRow(chat).height).y;
            tryVerify(() => bottom() <= list.height && bottom() > list.height - 60);
        }

        function test_selectingAChatFocusesItsComposer() {
            const chat = make();
            fixture.model.draft = "taslak";
            fixture.model.selectChat(fixture.idAt(1));
            tryVerify(() => area(chat).activeFocus);
            compare(area(chat).text, "", "the draft goes with the selection");
        }

        function test_pageKeysScrollTheConversation() {
            const chat = make();
            fixture.model.selectChat(fixture.idAt(1));
            waitForRendering(scene);
            const list = Probe.find(chat, "MessageList")[0];
            area(chat).forceActiveFocus();
            const before = list.contentY;
            keyClick(Qt.Key_PageUp);
            verify(list.contentY < before);
            keyClick(Qt.Key_PageDown);
            fuzzyCompare(list.contentY, before, 1);
        }

        function test_whoReadsAMessageGoesToTheEndsOfTheConversation() {
            const chat = make();
            fixture.model.selectChat(fixture.idAt(1));
            waitForRendering(scene);
            const list = Probe.find(chat, "MessageList")[0];
            Probe.find(list, "Talvo::MarkdownText")[0].forceActiveFocus();
            keyClick(Qt.Key_Home);
            waitForRendering(scene);
            fuzzyCompare(list.contentY, list.startY, 1);
            verify(list.endContentY > list.startY + 100);
            keyClick(Qt.Key_End);
            waitForRendering(scene);
            fuzzyCompare(list.contentY, list.endContentY, 1);
        }

        function test_homeAndEndStayWithTheDraft() {
            const chat = make();
            fixture.model.selectChat(fixture.idAt(1));
            waitForRendering(scene);
            const list = Probe.find(chat, "MessageList")[0];
            const before = list.contentY;
            fixture.model.draft = "taslak";
            area(chat).forceActiveFocus();
            keyClick(Qt.Key_Home);
            compare(area(chat).cursorPosition, 0);
            keyClick(Qt.Key_Home);
            waitForRendering(scene);
            fuzzyCompare(list.contentY, before, 1);
        }

        function test_theScrollBarShowsWhereTheListIs() {
            const chat = make();
            const bar = Probe.find(chat, "ScrollBarV").find(item => item.parent === chat);
            verify(!bar.visible, "nothing to scroll");
            fixture.model.selectChat(fixture.idAt(1));
            tryVerify(() => bar.visible);
            fuzzyCompare(bar.position + bar.size, 1, 0.01);
        }

        function test_whoeverScrollsIsNotTakenToTheEnd_data() {
            return [{
                    "tag": "the page keys",
                    "scroll": () => keyClick(Qt.Key_PageUp)
                }, {
                    "tag": "the scroll bar",
                    "scroll": bar => {
                        mousePress(bar, 6, bar.height - 20);
                        mouseMove(bar, 6, bar.height / 2);
                        mouseMove(bar, 6, bar.height / 2 - 10);
                        mouseRelease(bar, 6, bar.height / 2 - 10);
                    }
                }];
        }

        function test_whoeverScrollsIsNotTakenToTheEnd(data) {
            const chat = make();
            fixture.model.selectChat(fixture.idAt(1));
            waitForRendering(scene);
            const list = Probe.find(chat, "MessageList")[0];
            const column = Probe.find(list, "Talvo::MessageColumn")[0];
            area(chat).forceActiveFocus();
            list.scrollToEnd();
            verify(column.isFollowing);
            data.scroll(Probe.find(chat, "ScrollBarV").find(item => item.parent === chat));
            verify(!column.isFollowing);
            const there = list.contentY;
            verify(there < list.endContentY - 100);
            waitForRendering(scene);
            fuzzyCompare(list.contentY, there, 1);
        }

        function test_theComposerIsBelowTheMessages() {
            const chat = make();
            const list = Probe.find(chat, "MessageList")[0];
            const composer = Probe.find(chat, "MessageComposer")[0];
            compare(composer.y + composer.height, chat.height);
            compare(list.y, 0);
            verify(list.height <= composer.y);
        }
    }
}

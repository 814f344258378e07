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
        id: windowComponent

        Item {
            property alias window: main

            MainWindow {
                id: main

                model: chats.model
                keychain: chats.keychain
            }

            ChatFixture {
                id: chats
            }
        }
    }

    TestCase {
        name: "ContentView"
        when: windowShown

        property var fixture: null

        function make() {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            fixture = scenery.fixture;
            fixture.waitForLoad();
            // What is clicked at has to lie where it will be drawn.
            const sidebar = Probe.find(scenery, "SidebarView")[0];
            tryVerify(() => sidebar.width === 250 && sidebar.height === scene.height);
            Probe.find(scenery, "SessionList")[0].forceLayout();
            return scenery.content;
        }

        function inWindow(type, name) {
            return Probe.find(scene.Window.contentItem, type).find(item => item.visible && Probe.name(item) === name);
        }

        function see(type, name) {
            tryVerify(() => inWindow(type, name) !== undefined, 5000, name);
            return inWindow(type, name);
        }

        function miss(type, name) {
            tryVerify(() => inWindow(type, name) === undefined, 5000, name);
        }

        function rows(content) {
            return Probe.find(content, "ChatSessionRow").filter(row => row.visible).sort((one, other) => one.y - other.y);
        }

        function test_aFirstStartShowsTheGreetingAndNoAlert() {
            const content = make();
            compare(fixture.titles(), ["Yeni Sohbet"]);
            compare(fixture.messages(), ["Merhaba! Ben Talvo. Sana bugün nasıl yardımcı olabilirim?"]);
            tryVerify(() => Probe.texts(content).indexOf("Merhaba! Ben Talvo.") >= 0);
            compare(fixture.saveCount(), 1);
            compare(inWindow("PushButton", "Tamam"), undefined);
            verify(!content.isShowingSettings);
        }

        function test_theEndOfAConversationThatFitsStaysInViewWhenTheWindowShrinks() {
            const content = make();
            fixture.storeKey("gsk_deneme");
            Probe.find(content, "Talvo::ControlTemplates::TextArea")[0].forceActiveFocus();
            fixture.model.draft = "Soru";
            keyClick(Qt.Key_Return);
            const answers = ["Yanıt.\n\n".repeat(10), "Ad", "-"];
            answers.forEach((answer, i) => {
                    tryVerify(() => fixture.requestCount() > i);
                    fixture.answer(i, answer);
                });
            tryVerify(() => !fixture.model.isSending);
            const list = Probe.find(content, "MessageList")[0];
            tryVerify(() => !Probe.find(content, "Talvo::MessageColumn")[0].isFollowing);
            compare(list.endContentY, 0);
            content.parent.anchors.fill = undefined;
            content.parent.height = 420;
            tryVerify(() => list.endContentY > 0);
            tryVerify(() => Math.abs(list.contentY - list.endContentY) < 2);
        }

        function test_theChosenModelIsSavedOnce() {
            const content = make();
            const sidebar = Probe.find(content, "SidebarView")[0];
            const before = fixture.saveCount();
            sidebar.modelSelected("openai/gpt-oss-120b");
            compare(fixture.model.selectedModel, "openai/gpt-oss-120b");
            compare(fixture.saveCount(), before + 1);
            compare(sidebar.selectedModel, "openai/gpt-oss-120b");
        }

        function test_theSameOrAnUnknownModelChangesNothing_data() {
            return [{
                    "tag": "same",
                    "model": "llama-3.3-70b-versatile"
                }, {
                    "tag": "unknown",
                    "model": "başka/model"
                }, {
                    "tag": "empty",
                    "model": ""
                }];
        }

        function test_theSameOrAnUnknownModelChangesNothing(data) {
            const content = make();
            const before = fixture.saveCount();
            Probe.find(content, "SidebarView")[0].modelSelected(data.model);
            compare(fixture.model.selectedModel, "llama-3.3-70b-versatile");
            compare(fixture.saveCount(), before);
        }

        function test_deletingTheOnlyChatShowsTheEmptyView() {
            const content = make();
            mouseClick(see("IconButton", "Sohbeti sil"));
            tryVerify(() => Probe.find(content, "EmptyChatView").length === 1);
            verify(!Probe.find(content, "ChatView")[0].visible);
            compare(fixture.titles(), []);
            mouseClick(Probe.find(Probe.find(content, "EmptyChatView")[0], "PushButton")[0]);
            tryVerify(() => Probe.find(content, "EmptyChatView").length === 0);
            verify(Probe.find(content, "ChatView")[0].visible);
            compare(fixture.messages(), ["Yeni sohbet hazır. Ne hakkında konuşalım?"]);
        }

        function test_chatsAreMadeSelectedRenamedAndDeleted() {
            const content = make();
            mouseClick(see("SidebarButton", "Yeni Sohbet"));
            tryVerify(() => rows(content).length === 2);
            Probe.find(content, "SessionList")[0].forceLayout();
            mouseClick(rows(content)[1], 20, 20);
            tryVerify(() => rows(content)[1].isSelected);
            mouseClick(Probe.find(rows(content)[1], "IconButton")[0]);
            see("Field", "Sohbet adı").text = "  **Tarifler** ";
            mouseClick(see("PushButton", "Kaydet"));
            miss("PushButton", "Kaydet");
            tryVerify(() => rows(content)[1].title === "Tarifler");
            Probe.press(Probe.find(rows(content)[0], "IconButton")[1]);
            tryVerify(() => rows(content).length === 1);
            compare(fixture.titles(), ["Tarifler"]);
        }

        function test_twoErrorsInARow() {
            make();
            fixture.setError("Birinci sorun");
            see("PlainLabel", "Birinci sorun");
            fixture.setError("İkinci sorun");
            see("PlainLabel", "İkinci sorun");
            compare(inWindow("PlainLabel", "Birinci sorun"), undefined);
            mouseClick(see("PushButton", "Tamam"));
            compare(fixture.model.hasErrorMessage, false);
            miss("PushButton", "Tamam");
        }

        function test_anErrorIsDismissedByEscape() {
            make();
            fixture.setError("Sorun");
            see("PushButton", "Tamam");
            tryVerify(() => inWindow("PushButton", "Tamam").activeFocus);
            keyClick(Qt.Key_Escape);
            tryCompare(fixture.model, "hasErrorMessage", false);
            miss("PushButton", "Tamam");
        }

        function test_anErrorThatTheModelTakesBackGoes() {
            make();
            fixture.setError("Sorun");
            see("PushButton", "Tamam");
            fixture.model.newChat();
            miss("PushButton", "Tamam");
        }

        function test_anErrorDuringTheSettingsIsShownOverThem() {
            const content = make();
            content.isShowingSettings = true;
            see("PlainLabel", "Groq API Anahtarı");
            fixture.setError("Sorun");
            tryVerify(() => inWindow("PushButton", "Tamam") !== undefined && inWindow("PushButton", "Tamam").activeFocus);
            keyClick(Qt.Key_Return);
            miss("PushButton", "Tamam");
            verify(content.isShowingSettings);
            keyClick(Qt.Key_Escape);
            tryCompare(content, "isShowingSettings", false);
        }

        function test_everyOpeningOfTheSettingsIsFresh() {
            const content = make();
            mouseClick(see("SidebarButton", "API Ayarları"));
            const field = see("SecretField", "gsk_…");
            field.text = "yarım";
            tryVerify(() => field.activeFocus);
            keyClick(Qt.Key_Escape);
            tryCompare(content, "isShowingSettings", false);
            miss("SecretField", "gsk_…");
            fixture.storeKey("gsk_başka yerden");
            mouseClick(see("SidebarButton", "API Ayarları"));
            const again = see("SecretField", "gsk_…");
            tryCompare(again, "text", "gsk_başka yerden");
            mouseClick(see("PushButton", "Vazgeç"));
            tryCompare(content, "isShowingSettings", false);
            miss("SecretField", "gsk_…");
        }

        function area(content) {
            return Probe.find(content, "Talvo::ControlTemplates::TextArea")[0];
        }

        function loaded(count) {
            const content = make();
            for (let number = 1; number < count; ++number)
                fixture.model.newChat();
            Probe.find(content, "SessionList")[0].forceLayout();
            tryVerify(() => area(content).activeFocus);
            return content;
        }

        function test_theEndOfASendLeavesAPanelTheKeyboard() {
            const content = loaded(1);
            fixture.storeKey("gsk_deneme");
            fixture.model.draft = "Soru";
            fixture.model.startSending();
            tryVerify(() => fixture.requestCount() === 1);
            content.isShowingSettings = true;
            const field = see("SecretField", "gsk_…");
            tryVerify(() => field.activeFocus);
            fixture.refuse(0, 500, "Olmadı.");
            see("PushButton", "Tamam");
            tryVerify(() => inWindow("PushButton", "Tamam").activeFocus);
            keyClick(Qt.Key_Return);
            miss("PushButton", "Tamam");
            tryVerify(() => field.activeFocus);
            keyClick(Qt.Key_Escape);
            tryVerify(() => area(content).activeFocus);
        }

        function test_aSelectionLeavesAPanelTheKeyboard() {
            const content = loaded(2);
            content.isShowingSettings = true;
            const field = see("SecretField", "gsk_…");
            tryVerify(() => field.activeFocus);
            fixture.model.selectChat(fixture.idAt(1));
            verify(field.activeFocus);
        }

        function test_controlReturnSendsNothingBelowAPanel() {
            const content = loaded(1);
            fixture.storeKey("gsk_deneme");
            fixture.model.draft = "Soru";
            content.isShowingSettings = true;
            const field = see("SecretField", "gsk_…");
            tryVerify(() => field.activeFocus);
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            fixture.waitUntilAtRest();
            compare(fixture.model.draft, "Soru");
            compare(fixture.requestCount(), 0);
        }

        function test_selectingAChatFocusesTheComposer() {
            const content = loaded(3);
            Probe.find(content, "SessionList")[0].forceActiveFocus();
            mouseClick(rows(content)[2], 20, 20);
            tryVerify(() => rows(content)[2].isSelected);
            verify(area(content).activeFocus);
        }

        function test_theArrowKeysGoOnWalking() {
            const content = loaded(3);
            Probe.find(content, "SessionList")[0].forceActiveFocus();
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Down);
            verify(rows(content)[2].isSelected);
            mouseClick(see("SidebarButton", "Yeni Sohbet"));
            tryVerify(() => rows(content).length === 4);
            verify(area(content).activeFocus, "a new one is written in");
        }

        function test_aClickOnAButtonLeavesTheKeyboardInTheComposer() {
            const content = loaded(40);
            const bin = Probe.find(rows(content)[1], "IconButton")[1];
            mouseClick(bin);
            tryVerify(() => fixture.titles().length === 39);
            verify(area(content).activeFocus);
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Return);
            compare(fixture.titles().length, 39);
            mouseClick(see("SidebarButton", "API Ayarları"));
            const field = see("SecretField", "gsk_…");
            tryVerify(() => field.activeFocus);
            keyClick(Qt.Key_Escape);
            tryVerify(() => area(content).activeFocus);
        }

        function test_aRowThatGoesLeavesTheListTheKeyboard() {
            const content = loaded(40);
            const bin = Probe.find(rows(content)[1], "IconButton")[1];
            bin.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => fixture.titles().length === 39);
            const list = Probe.find(content, "SessionList")[0];
            list.forceLayout();
            tryVerify(() => list.activeFocus && !bin.activeFocus);
            keyClick(Qt.Key_Space);
            compare(fixture.titles().length, 39);
        }

        function test_theLastDeletionLeavesTheButtonTheKeyboard() {
            const content = loaded(1);
            Probe.find(rows(content)[0], "IconButton")[1].forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => Probe.find(content, "EmptyChatView").length === 1);
            tryVerify(() => Probe.find(Probe.find(content, "EmptyChatView")[0], "PushButton")[0].activeFocus);
            keyClick(Qt.Key_Return);
            tryVerify(() => fixture.titles().length === 1);
            tryVerify(() => area(content).activeFocus);
        }

        function test_aSlowDiskIsTold() {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            const sign = Probe.find(scenery, "ArchiveActivity")[0];
            verify(sign.isLoading);
            scenery.fixture.waitForLoad();
            verify(!sign.isLoading);
            scenery.fixture.holdDisk();
            scenery.fixture.model.newChat();
            tryVerify(() => sign.visible);
            compare(Probe.name(sign), "Kaydediliyor…");
            scenery.fixture.releaseDisk();
            tryVerify(() => !sign.visible);
        }

        function test_aWideSidebarGivesWayToTheChat() {
            const content = make();
            const sidebar = Probe.find(content, "SidebarView")[0];
            mousePress(content, 250, 400);
            mouseMove(content, 300, 400);
            mouseMove(content, 700, 400);
            mouseRelease(content, 700, 400);
            compare(sidebar.width, 980 - 420 - 1);
            content.anchors.fill = null;
            content.width = 760;
            tryVerify(() => sidebar.width === 760 - 420 - 1);
            compare(Probe.find(content, "ChatView")[0].width, 420);
        }

        function test_theSidebarsWidth() {
            const content = make();
            const sidebar = Probe.find(content, "SidebarView")[0];
            compare(sidebar.width, 250);
            mousePress(content, 250, 400);
            mouseMove(content, 200, 400);
            mouseMove(content, 120, 400);
            mouseRelease(content, 120, 400);
            compare(sidebar.width, 220);
        }

        function test_theWindow() {
            const window = createTemporaryObject(windowComponent, scene).window;
            compare([window.minimumWidth, window.minimumHeight], [760, 520]);
            compare([window.width, window.height], [Math.min(980, Screen.desktopAvailableWidth), Math.min(700, Screen.desktopAvailableHeight)]);
            compare(window.title, "Talvo Sohbet");
            tryVerify(() => !window.model.isLoadingArchive);
            window.model.deleteChat(window.model.selectedChatID);
            tryCompare(window, "title", "Talvo");
        }
    }
}

import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 500
    height: 600

    Component {
        id: sceneryComponent

        Item {
            property alias fixture: chats
            property alias sidebar: view

            anchors.fill: parent

            SidebarView {
                id: view

                property var calls: []

                function note(call: string): void {
                    view.calls = view.calls.concat([call]);
                }

                width: 250
                height: parent.height
                sessions: SessionListModel {
                    controller: chats.model
                }
                selectedModel: "llama-3.3-70b-versatile"
                models: chats.model.availableModels
                onNewChat: view.note("new")
                onChatSelected: id => view.note("select " + id)
                onRenameChat: (id, title) => view.note("rename " + id + " " + title)
                onDeleteChat: id => view.note("delete " + id)
                onModelSelected: name => view.note("model " + name)
                onShowSettings: view.note("settings")
            }

            ChatFixture {
                id: chats
            }
        }
    }

    TestCase {
        name: "SidebarView"
        when: windowShown

        property var fixture: null

        function make(titles) {
            const scenery = createTemporaryObject(sceneryComponent, scene);
            fixture = scenery.fixture;
            fixture.load(titles.map(title => ({
                                "title": title,
                                "messages": ["Merhaba"]
                            })));
            Probe.find(scenery, "SessionList")[0].forceLayout();
            return scenery.sidebar;
        }

        function rows(sidebar) {
            return Probe.find(sidebar, "ChatSessionRow").filter(row => row.visible).sort((one, other) => one.y - other.y);
        }

        function named(item, type, name) {
            return Probe.find(item, type).find(found => Probe.name(found) === name);
        }

        function test_contentFromTopToBottom() {
            const sidebar = make(["Bir", "İki"]);
            const texts = ["Talvo", "Sohbetler", "Bir", "İki", "Model"];
            const tops = texts.map(text => Probe.find(sidebar, "").find(item => item.text === text).mapToItem(sidebar, 0, 0).y);
            for (let index = 1; index < tops.length; ++index)
                verify(tops[index] > tops[index - 1], texts[index]);
            const settings = named(sidebar, "SidebarButton", "API Ayarları");
            verify(settings.mapToItem(sidebar, 0, 0).y > tops[4]);
            compare(Probe.find(sidebar, "SectionLabel").map(label => label.text), ["Sohbetler", "Model"]);
            compare(Probe.find(sidebar, "SidebarButton").map(button => [button.text, button.iconName]), [["Yeni Sohbet", "square-pencil"], ["API Ayarları", "key"]]);
        }

        function test_rowsAreInTheControllersOrder() {
            const sidebar = make(["Bir", "İki", "Üç"]);
            compare(rows(sidebar).map(row => row.title), ["Bir", "İki", "Üç"]);
            verify(rows(sidebar).every(row => row.updatedText !== ""));
        }

        function test_anEmptyListKeepsEverythingElse() {
            const sidebar = make(["Tek"]);
            fixture.model.deleteChat(fixture.idAt(0));
            tryVerify(() => rows(sidebar).length === 0);
            const newChat = named(sidebar, "SidebarButton", "Yeni Sohbet");
            const settings = named(sidebar, "SidebarButton", "API Ayarları");
            const choice = named(sidebar, "Choice", "Groq modeli");
            for (const control of [newChat, settings, choice])
                verify(control.visible && control.enabled);
            mouseClick(newChat);
            mouseClick(settings);
            compare(sidebar.calls, ["new", "settings"]);
        }

        function test_newChatIsNoChoice() {
            const sidebar = make(["Bir"]);
            const button = named(sidebar, "SidebarButton", "Yeni Sohbet");
            mouseClick(button);
            Probe.press(button);
            compare(sidebar.calls, ["new", "new"]);
            compare(rows(sidebar).filter(row => row.isSelected).length, 1);
        }

        function test_clickingARowSelectsIt() {
            const sidebar = make(["Bir", "İki"]);
            mouseClick(rows(sidebar)[1], 20, 20);
            compare(sidebar.calls, ["select " + fixture.idAt(1)]);
        }

        function test_theBinOfAnUnselectedRowDeletesThatRow() {
            const sidebar = make(["Bir", "İki", "Üç"]);
            verify(rows(sidebar)[0].isSelected);
            mouseClick(named(rows(sidebar)[2], "IconButton", "Sohbeti sil"));
            compare(sidebar.calls, ["delete " + fixture.idAt(2)]);
        }

        function test_aRenamedRowIsNamedByItsIdentity() {
            const sidebar = make(["Bir", "İki"]);
            mouseClick(named(rows(sidebar)[1], "IconButton", "Sohbeti yeniden adlandır"));
            const inWindow = type => Probe.find(sidebar.Window.contentItem, type);
            tryVerify(() => inWindow("Field").length === 1);
            inWindow("Field")[0].text = "  Yeni ad ";
            mouseClick(inWindow("PushButton").find(button => button.text === "Kaydet"));
            compare(sidebar.calls, ["rename " + fixture.idAt(1) + "   Yeni ad "]);
        }

        function test_aLongTitleIsCutToOneLine() {
            const sidebar = make(["Kısa", "Çok uzun bir başlık, ".repeat(8)]);
            const labels = rows(sidebar).map(row => Probe.find(row, "PlainLabel")[0]);
            verify(!labels[0].truncated);
            verify(labels[1].truncated);
            compare(labels[1].lineCount, 1);
            compare(rows(sidebar)[1].height, rows(sidebar)[0].height);
        }

        function test_modelsAreShownLiterally() {
            const sidebar = make(["Bir"]);
            const choice = named(sidebar, "Choice", "Groq modeli");
            compare(Probe.texts(choice), "llama-3.3-70b-versatile");
            compare(sidebar.models, ["llama-3.3-70b-versatile", "llama-3.1-8b-instant", "openai/gpt-oss-120b"]);
            choice.popup.open();
            tryCompare(choice.popup, "opened", true);
            const entries = Probe.find(choice.popup.contentItem, "ChoiceEntry").map(entry => entry.text);
            compare(entries, sidebar.models);
            choice.popup.close();
        }

        function test_choosingAModelTellsItsName() {
            const sidebar = make(["Bir"]);
            const choice = named(sidebar, "Choice", "Groq modeli");
            choice.forceActiveFocus();
            keyClick(Qt.Key_Down);
            compare(sidebar.calls, ["model llama-3.1-8b-instant"]);
        }

        function test_aModelThatIsNotOnOfferIsShown() {
            const sidebar = make(["Bir"]);
            sidebar.selectedModel = "eski/model-1b";
            const choice = named(sidebar, "Choice", "Groq modeli");
            compare(Probe.texts(choice), "eski/model-1b");
            compare(choice.currentIndex, -1);
        }

        function test_tabReachesEveryControl() {
            const sidebar = make(["Bir"]);
            named(sidebar, "SidebarButton", "Yeni Sohbet").forceActiveFocus(Qt.TabFocusReason);
            const visited = [];
            for (let step = 0; step < 6; ++step) {
                visited.push(Probe.name(scene.Window.activeFocusItem));
                keyClick(Qt.Key_Tab);
            }
            for (const name of ["Yeni Sohbet", "Bir", "Sohbeti yeniden adlandır", "Sohbeti sil", "Groq modeli", "API Ayarları"])
                verify(visited.indexOf(name) >= 0, name + " in " + visited);
        }

        function test_tabComesBackToTheSelectedRow() {
            const sidebar = make(["Bir", "İki"]);
            const rounds = [];
            for (let round = 0; round < 2; ++round) {
                named(sidebar, "SidebarButton", "Yeni Sohbet").forceActiveFocus(Qt.TabFocusReason);
                const visited = [];
                for (let step = 0; step < 8; ++step) {
                    visited.push(Probe.name(scene.Window.activeFocusItem));
                    keyClick(Qt.Key_Tab);
                }
                rounds.push(visited);
            }
            compare(rounds[1], rounds[0]);
        }

        function test_shiftTabTakesTheWayBack() {
            const sidebar = make(["Bir", "İki"]);
            named(sidebar, "SidebarButton", "Yeni Sohbet").forceActiveFocus(Qt.TabFocusReason);
            const there = [Probe.name(scene.Window.activeFocusItem)];
            for (let step = 0; step < 7; ++step) {
                keyClick(Qt.Key_Tab);
                there.push(Probe.name(scene.Window.activeFocusItem));
            }
            compare(there[7], "API Ayarları");
            const back = ["API Ayarları"];
            for (let step = 0; step < 7; ++step) {
                keyClick(Qt.Key_Backtab, Qt.ShiftModifier);
                back.unshift(Probe.name(scene.Window.activeFocusItem));
            }
            compare(back, there);
        }
    }
}

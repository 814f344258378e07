import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 600
    height: 400

    Component {
        id: rowComponent

        ChatSessionRow {
            id: row

            property int renameRequests: 0
            property int deletions: 0
            property int choices: 0

            width: 226
            title: "Ekşi maya"
            updatedText: "dün"
            isSelected: false
            onRenameRequested: row.renameRequests++
            onDeleteRequested: row.deletions++
            onChosen: row.choices++
        }
    }

    TestCase {
        name: "ChatSessionRow"
        when: windowShown

        function make(properties) {
            return createTemporaryObject(rowComponent, scene, properties || {});
        }

        function inWindow(type, name) {
            return Probe.find(scene.Window.contentItem, type).find(item => item.visible && Probe.name(item) === name);
        }

        function test_bothTextsBeginAtTheLeft() {
            const row = make({
                    "title": "مرحبا",
                    "updatedText": "أمس"
                });
            for (const label of Probe.find(row, "PlainLabel"))
                compare(label.effectiveHorizontalAlignment, Text.AlignLeft, label.text);
        }

        function test_layout() {
            const row = make();
            const labels = Probe.find(row, "PlainLabel");
            compare(labels.map(label => label.text), ["Ekşi maya", "dün"]);
            compare(labels[1].y - labels[0].y - labels[0].height, 3);
            compare(labels[1].font.pixelSize, Theme.caption.pixelSize);
            compare(labels[1].color, Theme.secondary);
            const pencil = inWindow("IconButton", "Sohbeti yeniden adlandır");
            const bin = inWindow("IconButton", "Sohbeti sil");
            const middle = item => item.mapToItem(row, 0, item.height / 2).y;
            fuzzyCompare(middle(pencil), row.height / 2, 1);
            fuzzyCompare(middle(bin), row.height / 2, 1);
            verify(pencil.mapToItem(row, 0, 0).x < bin.mapToItem(row, 0, 0).x);
            compare([pencil.iconName, bin.iconName], ["pencil", "bin"]);
            verify(pencil.mapToItem(row, 0, 0).x - labels[0].mapToItem(row, labels[0].width, 0).x >= 8);
        }

        function test_aLongTitleIsCutToOneLine() {
            const height = make().height;
            const row = make({
                    "title": "Çok uzun bir başlık\n".repeat(8)
                });
            const label = Probe.find(row, "PlainLabel")[0];
            compare(label.lineCount, 1);
            verify(label.truncated);
            compare(row.height, height);
        }

        function test_theTitleIsNoMarkup() {
            const title = "a <b>b</b> <img src='http://127.0.0.1/x'>";
            const row = make({
                    "title": title
                });
            compare(Probe.find(row, "PlainLabel")[0].textFormat, Text.PlainText);
            compare(Probe.name(row), title);
        }

        function test_theHeightIsRightFromTheBeginning() {
            const row = make();
            const height = row.height;
            verify(height > 2 * Theme.caption.pixelSize);
            waitForRendering(row);
            compare(row.height, height);
        }

        function test_clickChooses() {
            const row = make();
            mouseClick(row, 20, 20);
            compare(row.choices, 1);
            compare(row.deletions, 0);
        }

        function test_theBinAsksNothing() {
            const row = make();
            mouseClick(inWindow("IconButton", "Sohbeti sil"));
            compare(row.deletions, 1);
            compare(row.choices, 0);
            wait(0);
            const popups = Probe.find(scene.Window.contentItem, "QQuickPopupItem").filter(item => item.visible);
            compare(popups.map(item => Probe.name(item)), []);
        }

        function test_thePencilAsksForARename() {
            const row = make();
            mouseClick(inWindow("IconButton", "Sohbeti yeniden adlandır"));
            compare(row.renameRequests, 1);
            compare(row.choices, 0);
        }

        function test_hasNoContextMenu() {
            const row = make();
            mouseClick(row, 20, 20, Qt.RightButton);
            compare(row.choices, 0);
            compare(Probe.find(scene.Window.contentItem, "TextMenu").length, 0);
        }

        function test_looks_data() {
            return [{
                    "tag": "plain",
                    "color": Qt.rgba(0, 0, 0, 0)
                }, {
                    "tag": "under the pointer",
                    "isHovered": true,
                    "color": Theme.hover
                }, {
                    "tag": "selected",
                    "isSelected": true,
                    "color": Theme.accentSoft
                }, {
                    "tag": "selected, under the pointer",
                    "isSelected": true,
                    "isHovered": true,
                    "color": Theme.accentSoft
                }];
        }

        function test_looks(data) {
            mouseMove(scene, 590, 390);
            const row = make({
                    "isSelected": data.isSelected === true
                });
            if (data.isHovered)
                mouseMove(row, 20, 20);
            tryCompare(row, "hovered", data.isHovered === true);
            compare(row.background.color, data.color);
            const bin = inWindow("IconButton", "Sohbeti sil");
            compare(bin.parent.opacity, data.isSelected || data.isHovered ? 1 : 0.45);
            compare(bin.iconColor, Theme.textSoft);
            mouseMove(bin);
            tryCompare(bin, "iconColor", Theme.danger);
        }

        function test_tellsAssistiveTechnologyItsTitleAndWhetherItIsSelected() {
            const row = make();
            verify(!Probe.states(row).includes("selected"));
            row.isSelected = true;
            verify(Probe.states(row).includes("selected"));
            compare(Probe.name(row), "Ekşi maya");
            compare(Probe.role(row), Accessible.ListItem);
            Probe.press(row);
            compare(row.choices, 1);
        }
    }
}

import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 700
    height: 600

    Component {
        id: view

        MarkdownMessageView {
            width: 600
        }
    }

    TestCase {
        name: "MarkdownTableView"
        when: windowShown

        function table(rows) {
            const item = createTemporaryObject(view, scene, {
                    "content": rows.join("\n")
                });
            tryVerify(() => Probe.find(item, "MarkdownTableView").length === 1);
            return Probe.find(item, "MarkdownTableView")[0];
        }

        function textsOf(item) {
            return Probe.find(item, "Talvo::MarkdownText");
        }

        /// The texts of each row, from above.
        function rowsOf(item) {
            const rows = new Map();
            for (const text of textsOf(item))
                rows.set(text.y, (rows.get(text.y) ?? []).concat(text));
            return Array.from(rows.values());
        }

        /// The colours around the texts: of a cell's surface, its trailing edge, its row's bottom line.
        function coloursOf(item, text) {
            const image = grabImage(item);
            const x = text.x + 2;
            const right = text.x + text.width + 8 - 1;
            const bottom = text.y + text.height + 8 - 1;
            return [image.pixel(x, text.y - 2), image.pixel(right, text.y), image.pixel(x, bottom)];
        }

        function test_theScrollBarShowsWhereTheTableStands() {
            const item = table(["| " + "uzun sütun | ".repeat(12), "|" + "---|".repeat(12)]);
            verify(item.overflows);
            const bar = Probe.find(item, "ScrollBarH")[0];
            fuzzyCompare(bar.visualSize, item.width / item.contentWidth, 0.01);
            compare(bar.visualPosition, 0);
            item.scrollBy(10000);
            fuzzyCompare(bar.visualPosition + bar.visualSize, 1, 0.01);
        }

        function test_aLinkReachedByKeyboardIsInView() {
            const cells = Array.from({
                    "length": 12
                }, (_, index) => "[bağlantı](http://x.example/" + index + ")").join(" | ");
            const item = table(["| " + cells + " |", "|" + "---|".repeat(12)]);
            const last = textsOf(item)[11];
            last.forceActiveFocus(Qt.BacktabFocusReason);
            const left = last.mapToItem(item, 0, 0).x;
            verify(left >= 0 && left + 50 < item.width, left);
        }

        function test_cellsAreBetween140And220Wide() {
            const texts = textsOf(table(["| A | " + "uzun ".repeat(20) + " |", "|---|---|"]));
            compare(texts[0].width, 140);
            compare(texts[1].width, 220);
            compare(texts[1].x, 8 + 140 + 2 * 8);
            verify(texts[1].lineCount > 1);
        }

        function test_rowsHaveExactlyTheirCells() {
            const item = table(["| A | B |", "|---|---|", "| 1 |", "| 2 | 3 | 4 |"]);
            const rows = rowsOf(item);
            compare(rows.map(row => row.length), [2, 1, 3]);
            compare(rows.map(row => row[row.length - 1].x + 140 + 8), [312, 156, 468]);
            compare(item.contentWidth, 468);
            compare(rows[0][0].y, 8);
            compare(rows[1][0].y, rows[0][0].height + 2 * 8 + 8);
            compare(item.contentHeight, rows[2][0].y + rows[2][0].height + 8);
        }

        function test_headerStandsOut() {
            const item = table(["| A |", "|---|", "| 1 |"]);
            const texts = textsOf(item);
            compare(texts[0].font.weight, Font.DemiBold);
            compare(texts[1].font.weight, Font.Normal);
            const header = coloursOf(item, texts[0]);
            const body = coloursOf(item, texts[1]);
            verify(!Qt.colorEqual(header[0], body[0]), "a surface of its own");
            for (const colours of [header, body]) {
                verify(!Qt.colorEqual(colours[1], colours[0]), "a line at the cell's edge");
                verify(!Qt.colorEqual(colours[2], colours[0]), "a line below the row");
            }
        }

        function test_linesFollowTheAppearance() {
            const item = table(["| A |", "|---|", "| 1 |"]);
            const before = coloursOf(item, textsOf(item)[1])[1];
            Probe.setDark(true);
            const after = coloursOf(item, textsOf(item)[1])[1];
            Probe.setDark(false);
            verify(!Qt.colorEqual(after, before));
        }

        function test_headerAloneIsATable() {
            const item = table(["A | B", "---"]);
            compare(rowsOf(item).length, 1);
            const text = textsOf(item)[0];
            compare(item.contentHeight, text.height + 2 * 8);
        }

        function test_scrollsSidewaysWithItsBorder() {
            const item = table(["| A | B | C | D | E |", "|---|---|---|---|---|"]);
            verify(item.overflows);
            compare(item.contentWidth, 5 * 156);
            const border = Array.from(item.contentItem.children).find(child => child.border !== undefined);
            compare(border.width, 5 * 156);
            compare(border.radius, 6);
            const before = border.mapToItem(scene, 0, 0).x;
            item.contentX = 50;
            compare(border.mapToItem(scene, 0, 0).x, before - 50);
        }

        function test_wheel() {
            const item = table(["| A | B | C | D | E |", "|---|---|---|---|---|"]);
            mouseWheel(item, 20, 10, 0, -120, Qt.NoButton, Qt.ShiftModifier);
            verify(item.contentX > 0);
            const sideways = item.contentX;
            mouseWheel(item, 20, 10, 0, -120);
            wait(50);
            compare(item.contentX, sideways, "the vertical wheel is the list's");
        }

        function test_keysScroll() {
            const item = table(["| A | B | C | D | E |", "|---|---|---|---|---|"]);
            verify(item.activeFocusOnTab);
            item.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Right);
            compare(item.contentX, 60);
            keyClick(Qt.Key_Left);
            keyClick(Qt.Key_Left);
            compare(item.contentX, 0);
        }

        function test_whatTakesTheKeyboardIsNamed() {
            const item = table(["| A | B | C | D | E |", "|---|---|---|---|---|"]);
            item.forceActiveFocus(Qt.TabFocusReason);
            verify(!item.Accessible.ignored);
            compare(Probe.name(item), "Tablo");
            verify(Probe.states(item).includes("focused"), Probe.states(item));
        }

        function test_smallTableNeitherScrollsNorTakesFocus() {
            const item = table(["| A |", "|---|"]);
            verify(!item.overflows);
            verify(!item.activeFocusOnTab);
            verify(item.Accessible.ignored, "its texts are read without it");
            compare(item.height, item.contentHeight);
        }
    }
}

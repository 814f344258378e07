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

        function rowsOf(item) {
            return Probe.find(item, "MarkdownTableRowView");
        }

        function cellsOf(row) {
            return Probe.find(row, "MarkdownTableCell");
        }

        function test_cellsAreBetween140And220Wide() {
            const item = table(["| A | " + "uzun ".repeat(20) + " |", "|---|---|"]);
            const cells = cellsOf(item);
            compare(cells[0].width, 140 + 16);
            compare(cells[1].width, 220 + 16);
            verify(Probe.find(cells[1], "MarkdownText")[0].lineCount > 1);
        }

        function test_rowsHaveExactlyTheirCells() {
            const item = table(["| A | B |", "|---|---|", "| 1 |", "| 2 | 3 | 4 |"]);
            const rows = rowsOf(item);
            compare(rows.map(row => cellsOf(row).length), [2, 1, 3]);
            compare(rows.map(row => row.width), [312, 156, 468]);
            compare(rows.map(row => row.isHeader), [true, false, false]);
            compare(item.contentWidth, 468);
            compare(rows[1].y, rows[0].height);
        }

        function test_headerStandsOut() {
            const item = table(["| A |", "|---|", "| 1 |"]);
            const cells = cellsOf(item);
            verify(Qt.colorEqual(cells[0].color, Theme.tableHead));
            compare(Probe.find(cells[0], "MarkdownText")[0].font.weight, Font.DemiBold);
            compare(cells[1].color.a, 0);
            compare(Probe.find(cells[1], "MarkdownText")[0].font.weight, Font.Normal);
        }

        function test_headerAloneIsATable() {
            const item = table(["A | B", "---"]);
            compare(rowsOf(item).length, 1);
            compare(item.contentHeight, rowsOf(item)[0].height);
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

        function test_smallTableNeitherScrollsNorTakesFocus() {
            const item = table(["| A |", "|---|"]);
            verify(!item.overflows);
            verify(!item.activeFocusOnTab);
            compare(item.height, item.contentHeight);
        }
    }
}

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
        name: "MarkdownMessageView"
        when: windowShown

        function shown(content) {
            const item = createTemporaryObject(view, scene, {
                    "content": content
                });
            if (content.trim() !== "")
                tryVerify(() => Probe.find(item, "Talvo::ReadOnlyText").length === 0);
            return item;
        }

        function editOf(item, text) {
            return Probe.find(item, "").find(edit => edit.selectedText !== undefined && Probe.name(edit) === text);
        }

        function test_readsInOrder() {
            const item = shown("# Bir\n\niki **üç**\n\n- dört\n7. beş\n\n---\n\n| A | B |\n|---|---|\n| 1 |\n| 2 | 3 | 4 |\n\nson\nsatır");
            const texts = "Bir|iki üç|•|dört|7.|beş|A|B|1|2|3|4|son\nsatır";
            tryVerify(() => Probe.texts(item) === texts, 5000, Probe.texts(item));
            for (const edit of Probe.find(item, "Talvo::MarkdownText"))
                compare(Probe.text(edit), Probe.name(edit));
        }

        function test_blankReplyStaysAsItIs() {
            const item = shown(" \n ");
            compare(Probe.find(item, "Talvo::ReadOnlyText").length, 1);
            tryVerify(() => Probe.texts(item) === " \n ");
        }

        function test_theNaturalWidthFollowsTheWidth() {
            const item = shown("kısa\n\n---");
            tryCompare(item, "naturalWidth", 600);
            item.width = 650;
            tryCompare(item, "naturalWidth", 650);
        }

        function test_headingsFromTheThirdLevelLookAlike() {
            const item = shown("# 1\n## 2\n### 3\n#### 4\n##### 5\n###### 6");
            const fonts = ["1", "2", "3", "4", "5", "6"].map(text => editOf(item, text).font);
            compare(fonts[0].pixelSize, Theme.title.pixelSize);
            compare(fonts[1].pixelSize, Theme.title2.pixelSize);
            for (let level = 2; level < 6; ++level)
                compare(fonts[level], Theme.headline);
            for (const font of fonts)
                compare(font.weight, Font.DemiBold);
        }

        function test_blocksStandTenApart() {
            const item = shown("bir\n\niki\n\n---\n\nüç");
            const blocks = Array.from(item.children).filter(child => child.height > 0);
            compare(blocks.length, 4);
            for (let i = 1; i < blocks.length; ++i)
                compare(blocks[i].y, blocks[i - 1].y + blocks[i - 1].height + 10);
            compare(item.height, blocks[3].y + blocks[3].height);
        }

        function test_itemWrapsUnderItself() {
            const item = shown("- " + "uzun ".repeat(60));
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            const sign = Probe.find(item, "QQuickText")[0];
            verify(text.lineCount > 1);
            compare(text.x, Math.ceil(sign.implicitWidth) + 8);
            compare(text.x + text.width, 600);
        }

        function test_veryLongWordsWrap() {
            const item = shown("x".repeat(2000));
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            verify(text.contentWidth <= 600);
            verify(text.lineCount > 10);
        }

        function test_heightIsKnownAtOnce() {
            const item = view.createObject(scene, {
                    "content": "# a\n\nb\n\n| A |\n|---|\n| 1 |\n"
                });
            const before = item.height;
            verify(before > 0);
            waitForRendering(item);
            compare(item.height, before);
            item.destroy();
        }

        function test_naturalWidthIsThatOfTheText() {
            const item = shown("kısa");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            tryVerify(() => item.naturalWidth === Math.ceil(text.contentWidth));
            verify(item.naturalWidth < 100);
            const arabic = shown("مرحبا");
            tryCompare(arabic, "naturalWidth", 600);
            const divided = shown("a\n\n---");
            tryCompare(divided, "naturalWidth", 600);
        }

        function test_copiesPlainTextOnly() {
            const item = shown("a **b**\u00A0c `d`\nikinci");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            text.forceActiveFocus();
            text.selectAll();
            keySequence(StandardKey.Copy);
            compare(Probe.clipboard(), "a b\u00A0c d\nikinci");
            compare(Probe.clipboardHtml(), "");
        }

        function test_menuCopies() {
            const item = shown("bir iki");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            Probe.setClipboard("");
            text.select(0, 3);
            mouseClick(text, 5, 5, Qt.RightButton);
            const entry = label => Probe.find(scene.Window.contentItem, "TextMenuItem").find(item => item.text === label);
            tryVerify(() => entry("Kopyala") !== undefined && entry("Kopyala").visible);
            tryVerify(() => entry("Tümünü Seç").y > entry("Kopyala").y, 1000, "the menu is laid out");
            verify(!entry("Kes").visible);
            verify(!entry("Yapıştır").visible);
            compare(text.selectedText, "bir", "the menu leaves the selection");
            mouseClick(entry("Kopyala"));
            compare(Probe.clipboard(), "bir");
        }

        function test_clickOpensALink() {
            const item = shown("[ab](https://example.com/x) son");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            const before = Probe.opened.length;
            mouseClick(text, 4, text.height / 2);
            compare(Probe.opened.slice(before).join(), "https://example.com/x");
            mouseClick(text, text.contentWidth - 4, text.height / 2);
            compare(Probe.opened.length, before + 1);
        }

        function test_refusedLinksAreText() {
            const item = shown("[ab](file:///etc/passwd) son");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            const before = Probe.opened.length;
            mouseClick(text, 4, text.height / 2);
            compare(Probe.opened.length, before);
            compare(text.activeFocusOnTab, false);
        }

        function test_keyboardReachesEveryLink() {
            const item = shown("[bir](https://example.com/1) ve [iki](https://example.com/2)\n\nson [üç](https://example.com/3)");
            const texts = Probe.find(item, "Talvo::MarkdownText");
            const before = Probe.opened.length;
            texts[0].forceActiveFocus(Qt.TabFocusReason);
            compare(texts[0].selectedText, "bir");
            compare(texts[0].selectionColor, Theme.link);
            compare(texts[0].selectedTextColor, Theme.window);
            keyClick(Qt.Key_Return);
            keyClick(Qt.Key_Tab);
            compare(texts[0].selectedText, "iki");
            keyClick(Qt.Key_Enter);
            keyClick(Qt.Key_Tab);
            verify(texts[1].activeFocus);
            compare(texts[0].selectedText, "");
            compare(texts[0].selectionColor, Theme.selection);
            compare(texts[0].selectedTextColor, Theme.selectedText);
            compare(texts[1].selectedText, "üç");
            keyClick(Qt.Key_Return);
            compare(Probe.opened.slice(before).join(), "https://example.com/1,https://example.com/2,https://example.com/3");
            keyClick(Qt.Key_Backtab);
            compare(texts[0].selectedText, "iki");
        }

        function test_noKeyOpensALinkThatIsNotMarked_data() {
            return [{
                    "tag": "click elsewhere",
                    "change": text => mouseClick(text, 4, text.height / 2)
                }, {
                    "tag": "all selected",
                    "change": () => keySequence(StandardKey.SelectAll)
                }];
        }

        function test_noKeyOpensALinkThatIsNotMarked(data) {
            const item = shown("Önünde yazı [bir](https://example.com/1) ardında yazı");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            const before = Probe.opened.length;
            text.forceActiveFocus(Qt.TabFocusReason);
            compare(text.selectedText, "bir");
            data.change(text);
            verify(text.selectedText !== "bir");
            keyClick(Qt.Key_Return);
            compare(Probe.opened.length, before);
            keyClick(Qt.Key_Tab);
            compare(text.selectedText, "bir");
            keyClick(Qt.Key_Return);
            compare(Probe.opened.length, before + 1);
        }

        function test_copiesWhatEntitiesEndLinesOf() {
            const text = Probe.find(shown("a &#13;&#10; bcd"), "Talvo::MarkdownText")[0];
            compare(text.source.length, text.length);
            text.select(text.length - 3, text.length);
            text.copy();
            compare(Probe.clipboard(), "bcd");
        }

        function test_aLinkIsOneStopHoweverItsTextIsMarked() {
            const item = shown("[**Qt** belgesi `x`](https://example.com/1) ve [iki](https://example.com/2)");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            text.forceActiveFocus(Qt.TabFocusReason);
            compare(text.selectedText, "Qt belgesi x");
            keyClick(Qt.Key_Tab);
            compare(text.selectedText, "iki");
        }

        function test_hoverShowsWhereALinkLeads_data() {
            return [{
                    "tag": "plain",
                    "label": "ab"
                }, {
                    "tag": "another address as its text",
                    "label": "https://banka.example/"
                }, {
                    "tag": "written from right to left",
                    "label": "\u202emoc.elpmaxe\u202c"
                }, {
                    "tag": "an isolate that is not closed",
                    "label": "\u2067ab"
                }];
        }

        function test_hoverShowsWhereALinkLeads(data) {
            const item = shown("[" + data.label + "](https://example.com/gizli) son");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            const hint = () => Probe.find(scene.Window.contentItem, "QQuickText").some(label => label.visible && label.text === "https://example.com/gizli");
            mouseMove(text, 300, text.height / 2);
            mouseMove(text, 4, text.height / 2);
            tryVerify(hint, 2000);
            mouseMove(text, 300, text.height / 2);
            tryVerify(() => !hint(), 2000);
        }

        function hintLabel(address) {
            return Probe.find(scene.Window.contentItem, "QQuickText").find(label => label.visible && label.text === address);
        }

        function test_hintStandsUnderTheLinkThatHasTheKeyboard() {
            const item = shown("Bakılacak yer: [bir](https://example.com/ilk),\nve [iki](https://example.com/ikinci-adres) son");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            text.forceActiveFocus(Qt.TabFocusReason);
            for (const address of ["https://example.com/ilk", "https://example.com/ikinci-adres"]) {
                tryVerify(() => hintLabel(address) !== undefined, 2000);
                const link = text.positionToRectangle(text.selectionStart);
                const place = hintLabel(address).mapToItem(text, 0, 0);
                fuzzyCompare(place.x, link.x + 9, 1);
                fuzzyCompare(place.y, link.y + link.height + 4 + 5, 1);
                keyClick(Qt.Key_Tab);
            }
        }

        function test_hintStandsUnderThePointer() {
            const item = shown("Bakılacak yer: [bir](https://example.com/ilk) son");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            const link = text.positionToRectangle(text.getText(0, text.length).indexOf("bir") + 1);
            mouseMove(text, 500, link.y + link.height / 2);
            mouseMove(text, link.x, link.y + link.height / 2);
            tryVerify(() => hintLabel("https://example.com/ilk") !== undefined, 2000);
            const place = hintLabel("https://example.com/ilk").mapToItem(text, 0, 0);
            fuzzyCompare(place.x, link.x + 9, 1.5);
            fuzzyCompare(place.y, link.y + link.height / 2 + 20 + 5, 1.5);
        }

        function test_linkIsInTheMiddleOfItsPlace() {
            const item = shown("[yalnız](https://example.com/orta)");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            const place = Probe.place(text);
            const before = Probe.opened.length;
            mouseClick(scene, place.x + place.width / 2, place.y + place.height / 2);
            compare(Probe.opened.slice(before).join(), "https://example.com/orta");
        }

        function test_headingTellsItsState() {
            const text = Probe.find(shown("# Baş"), "Talvo::MarkdownText")[0];
            compare(Probe.role(text), Accessible.Heading);
            compare(Probe.states(text).join(), "focusable,multiLine,readOnly,selectableText");
        }

        function test_liveTextsFollowTheAppearance() {
            const item = shown("[ab](https://example.com)");
            const text = Probe.find(item, "Talvo::MarkdownText")[0];
            compare(Probe.colorAt(text, 0), Theme.link);
            const before = "" + Theme.link;
            Probe.setDark(true);
            verify(!Qt.colorEqual(Theme.link, before));
            compare(Probe.colorAt(text, 0), Theme.link);
            Probe.setDark(false);
        }

        function test_newContentReplacesTheOld() {
            const item = shown("bir");
            item.content = "# iki\n\nüç";
            compare(Probe.texts(item), "bir", "the old blocks stay meanwhile");
            tryVerify(() => Probe.texts(item) === "iki|üç");
        }

        function isWritten(item) {
            const image = grabImage(item);
            for (let x = 0; x < 40; ++x) {
                for (let y = 0; y < item.height; ++y) {
                    if (!Qt.colorEqual(image.pixel(x, y), image.pixel(item.width - 1, 0)))
                        return true;
                }
            }
            return false;
        }

        function test_isDrawnAsAWholeOutsideOfAList() {
            const item = shown("Bir");
            verify(isWritten(item));
            item.content = "İki";
            tryVerify(() => Probe.texts(item) === "İki");
            verify(isWritten(item), "the new content, of the same height");
        }

        function test_longReplyGrowsInPortions() {
            const item = createTemporaryObject(view, scene, {
                    "content": "a\n\n".repeat(1000)
                });
            tryVerify(() => Probe.find(item, "Talvo::MarkdownText").length >= 300);
            verify(Probe.find(item, "Talvo::MarkdownText").length < 1000);
            tryVerify(() => Probe.find(item, "Talvo::MarkdownText").length === 1000);
            const texts = Probe.find(item, "Talvo::MarkdownText");
            tryVerify(() => texts[999].y > 0);
            for (let i = 1; i < texts.length; ++i)
                compare(texts[i].y, texts[i - 1].y + texts[i - 1].height + 10);
        }

        function test_mayGoBeforeItsParseEnds() {
            for (let i = 0; i < 20; ++i)
                view.createObject(scene, {
                        "content": "a\n\n".repeat(2000)
                    }).destroy();
            wait(0);
            verify(true);
        }
    }
}

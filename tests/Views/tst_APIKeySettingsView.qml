import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 760
    height: 520

    Component {
        id: fixtureComponent

        ChatFixture {
        }
    }

    Component {
        id: sheetComponent

        APIKeySettingsView {
        }
    }

    TestCase {
        name: "APIKeySettingsView"
        when: windowShown

        readonly property int accessRefused: -25293
        readonly property int itemNotFound: -25300
        property var fixture: null

        function init() {
            fixture = createTemporaryObject(fixtureComponent, scene);
        }

        function opened() {
            const sheet = createTemporaryObject(sheetComponent, scene, {
                    "keychain": fixture.keychain
                });
            sheet.open();
            tryCompare(sheet, "opened", true);
            return sheet;
        }

        function openedWith(key) {
            fixture.storeKey(key);
            const sheet = opened();
            tryCompare(field(sheet), "text", key);
            tryVerify(() => button(sheet, "Kaydet").enabled);
            return sheet;
        }

        function openedEmpty() {
            const sheet = opened();
            fixture.waitUntilAtRest();
            return sheet;
        }

        function enter(sheet, text) {
            // Assigning the text would end its binding, which typing does not.
            field(sheet).clear();
            field(sheet).insert(0, text);
        }

        function field(sheet) {
            return Probe.find(sheet.contentItem, "SecretField")[0];
        }

        function button(sheet, name) {
            return Probe.find(sheet.contentItem, "PushButton").find(item => item.text === name);
        }

        function click(sheet, name) {
            verify(button(sheet, name).enabled, name);
            mouseClick(button(sheet, name));
        }

        function icons(sheet) {
            return Probe.find(sheet.contentItem, "Talvo::Icon").filter(icon => icon.visible);
        }

        function status(sheet) {
            const label = Probe.find(sheet.contentItem, "PlainLabel").find(item => item.color === Theme.danger || item.color === Theme.success);
            return label && label.visible ? label : null;
        }

        function expectStatus(sheet, text, isError) {
            tryVerify(() => status(sheet) !== null && status(sheet).text === text);
            compare(status(sheet).color, isError ? Theme.danger : Theme.success);
            const icon = icons(sheet).find(item => item.name !== "key-fill");
            compare(icon.name, isError ? "warning" : "check-circle");
            compare(icon.color, status(sheet).color);
        }

        function test_layout() {
            const sheet = opened();
            compare(sheet.width, 480);
            const texts = Probe.texts(sheet.contentItem.parent).split("|");
            compare(texts, ["Groq API Anahtarı", "Anahtar yalnızca macOS Keychain’de saklanır."]);
            compare(Probe.find(sheet.contentItem, "PushButton").map(item => item.text), ["Anahtarı Sil", "Vazgeç", "Kaydet"]);
            compare(icons(sheet).map(icon => icon.name), ["key-fill"]);
            compare([sheet.padding, sheet.spacing], [24, 18]);
            compare(field(sheet).width, 480 - 2 * 24);
            verify(button(sheet, "Anahtarı Sil").destructive);
            verify(button(sheet, "Kaydet").prominent);
            verify(!button(sheet, "Vazgeç").prominent);
        }

        function test_theTextsStayInsideInALargeFont() {
            const sheet = opened();
            for (const label of Probe.find(sheet.contentItem, "PlainLabel").filter(label => label.visible)) {
                label.font.pixelSize = 40;
                const right = label.mapToItem(sheet.contentItem, label.contentWidth, 0).x;
                verify(right <= sheet.contentItem.width, label.text);
            }
        }

        function test_theButtonsCoverNothingInALargeFont() {
            const sheet = openedWith("gsk_deneme");
            const height = sheet.height;
            for (const item of Probe.find(sheet.contentItem, "PushButton"))
                item.font.pixelSize = 40;
            tryVerify(() => sheet.height > height);
            waitForRendering(sheet.contentItem);
            const box = name => {
                const item = button(sheet, name);
                return item.mapToItem(sheet.contentItem, 0, 0, item.width, item.height);
            };
            const bottom = box("Anahtarı Sil").bottom;
            for (const name of ["Vazgeç", "Kaydet"]) {
                verify(box(name).top >= bottom, name);
                verify(box(name).bottom <= sheet.contentItem.height, name);
            }
        }

        function test_theStatusIconIsBesideTheMiddleOfTheFirstLine_data() {
            return [9, 13, 20, 32].map(size => ({
                            "tag": size + " px",
                            "size": size
                        }));
        }

        function test_theStatusIconIsBesideTheMiddleOfTheFirstLine(data) {
            const sheet = openedWith("gsk_x");
            click(sheet, "Kaydet");
            expectStatus(sheet, "API anahtarı güvenle kaydedildi.", false);
            const label = status(sheet);
            const icon = icons(sheet).find(item => item.name !== "key-fill");
            label.font.pixelSize = data.size;
            const line = label.contentHeight / label.lineCount;
            const middle = label.mapToItem(sheet.contentItem, 0, label.topPadding + line / 2).y;
            fuzzyCompare(icon.mapToItem(sheet.contentItem, 0, icon.height / 2).y, middle, 1);
        }

        function test_theKeyIsMasked() {
            const sheet = openedWith("gsk_gizli");
            compare(field(sheet).echoMode, TextInput.Password);
            compare(field(sheet).placeholderText, "gsk_…");
            verify(field(sheet).displayText.indexOf("g") < 0);
            verify(Probe.text(field(sheet)).indexOf("gizli") < 0, "not even for assistive technology");
            verify(field(sheet).activeFocus);
        }

        function test_withoutAStoredKey() {
            const sheet = openedEmpty();
            compare(field(sheet).text, "");
            compare(status(sheet), null);
            verify(!button(sheet, "Anahtarı Sil").enabled);
            verify(!button(sheet, "Kaydet").enabled);
            verify(button(sheet, "Vazgeç").enabled);
        }

        function test_whatEnablesTheButtons_data() {
            return [{
                    "tag": "nothing",
                    "typed": "",
                    "canDelete": false,
                    "canSave": false
                }, {
                    "tag": "blanks",
                    "typed": "   ",
                    "canDelete": true,
                    "canSave": false
                }, {
                    "tag": "no-break space and tab",
                    "typed": "\u00a0\t",
                    "canDelete": true,
                    "canSave": false
                }, {
                    "tag": "a key",
                    "typed": "gsk_1",
                    "canDelete": true,
                    "canSave": true
                }];
        }

        function test_whatEnablesTheButtons(data) {
            const sheet = openedEmpty();
            enter(sheet, data.typed);
            compare(button(sheet, "Anahtarı Sil").enabled, data.canDelete);
            compare(button(sheet, "Kaydet").enabled, data.canSave);
        }

        function test_savingStoresTheTrimmedTextAndKeepsTheField() {
            const sheet = openedEmpty();
            enter(sheet, "  gsk_yeni ");
            click(sheet, "Kaydet");
            expectStatus(sheet, "API anahtarı güvenle kaydedildi.", false);
            compare(fixture.storedKey(), "gsk_yeni");
            compare(field(sheet).text, "  gsk_yeni ");
            verify(sheet.opened);
        }

        function test_theStatusIsToldWithThePanel() {
            const sheet = openedWith("gsk_eski");
            compare(Probe.description(sheet.contentItem.parent), "");
            click(sheet, "Anahtarı Sil");
            expectStatus(sheet, "API anahtarı silindi.", false);
            compare(Probe.description(sheet.contentItem.parent), "API anahtarı silindi.");
        }

        function test_savingReplacesTheStoredKey() {
            const sheet = openedWith("gsk_eski");
            enter(sheet, "gsk_yeni");
            click(sheet, "Kaydet");
            expectStatus(sheet, "API anahtarı güvenle kaydedildi.", false);
            compare(fixture.storedKey(), "gsk_yeni");
        }

        function test_aFailedSaveIsTold() {
            const sheet = openedWith("gsk_eski");
            enter(sheet, "gsk_yeni");
            fixture.failKeychain("save", accessRefused);
            click(sheet, "Kaydet");
            expectStatus(sheet, fixture.keychainFailure(accessRefused), true);
            compare(fixture.storedKey(), "gsk_eski");
            compare(field(sheet).text, "gsk_yeni");
        }

        function test_deletingEmptiesTheField() {
            const sheet = openedWith("gsk_eski");
            click(sheet, "Anahtarı Sil");
            expectStatus(sheet, "API anahtarı silindi.", false);
            compare(fixture.storedKey(), "");
            compare(field(sheet).text, "");
            verify(!button(sheet, "Anahtarı Sil").enabled);
            verify(sheet.opened);
        }

        function test_deletingWhatIsNotStoredIsNoFailure() {
            const sheet = openedEmpty();
            enter(sheet, "yazılmış");
            click(sheet, "Anahtarı Sil");
            expectStatus(sheet, "API anahtarı silindi.", false);
            compare(field(sheet).text, "");
        }

        function test_aFailedDeletionIsTold() {
            const sheet = openedWith("gsk_eski");
            fixture.failKeychain("remove", accessRefused);
            click(sheet, "Anahtarı Sil");
            expectStatus(sheet, fixture.keychainFailure(accessRefused), true);
            compare(field(sheet).text, "gsk_eski");
            compare(fixture.storedKey(), "gsk_eski");
        }

        function test_aSaveAfterAFailedLoadTurnsGreen() {
            fixture.failKeychain("read", accessRefused);
            const sheet = opened();
            expectStatus(sheet, fixture.keychainFailure(accessRefused), true);
            compare(field(sheet).text, "");
            enter(sheet, "gsk_yeni");
            click(sheet, "Kaydet");
            expectStatus(sheet, "API anahtarı güvenle kaydedildi.", false);
            compare(icons(sheet).length, 2);
        }

        function test_returnNeitherSavesNorCloses() {
            const sheet = openedEmpty();
            enter(sheet, "gsk_yeni");
            field(sheet).forceActiveFocus();
            keyClick(Qt.Key_Return);
            keyClick(Qt.Key_Enter);
            compare(fixture.storedKey(), "");
            verify(sheet.opened);
            compare(status(sheet), null);
        }

        function test_closesWithoutSaving_data() {
            return [{
                    "tag": "button"
                }, {
                    "tag": "escape",
                    "key": Qt.Key_Escape
                }];
        }

        function test_closesWithoutSaving(data) {
            const sheet = openedEmpty();
            enter(sheet, "gsk_yeni");
            if (data.key)
                keyClick(data.key);
            else
                click(sheet, "Vazgeç");
            tryCompare(sheet, "visible", false);
            compare(fixture.storedKey(), "");
        }

        function test_everyOpeningBeginsAfresh() {
            const first = openedWith("gsk_eski");
            click(first, "Anahtarı Sil");
            expectStatus(first, "API anahtarı silindi.", false);
            first.close();
            const second = openedEmpty();
            compare(status(second), null);
            compare(field(second).text, "");
        }

        function test_aSlowKeychainHoldsNothingUpAndTakesNothingAway() {
            fixture.storeKey("gsk_eski");
            fixture.holdKeychain();
            const sheet = opened();
            verify(!button(sheet, "Kaydet").enabled);
            verify(!button(sheet, "Anahtarı Sil").enabled);
            enter(sheet, "gsk_yeni");
            fixture.releaseKeychain();
            tryVerify(() => button(sheet, "Kaydet").enabled);
            compare(field(sheet).text, "gsk_yeni");
        }

        function test_tabStaysInside() {
            const sheet = openedWith("gsk_eski");
            const names = [];
            for (let step = 0; step < 4; ++step) {
                names.push(Probe.name(scene.Window.activeFocusItem));
                keyClick(Qt.Key_Tab);
            }
            compare(names, ["gsk_…", "Anahtarı Sil", "Vazgeç", "Kaydet"]);
            verify(field(sheet).activeFocus);
        }
    }
}

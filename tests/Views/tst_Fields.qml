import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 400
    height: 300

    Item {
        id: elsewhere
    }

    Component {
        id: field

        Field {
            placeholderText: "Sohbet adı"
            focus: true
        }
    }

    Component {
        id: secret

        SecretField {
            placeholderText: "gsk_…"
            focus: true
        }
    }

    TestCase {
        name: "Fields"
        when: windowShown

        function test_isNamedByItsPlaceholder_data() {
            return [{
                    "tag": "field",
                    "component": field,
                    "label": "Sohbet adı"
                }, {
                    "tag": "secret",
                    "component": secret,
                    "label": "gsk_…"
                }];
        }

        function test_isNamedByItsPlaceholder(data) {
            const item = createTemporaryObject(data.component, scene);
            compare(Probe.name(item), data.label);
            item.text = "x";
            compare(Probe.name(item), data.label);
        }

        function test_canBeWrittenByAssistiveTechnology() {
            const item = createTemporaryObject(field, scene, {
                    "text": "eski"
                });
            verify(Probe.write(item, "Yeni ad 🙂"));
            compare(item.text, "Yeni ad 🙂");
            compare(Probe.text(item), "Yeni ad 🙂");
            Probe.setValue(item, "Başka ad");
            compare(item.text, "Başka ad");
        }

        function test_lockedFieldCannotBeWrittenByAssistiveTechnology_data() {
            return [{
                    "tag": "field",
                    "component": field
                }, {
                    "tag": "secret",
                    "component": secret
                }];
        }

        function test_lockedFieldCannotBeWrittenByAssistiveTechnology(data) {
            const item = createTemporaryObject(data.component, scene, {
                    "text": "eski",
                    "enabled": false
                });
            verify(Probe.write(item, "x"), "the platform would set the value otherwise");
            compare(item.text, "eski");
            Probe.setValue(item, "x");
            compare(item.text, "eski");
            item.readOnly = true;
            item.enabled = true;
            verify(!Probe.write(item, "x"));
            Probe.setValue(item, "x");
            compare(item.text, "eski");
        }

        function test_keepsItsSecret() {
            const item = createTemporaryObject(secret, scene);
            verify(Probe.write(item, "gsk_geheim"));
            compare(item.text, "gsk_geheim");
            compare(Probe.text(item), "●●●●●●●●●●");
            item.forceActiveFocus();
            keyClick(Qt.Key_A);
            compare(item.displayText, "●●●●●●●●●●●", "also the last character, at once");
            Probe.setClipboard("vorher");
            keySequence(StandardKey.SelectAll);
            keySequence(StandardKey.Copy);
            compare(Probe.clipboard(), "vorher");
        }

        function test_noInputMethodLearnsTheSecret() {
            const item = createTemporaryObject(secret, scene);
            for (const hint of [Qt.ImhHiddenText, Qt.ImhSensitiveData, Qt.ImhNoPredictiveText, Qt.ImhNoAutoUppercase])
                verify(item.inputMethodHints & hint, hint);
        }

        function test_aMenuCopiesNoSecret() {
            const item = createTemporaryObject(secret, scene, {
                    "text": "gsk_geheim"
                });
            item.selectAll();
            mouseClick(item, 10, 10, Qt.RightButton);
            const entry = label => Probe.find(scene.Window.contentItem, "TextMenuItem").find(item => item.visible && item.text === label);
            tryVerify(() => entry("Kopyala") !== undefined);
            verify(!entry("Kes").enabled);
            verify(!entry("Kopyala").enabled);
            verify(entry("Tümünü Seç").enabled);
            keyClick(Qt.Key_Escape);
            tryVerify(() => entry("Kopyala") === undefined);
        }

        function test_theMenuIsUsedByAssistiveTechnology() {
            const item = createTemporaryObject(field, scene, {
                    "text": "bir iki"
                });
            mouseClick(item, 10, 10, Qt.RightButton);
            const entry = label => Probe.find(scene.Window.contentItem, "TextMenuItem").find(item => item.visible && item.text === label);
            tryVerify(() => entry("Tümünü Seç") !== undefined);
            compare(Probe.name(entry("Tümünü Seç")), "Tümünü Seç");
            Probe.press(entry("Tümünü Seç"));
            compare(item.selectedText, "bir iki");
            tryVerify(() => item.activeFocus);
        }

        function test_aRightClickTakesTheKeyboard() {
            const item = createTemporaryObject(field, scene, {
                    "text": "bir iki",
                    "focus": false
                });
            const menu = () => Probe.find(scene.Window.contentItem, "TextMenuItem").filter(entry => entry.visible);
            elsewhere.forceActiveFocus();
            mouseClick(item, 10, 10, Qt.RightButton);
            tryVerify(() => menu().length > 0 && !elsewhere.activeFocus);
            keyClick(Qt.Key_Escape);
            tryVerify(() => menu().length === 0);
            verify(item.activeFocus);
        }

        function test_aSlowClickSetsTheCursor() {
            const item = createTemporaryObject(field, scene, {
                    "text": "bir iki üç dört",
                    "focus": false
                });
            verify(!item.activeFocus);
            mousePress(item, 60, item.height / 2);
            wait(Application.styleHints.mousePressAndHoldInterval + 50);
            mouseRelease(item, 60, item.height / 2);
            verify(item.activeFocus);
            verify(item.cursorPosition > 3 && item.cursorPosition < item.length, item.cursorPosition);
        }

        function test_hasAMenu() {
            const item = createTemporaryObject(field, scene, {
                    "text": "bir iki"
                });
            Probe.setClipboard("üç");
            item.select(0, 3);
            mouseClick(item, 10, 10, Qt.RightButton);
            const entry = label => Probe.find(scene.Window.contentItem, "TextMenuItem").find(item => item.text === label);
            tryVerify(() => entry("Yapıştır") !== undefined && entry("Yapıştır").visible);
            verify(entry("Kes").enabled);
            verify(entry("Kopyala").enabled);
            verify(entry("Yapıştır").enabled);
            tryVerify(() => entry("Yapıştır").y > entry("Kes").y, 1000, "the menu is laid out");
            mouseClick(entry("Yapıştır"));
            compare(item.text, "üç iki");
            tryVerify(() => item.activeFocus);
        }

        function test_theMenuIsWideEnoughForALargeFont() {
            const item = createTemporaryObject(field, scene);
            mouseClick(item, 10, 10, Qt.RightButton);
            const entries = () => Probe.find(scene.Window.contentItem, "TextMenuItem").filter(entry => entry.visible);
            tryVerify(() => entries().length === 4);
            for (const entry of entries()) {
                entry.font.pixelSize = 32;
                tryVerify(() => entry.contentItem.implicitWidth <= entry.contentItem.width, 1000, entry.text);
            }
            keyClick(Qt.Key_Escape);
        }
    }
}

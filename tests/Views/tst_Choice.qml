import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 400
    height: 300

    Item {
        id: keyboardHolder
    }

    Component {
        id: choice

        Choice {
            width: 240
            label: "Groq modeli"
            model: ["a/bir", "b-iki", "c-üç"]
        }
    }

    TestCase {
        name: "Choice"
        when: windowShown

        function entries() {
            return Probe.find(scene.Window.contentItem, "ChoiceEntry").filter(entry => entry.visible);
        }

        function test_isReadable() {
            const item = createTemporaryObject(choice, scene);
            compare(Probe.name(item), "Groq modeli");
            compare(Probe.role(item), Accessible.ComboBox);
            compare(Probe.texts(item), "a/bir");
        }

        function test_itsListIsNamed() {
            const item = createTemporaryObject(choice, scene);
            mouseClick(item);
            tryCompare(item.popup, "opened", true);
            compare(Probe.name(item.popup.contentItem.parent), "Groq modeli");
            keyClick(Qt.Key_Escape);
            tryCompare(item.popup, "visible", false);
        }

        function test_theListShowsWholeTextsInALargeFont() {
            const item = createTemporaryObject(choice, scene, {
                    "font.pixelSize": 28,
                    "model": ["llama-birinci", "llama-ikinci-uzun"]
                });
            mouseClick(item);
            tryCompare(item.popup, "opened", true);
            compare(entries().length, 2);
            for (const entry of entries()) {
                entry.font.pixelSize = 28;
                verify(!entry.contentItem.truncated, entry.text);
            }
            verify(item.popup.width > item.width);
            keyClick(Qt.Key_Escape);
            tryCompare(item.popup, "visible", false);
        }

        function test_isChosenByMouse() {
            const item = createTemporaryObject(choice, scene);
            mouseClick(item);
            tryVerify(() => entries().length === 3);
            compare(entries().map(entry => Probe.name(entry)), ["a/bir", "b-iki", "c-üç"]);
            compare(entries().map(entry => entry.chosen), [true, false, false]);
            tryCompare(item.popup, "opened", true);
            mouseClick(entries()[2]);
            compare(item.currentIndex, 2);
            compare(Probe.texts(item), "c-üç");
            tryCompare(item.popup, "visible", false);
        }

        function test_isChosenByKeyboard() {
            const item = createTemporaryObject(choice, scene);
            item.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            tryCompare(item.popup, "opened", true);
            keyClick(Qt.Key_Down);
            keyClick(Qt.Key_Return);
            compare(item.currentIndex, 1);
            tryCompare(item.popup, "visible", false);
            keyClick(Qt.Key_Space);
            tryCompare(item.popup, "opened", true);
            keyClick(Qt.Key_Escape);
            tryCompare(item.popup, "visible", false);
            compare(item.currentIndex, 1);
        }

        function test_controlReturnIsSomebodyElses() {
            const item = createTemporaryObject(choice, scene);
            item.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            keyClick(Qt.Key_Enter, Qt.ControlModifier);
            verify(!item.popup.visible);
        }

        function test_theListMarksWhatIsChosenAndWhatWouldBe() {
            const item = createTemporaryObject(choice, scene, {
                    "currentIndex": 1
                });
            item.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return);
            tryCompare(item.popup, "opened", true);
            keyClick(Qt.Key_Down);
            compare(entries().map(entry => Probe.find(entry, "Talvo::Icon")[0].visible), [false, true, false]);
            compare(entries().map(entry => Probe.states(entry).includes("selected")), [false, true, false]);
            const plain = Qt.rgba(0, 0, 0, 0);
            compare(entries().map(entry => entry.background.color), [plain, plain, Theme.accent]);
            compare(entries().map(entry => entry.contentItem.color), [Theme.text, Theme.text, Theme.accentText]);
            keyClick(Qt.Key_Escape);
            tryCompare(item.popup, "visible", false);
        }

        function test_theMouseLeavesTheKeyboardWhereItWas() {
            const item = createTemporaryObject(choice, scene);
            keyboardHolder.forceActiveFocus();
            mouseClick(item);
            tryCompare(item.popup, "opened", true);
            keyClick(Qt.Key_Down);
            compare(item.highlightedIndex, 1, "an open list has the keyboard");
            mouseClick(entries()[2]);
            tryCompare(item.popup, "visible", false);
            compare(item.currentIndex, 2);
            verify(keyboardHolder.activeFocus);
            mouseClick(item);
            tryCompare(item.popup, "opened", true);
            keyClick(Qt.Key_Escape);
            tryCompare(item.popup, "visible", false);
            verify(keyboardHolder.activeFocus);
        }

        function test_theKeyboardStaysWithWhatItOpened() {
            const item = createTemporaryObject(choice, scene);
            item.forceActiveFocus(Qt.TabFocusReason);
            verify(item.visualFocus);
            keyClick(Qt.Key_Space);
            tryCompare(item.popup, "opened", true);
            keyClick(Qt.Key_Escape);
            tryCompare(item.popup, "visible", false);
            verify(item.activeFocus);
            verify(item.visualFocus);
        }

        function test_isChosenByAssistiveTechnology() {
            const item = createTemporaryObject(choice, scene);
            Probe.press(item);
            tryVerify(() => entries().length === 3);
            Probe.press(entries()[1]);
            compare(item.currentIndex, 1);
        }
    }
}

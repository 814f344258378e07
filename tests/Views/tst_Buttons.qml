import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 400
    height: 300

    Component {
        id: pushButton

        PushButton {
            text: "<b>Kaydet</b>"
        }
    }

    Component {
        id: iconButton

        IconButton {
            iconName: "bin"
            label: "Sohbeti sil"
        }
    }

    Component {
        id: sidebarButton

        SidebarButton {
            iconName: "key"
            text: "API Ayarları"
            width: 200
        }
    }

    TestCase {
        name: "Buttons"
        when: windowShown

        SignalSpy {
            id: clicks

            signalName: "clicked"
        }

        function make(component) {
            const button = createTemporaryObject(component, scene);
            clicks.target = button;
            clicks.clear();
            return button;
        }

        function all() {
            return [{
                    "tag": "push",
                    "component": pushButton,
                    "label": "<b>Kaydet</b>"
                }, {
                    "tag": "icon",
                    "component": iconButton,
                    "label": "Sohbeti sil"
                }, {
                    "tag": "sidebar",
                    "component": sidebarButton,
                    "label": "API Ayarları"
                }];
        }

        function test_controlReturnIsSomebodyElses_data() {
            return all();
        }

        function test_controlReturnIsSomebodyElses(data) {
            const button = make(data.component);
            button.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Return, Qt.ControlModifier);
            keyClick(Qt.Key_Enter, Qt.ControlModifier);
            compare(clicks.count, 0);
            keyClick(Qt.Key_Return);
            compare(clicks.count, 1);
        }

        function test_isNamedByItsText_data() {
            return all();
        }

        function test_isNamedByItsText(data) {
            const button = make(data.component);
            compare(Probe.name(button), data.label);
            compare(Probe.role(button), Accessible.Button);
        }

        function test_reactsOncePerWay_data() {
            return all();
        }

        function test_reactsOncePerWay(data) {
            const button = make(data.component);
            mouseClick(button);
            compare(clicks.count, 1);
            button.forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            compare(clicks.count, 2);
            keyClick(Qt.Key_Return);
            compare(clicks.count, 3);
            keyClick(Qt.Key_Enter);
            compare(clicks.count, 4);
            Probe.press(button);
            compare(clicks.count, 5);
        }

        function test_ignoresEverythingWhileDisabled_data() {
            return all();
        }

        function test_ignoresEverythingWhileDisabled(data) {
            const button = make(data.component);
            button.forceActiveFocus(Qt.TabFocusReason);
            button.enabled = false;
            mouseClick(button);
            keyClick(Qt.Key_Space);
            keyClick(Qt.Key_Return);
            Probe.press(button);
            compare(clicks.count, 0);
        }

        function test_showsThatTheTabKeyReachedIt_data() {
            return all();
        }

        function test_showsThatTheTabKeyReachedIt(data) {
            const button = make(data.component);
            const ring = Probe.find(button, "FocusRing")[0];
            verify(!ring.visible);
            button.forceActiveFocus(Qt.TabFocusReason);
            verify(ring.visible);
            button.focus = false;
            verify(!ring.visible);
        }

        function test_aPushButtonWithTheFocusOfAPointerMarksNothing() {
            const button = make(pushButton);
            button.forceActiveFocus(Qt.MouseFocusReason);
            verify(button.activeFocus);
            verify(!Probe.find(button, "FocusRing")[0].visible);
        }

        function test_aClickMarksNothing_data() {
            return all();
        }

        function test_aClickMarksNothing(data) {
            const button = make(data.component);
            mouseClick(button);
            verify(!Probe.find(button, "FocusRing")[0].visible);
        }

        function test_textIsNotMarkup() {
            const button = make(pushButton);
            const text = Probe.find(button, "QQuickText")[0];
            compare(text.textFormat, Text.PlainText);
        }

        function test_hintAppearsAndLeaves() {
            const button = make(iconButton);
            button.x = 100;
            button.y = 100;
            mouseMove(button, 10, 10);
            tryVerify(() => Probe.find(scene.Window.contentItem, "QQuickText").some(text => text.text === "Sohbeti sil" && text.visible), 2000);
            mouseMove(scene, 390, 290);
            tryVerify(() => !Probe.find(scene.Window.contentItem, "QQuickText").some(text => text.text === "Sohbeti sil" && text.visible), 2000);
        }
    }
}

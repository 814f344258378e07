import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 760
    height: 520

    Component {
        id: alertComponent

        ErrorAlert {
        }
    }

    TestCase {
        name: "ErrorAlert"
        when: windowShown

        function opened(message) {
            const alert = createTemporaryObject(alertComponent, scene, {
                    "message": message
                });
            alert.open();
            tryCompare(alert, "opened", true);
            return alert;
        }

        function label(alert) {
            return Probe.find(alert.contentItem, "PlainLabel")[0];
        }

        function test_saysWhatIsWrong() {
            const alert = opened("Sunucu <b>yok</b>.");
            compare(Probe.name(alert.contentItem.parent), "Bir sorun oluştu");
            compare(Probe.role(alert.contentItem.parent), Accessible.Dialog);
            compare(label(alert).text, "Sunucu <b>yok</b>.");
            compare(label(alert).textFormat, Text.PlainText);
            compare(Probe.description(alert.contentItem.parent), "Sunucu <b>yok</b>.");
            compare(Probe.texts(alert.contentItem.parent), "Bir sorun oluştu|Sunucu <b>yok</b>.");
        }

        function test_cutsOffAMessageBeyondAllMeasure() {
            const alert = opened("x".repeat(10000));
            compare(label(alert).text.length, 10000);
            alert.message = "y".repeat(10001);
            compare(label(alert).text, "y".repeat(10000) + "…");
            alert.message = "z" + "😀".repeat(5000);
            compare(label(alert).text, "z" + "😀".repeat(4999) + "…", "no half of a pair");
        }

        function test_hasOneButtonWhichHasTheFocus() {
            const alert = opened("x");
            const buttons = Probe.find(alert.contentItem, "PushButton");
            compare(buttons.map(button => button.text), ["Tamam"]);
            verify(buttons[0].activeFocus);
        }

        function test_isDismissed_data() {
            return [{
                    "tag": "button"
                }, {
                    "tag": "escape",
                    "key": Qt.Key_Escape
                }, {
                    "tag": "return",
                    "key": Qt.Key_Return
                }, {
                    "tag": "enter",
                    "key": Qt.Key_Enter
                }, {
                    "tag": "space",
                    "key": Qt.Key_Space
                }];
        }

        function test_isDismissed(data) {
            const alert = opened("x");
            if (data.key)
                keyClick(data.key);
            else
                mouseClick(Probe.find(alert.contentItem, "PushButton")[0]);
            tryCompare(alert, "visible", false);
        }

        function test_aSecondMessageReplacesTheFirst() {
            const alert = opened("Birinci");
            alert.message = "İkinci";
            compare(label(alert).text, "İkinci");
            compare(Probe.description(alert.contentItem.parent), "İkinci");
        }

        function test_theTextStaysWhileTheAlertFadesOut() {
            const alert = opened("Birinci");
            alert.message = null;
            compare(label(alert).text, "Birinci");
        }

        function test_anEmptySecondMessageReplacesTheFirst() {
            const alert = opened("Birinci");
            alert.message = "";
            compare(label(alert).text, "");
        }

        function test_aLongMessageIsScrolledByKeys() {
            const alert = opened("Uzun bir açıklama. ".repeat(400));
            const view = Probe.find(alert.contentItem, "QQuickFlickable")[0];
            const end = view.contentHeight - view.height;
            verify(end > view.height);
            keyClick(Qt.Key_Down);
            compare(view.contentY, 40);
            keyClick(Qt.Key_Up);
            keyClick(Qt.Key_Up);
            compare(view.contentY, 0);
            keyClick(Qt.Key_PageDown);
            compare(view.contentY, view.height - 40, "what the edge cut through is whole now");
            for (let page = 0; page < 20; ++page)
                keyClick(Qt.Key_PageDown);
            compare(view.contentY, end);
            keyClick(Qt.Key_PageUp);
            compare(view.contentY, end - (view.height - 40));
            keyClick(Qt.Key_Home);
            compare(view.contentY, 0);
            keyClick(Qt.Key_End);
            compare(view.contentY, end);
        }

        function test_anEmptyMessageIsShownAsOne() {
            const alert = opened("");
            compare(label(alert).text, "");
            verify(alert.opened);
        }

        function test_aLongMessageIsScrolledInsideTheWindow() {
            const alert = opened("Uzun bir açıklama. ".repeat(400));
            verify(alert.height <= scene.height);
            const button = Probe.find(alert.contentItem, "PushButton")[0];
            verify(button.mapToItem(scene, 0, button.height).y < scene.height);
            const flickable = label(alert).parent.parent;
            verify(flickable.contentHeight > flickable.height);
            verify(label(alert).width <= flickable.width - 12, "clear of the scroll bar");
        }
    }
}

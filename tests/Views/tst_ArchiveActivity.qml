import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

Item {
    id: scene

    width: 400
    height: 300

    Component {
        id: sign

        ArchiveActivity {
        }
    }

    TestCase {
        name: "ArchiveActivity"
        when: windowShown

        function test_saysWhatTakesLong_data() {
            return [{
                    "tag": "load",
                    "what": "isLoading",
                    "text": "Sohbetler yükleniyor…"
                }, {
                    "tag": "save",
                    "what": "isSaving",
                    "text": "Kaydediliyor…"
                }];
        }

        function test_saysWhatTakesLong(data) {
            const item = createTemporaryObject(sign, scene);
            verify(!item.visible);
            item[data.what] = true;
            verify(!item.visible, "nothing flashes up for what is done at once");
            tryVerify(() => item.visible);
            compare(Probe.name(item), data.text);
            item[data.what] = false;
            verify(!item.visible);
        }

        function test_keepsSilentAboutWhatEndsAtOnce() {
            const item = createTemporaryObject(sign, scene);
            item.isSaving = true;
            item.isSaving = false;
            wait(1200);
            verify(!item.visible);
        }
    }
}

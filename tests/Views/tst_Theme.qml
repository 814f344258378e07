import QtQuick
import QtTest
import Talvo.Tests
import Talvo.Views

TestCase {
    name: "Theme"

    function cleanup() {
        Probe.setDark(false);
    }

    function test_contrast_data() {
        return [{
                "tag": "light",
                "dark": false
            }, {
                "tag": "dark",
                "dark": true
            }];
    }

    function contrast(top, bottom) {
        return Theme.desktop.contrastRatio(top, bottom);
    }

    function test_contrast(data) {
        Probe.setDark(data.dark);
        compare(Theme.dark, data.dark);
        const over = (top, bottom) => Theme.desktop.blended(top, bottom);
        const bubble = over(Theme.bubbleBot, Theme.window);
        const head = over(Theme.tableHead, bubble);
        const code = over(Theme.codeBg, bubble);
        const selectedRow = over(Theme.accentSoft, Theme.sidebar);
        const hoveredRow = over(Theme.hover, Theme.sidebar);
        const texts = [["text", Theme.text, [Theme.window, Theme.sidebar, Theme.raised, Theme.field, bubble, head, code, selectedRow, Theme.selection]], ["textSoft", Theme.textSoft, [Theme.window, Theme.sidebar, Theme.raised, Theme.field, bubble, selectedRow, hoveredRow]], ["textFaint", Theme.textFaint, [Theme.window, Theme.raised, Theme.field]], ["link", Theme.link, [Theme.window, bubble, code]], ["danger", Theme.danger, [Theme.window, Theme.raised]], ["success", Theme.success, [Theme.window, Theme.raised]], ["accentText", Theme.accentText, [Theme.accent, Theme.bubbleUser]]];
        for (const [name, color, surfaces] of texts)
            for (const surface of surfaces)
                verify(contrast(color, surface) >= 4.5, name + " on " + surface + ": " + contrast(color, surface).toFixed(2));
        const edges = [["fieldEdge", Theme.fieldEdge, [Theme.field, Theme.window, Theme.raised, Theme.sidebar]], ["focus", Theme.focus, [Theme.window, Theme.sidebar, Theme.raised]], ["accent", Theme.accent, [Theme.window, Theme.sidebar]], ["avatarBot", "#ffffff", [Theme.avatarBot, Theme.avatarUser]]];
        for (const [name, color, surfaces] of edges)
            for (const surface of surfaces)
                verify(contrast(color, surface) >= 3, name + " on " + surface + ": " + contrast(color, surface).toFixed(2));
    }

    function test_fonts() {
        compare(Theme.title.pixelSize, Math.round(Theme.body.pixelSize * 22 / 13));
        compare(Theme.title2.pixelSize, Math.round(Theme.body.pixelSize * 17 / 13));
        compare(Theme.headline.pixelSize, Theme.body.pixelSize);
        compare(Theme.caption.pixelSize, Math.round(Theme.body.pixelSize * 10 / 13));
    }
}

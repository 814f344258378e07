import QtQuick
import Talvo.Views

/// Makes the tooltip of `target` when it is first wanted: most items never need theirs.
Loader {
    id: loader

    required property Item target
    required property string text
    property bool wanted: false

    visible: false
    onWantedChanged: {
        if (loader.wanted && loader.text !== "" && loader.status === Loader.Null)
            loader.setSource("Hint.qml", {
                    "parent": loader.target
                });
        if (loader.item)
            (loader.item as Hint).show(loader.wanted ? loader.text : "");
    }
}

import QtQuick

Window {
    width: 980
    height: 700
    visible: true
}

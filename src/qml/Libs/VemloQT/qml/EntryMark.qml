import QtQuick 2.15

// Drawn beside the name of a folder's entry: a folder or a sheet of paper.
Item {
    id: mark

    property string kind: "" // "folder" or "file"; nothing is drawn for any other
    property color folderColor: "#FFF0A830"
    property color lineColor: "#FF5A4A2A"
    readonly property int lineWidth: Math.max(1, width / 48)

    width: 13
    height: 16

    Rectangle {
        id: tab
        y: mark.height * 0.1
        width: mark.width * 0.45
        height: mark.height * 0.2
        visible: mark.kind === "folder"
        color: mark.folderColor
        border.color: mark.lineColor
        border.width: mark.lineWidth
    }

    Rectangle {
        anchors.top: tab.bottom
        anchors.topMargin: -mark.lineWidth
        width: mark.width
        height: mark.height * 0.65
        visible: mark.kind === "folder"
        color: mark.folderColor
        border.color: mark.lineColor
        border.width: mark.lineWidth
    }

    Rectangle {
        anchors.centerIn: parent
        width: mark.width * 0.75
        height: mark.height
        visible: mark.kind === "file"
        color: "white"
        border.color: mark.lineColor

        Column {
            anchors.centerIn: parent
            spacing: 2

            Repeater {
                model: 3

                Rectangle {
                    width: mark.width * 0.4
                    height: 1
                    color: mark.lineColor
                }
            }
        }
    }
}

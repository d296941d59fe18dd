import QtQuick 2.15
import MyLibrary 2.0

// What the file dialog shows of the folder that it browses.
Item {
    id: content

    property FileHelper dialog

    Rectangle {
        anchors.fill: parent
        anchors.margins: 4
        radius: 22
        color: "#7a7b7a"
    }

    // Nothing behind the dialog takes touches while it is open.
    MouseArea { anchors.fill: parent }

    Widget_ScrollList {
        id: list
        x: 20
        y: 20
        width: parent.width - 140
        height: parent.height - 34
        color: "transparent"
        listTitle: content.dialog.title
        listText: content.dialog.folderEntries
        currentListIndex: -1

        Connections {
            target: content.dialog
            function onSelectionCleared() { list.currentListIndex = -1; }
        }

        onClicked: {
            content.dialog.enterFolder(currentListText);
            if (!content.dialog.isFile)
                content.dialog.selectionCleared();
        }
    }

    Column {
        anchors.right: parent.right
        anchors.rightMargin: 10
        y: list.y

        Widget_Vemlo_Button2 {
            shortButton: true
            enabled: !content.dialog.disableChangingDirectory
            source: "file:///" + MERIVON_LOCATION_PICTURES_UI + "back.png"
            onClicked: {
                content.dialog.leaveFolder();
                content.dialog.selectionCleared();
            }
        }

        Widget_Vemlo_Button2 {
            shortButton: true
            enabled: !content.dialog.disableChangingDirectory
            text: qsTr("Home")
            onClicked: {
                content.dialog.setOriginalPath();
                content.dialog.selectionCleared();
            }
        }

        Widget_Vemlo_Button2 {
            shortButton: true
            enabled: content.dialog.isFile
            text: content.dialog.chooseButtonName
            onClicked: content.dialog.choose()
        }
    }

    Widget_Vemlo_Button2 {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 10
        shortButton: true
        text: qsTr("Close")
        onClicked: content.dialog.visible = false
    }
}

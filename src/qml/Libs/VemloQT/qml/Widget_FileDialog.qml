import QtQuick 2.15
import MyLibrary 2.0

// Lets one walk through folders and choose a file; the browser item itself is the dialog.
FileHelper {
    id: fileDialog

    property string title: currentPath
    property alias chooseButtonName: chooseButton.text

    function clearSelection() { list.currentListIndex = -1; }

    anchors.fill: parent
    visible: false
    onVisibleChanged: clearSelection()

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
        listTitle: fileDialog.title
        listText: fileDialog.folderEntries
        currentListIndex: -1
        onClicked: {
            fileDialog.enterFolder(currentListText);
            if (!fileDialog.isFile)
                fileDialog.clearSelection();
        }
    }

    Column {
        anchors.right: parent.right
        anchors.rightMargin: 10
        y: list.y

        Widget_Vemlo_Button2 {
            shortButton: true
            enabled: !fileDialog.disableChangingDirectory
            source: "file:///" + MERIVON_LOCATION_PICTURES_UI + "back.png"
            onClicked: {
                fileDialog.leaveFolder();
                fileDialog.clearSelection();
            }
        }

        Widget_Vemlo_Button2 {
            shortButton: true
            enabled: !fileDialog.disableChangingDirectory
            text: qsTr("Home")
            onClicked: {
                fileDialog.setOriginalPath();
                fileDialog.clearSelection();
            }
        }

        Widget_Vemlo_Button2 {
            id: chooseButton
            shortButton: true
            enabled: fileDialog.isFile
            text: qsTr("Choose")
            onClicked: fileDialog.choose()
        }
    }

    Widget_Vemlo_Button2 {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 10
        shortButton: true
        text: qsTr("Close")
        onClicked: fileDialog.visible = false
    }
}

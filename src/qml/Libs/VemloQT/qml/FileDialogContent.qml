import QtQuick 2.15
import MyLibrary 2.0

// What the file dialog shows of the folder that it browses.
Item {
    id: content

    property FileHelper dialog

    // Of an entry of the folder in sight. Asked for the rows in sight only: a folder can hold
    // thousands, on a medium that takes its time. A browser that cannot tell gets no marks.
    function kindOf(name) {
        if (typeof dialog.isDir !== "function")
            return "";
        return dialog.isDir(dialog.currentPath + "/" + name) ? "folder" : "file";
    }

    function enter(name) {
        dialog.enterFolder(name);
        if (!dialog.isFile)
            dialog.selectionCleared();
    }

    function goBack() {
        dialog.leaveFolder();
        dialog.selectionCleared();
    }

    function goHome() {
        dialog.setOriginalPath();
        dialog.selectionCleared();
    }

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
        listItemHeight: 50 // it is touched with gloves
        listTitle: content.dialog.title
        listText: content.dialog.folderEntries
        kindOf: content.kindOf
        currentListIndex: -1

        // An empty folder has nothing to say, but is not to look like one that is still read.
        EntryMark {
            anchors.centerIn: parent
            width: 96
            height: 96
            kind: "folder"
            folderColor: "transparent"
            lineColor: "#FFDDDDDD"
            visible: list.listText.length === 0
        }

        Connections {
            target: content.dialog
            function onSelectionCleared() { list.currentListIndex = -1; }
        }

        onClicked: content.dialog.hold(function() { content.enter(currentListText); })
    }

    LabelSize {
        id: labelSize
        texts: [homeButton.text, chooseButton.text, closeButton.text]
        room: homeButton.labelWidth
        lineRoom: homeButton.labelHeight
    }

    Column {
        anchors.right: parent.right
        anchors.rightMargin: 10
        y: list.y

        Widget_Vemlo_Button2 {
            shortButton: true
            enabled: !content.dialog.disableChangingDirectory
            source: "file:///" + MERIVON_LOCATION_PICTURES_UI + "back.png"
            onClicked: content.dialog.hold(content.goBack)
        }

        Widget_Vemlo_Button2 {
            id: homeButton
            shortButton: true
            enabled: !content.dialog.disableChangingDirectory
            txtBtnObjPointSize: labelSize.pointSize
            text: qsTr("Home")
            onClicked: content.dialog.hold(content.goHome)
        }

        Widget_Vemlo_Button2 {
            id: chooseButton
            shortButton: true
            enabled: content.dialog.isFile
            txtBtnObjPointSize: labelSize.pointSize
            text: content.dialog.chooseButtonName
            onClicked: content.dialog.hold(content.dialog.choose)
        }
    }

    Widget_Vemlo_Button2 {
        id: closeButton
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 10
        shortButton: true
        txtBtnObjPointSize: labelSize.pointSize
        text: qsTr("Close")
        onClicked: content.dialog.visible = false
    }
}

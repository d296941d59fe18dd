import QtQuick 2.15

// What a message shows: its words, and while work is done the busy bar with what it is done on.
Item {
    id: content

    property Item popUp: null
    readonly property real wordsHeight: words.height

    // Keeps texts apart from the screen that shines through.
    component Backing: Rectangle {
        property Item around: null

        anchors.centerIn: around
        width: around.width + 10
        height: around.height + 10
        visible: around.visible
        radius: 10
        color: "black"
    }

    Backing { around: words }
    Backing { around: notes }

    Column {
        id: words
        anchors.centerIn: parent

        Text {
            id: messageText
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, content.popUp.width - 60)
            text: content.popUp.message
            textFormat: Text.PlainText
            color: "white"
            font.pointSize: 14
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            maximumLineCount: Math.max(1, Math.floor((content.popUp.parent.height - 140) / metrics.lineSpacing))
            elide: Text.ElideRight

            FontMetrics {
                id: metrics
                font: messageText.font
            }
        }

        PopUpNote {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, content.popUp.width - 60)
            visible: text !== ""
            text: content.popUp.detail
        }
    }

    BusyBar {
        id: busyBar
        anchors.top: words.bottom
        anchors.topMargin: 20
        anchors.horizontalCenter: parent.horizontalCenter
        visible: content.popUp.loading
    }

    Column {
        id: notes
        anchors.top: busyBar.bottom
        anchors.topMargin: 12
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 4
        visible: busyBar.visible

        PopUpNote {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(implicitWidth, content.popUp.width - 60)
            text: content.popUp.busyName
        }

        PopUpNote {
            anchors.horizontalCenter: parent.horizontalCenter
            text: content.popUp.busyTime
        }
    }

    Rectangle {
        anchors.top: parent.top
        anchors.right: parent.right
        anchors.margins: 10
        width: 30
        height: 30
        radius: 5
        color: "red"
        opacity: 0.62
        visible: content.popUp.closable

        Text {
            anchors.centerIn: parent
            color: "white"
            font.pixelSize: 18
            text: "X"
        }

        MouseArea {
            anchors.fill: parent
            anchors.margins: -10 // it is touched with gloves
            onClicked: content.popUp.close()
        }
    }
}

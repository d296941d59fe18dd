import QtQuick 2.15

// Steps a scroll wheel by one entry.
Rectangle {
    id: button

    property alias sign: signText.text

    signal stepped

    anchors.horizontalCenter: parent.horizontalCenter
    width: 70
    height: 25
    radius: 3

    Text {
        id: signText
        anchors.centerIn: parent
        color: "#FF333333"
        font.pixelSize: 20
        font.bold: true
    }

    Rectangle {
        anchors.fill: parent
        radius: button.radius
        color: "#5500aeef"
        visible: mouse.pressed
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        onClicked: button.stepped()
    }
}

import QtQuick 2.15

// Steps a scroll wheel by one entry, and by more as long as it is held.
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

        property bool held: false

        // Larger than what is drawn: it is touched with gloves.
        anchors.fill: parent
        anchors.margins: -13
        pressAndHoldInterval: 500
        onPressed: held = false
        onPressAndHold: held = true
        onClicked: button.stepped()
    }

    Timer {
        interval: 200
        repeat: true
        triggeredOnStart: true
        running: mouse.pressed && mouse.held
        onTriggered: button.stepped()
    }
}

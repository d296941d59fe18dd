import QtQuick 2.15

// One row of a scroll list.
Rectangle {
    id: row

    property alias text: label.text
    property bool selected: false
    property alias kind: mark.kind

    signal clicked

    gradient: mouse.pressed ? pressedGradient : selected ? selectedGradient : plainGradient

    Gradient {
        id: pressedGradient
        GradientStop { position: 0.0; color: "#5500aeef" }
        GradientStop { position: 1.0; color: "#ff007ebf" }
    }

    Gradient {
        id: selectedGradient
        GradientStop { position: 0.0; color: "#5500aeef" }
        GradientStop { position: 1.0; color: "#ff00aeef" }
    }

    Gradient {
        id: plainGradient
        GradientStop { position: 0.0; color: "white" }
        GradientStop { position: 1.0; color: "#CCCCCC" }
    }

    EntryMark {
        id: mark
        x: 4
        anchors.verticalCenter: parent.verticalCenter
    }

    NameText {
        id: label
        anchors.fill: parent
        anchors.leftMargin: 20
        anchors.rightMargin: 14 // clear of the scroll mark
        color: "black"
        pointSize: 11
        verticalAlignment: Text.AlignVCenter
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 2
        color: "#ff777777"
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        onClicked: row.clicked()
    }
}

import QtQuick 2.15

// Shows at the right edge which part of a flickable's content is in sight; nothing when all is.
Rectangle {
    property Flickable flickable: null

    anchors.right: parent.right
    anchors.rightMargin: 2
    y: flickable.y + flickable.visibleArea.yPosition * flickable.height
    width: 4
    height: flickable.visibleArea.heightRatio * flickable.height
    radius: 2
    color: "#B0E6E7E8"
    visible: flickable.visibleArea.heightRatio < 1
}

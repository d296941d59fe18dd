import QtQuick 2.15

// Shows at the right edge which part of a flickable's content is in sight; nothing when all is.
// A track of its own keeps the mark apart from whatever scrolls below, light or dark.
Rectangle {
    id: track

    property Flickable flickable: null
    // Of the content, 0 to 1: how much is out of sight, and of that, how much is above.
    readonly property real hidden: 1 - flickable.visibleArea.heightRatio
    readonly property real scrolled: hidden > 0 ? flickable.visibleArea.yPosition / hidden : 0

    anchors.right: parent.right
    anchors.rightMargin: 1
    y: flickable.y + 6
    width: 7
    height: flickable.height - 12
    radius: 3.5
    color: "#FF252525"
    visible: hidden > 0

    Rectangle {
        x: 1
        y: track.scrolled * (track.height - height)
        // Not shorter than one can see in a list of thousands.
        height: Math.max(25, (1 - track.hidden) * track.height)
        width: 5
        radius: 2.5
        color: "orange"
    }
}

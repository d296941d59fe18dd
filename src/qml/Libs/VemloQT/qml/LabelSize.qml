import QtQuick 2.15

// The size that labels share where they stand side by side: the largest at which each of them fits.
Item {
    id: labelSize

    property var texts: []
    // That each has, in pixels: the width, and the height where labels are wrapped.
    property real room: 0
    property real lineRoom: 0
    property bool wrapped: true
    property bool bold: true
    property int largest: 10 // points
    property int pointSize: 10 // found here, for the labels to take

    function update() {
        var smallest = largest;
        for (var i = 0; i < labels.count; ++i) {
            if (labels.itemAt(i))
                smallest = Math.min(smallest, Math.round(labels.itemAt(i).fontInfo.pointSize));
        }
        pointSize = smallest;
    }

    visible: false
    Component.onCompleted: update()

    Repeater {
        id: labels
        model: labelSize.texts

        Text {
            width: labelSize.room
            height: labelSize.wrapped ? labelSize.lineRoom : implicitHeight
            text: modelData
            textFormat: Text.PlainText
            font.pointSize: labelSize.largest
            font.bold: labelSize.bold
            fontSizeMode: labelSize.wrapped ? Text.Fit : Text.HorizontalFit
            minimumPointSize: 6
            wrapMode: labelSize.wrapped ? Text.WordWrap : Text.NoWrap
            onFontInfoChanged: labelSize.update()
        }
    }
}

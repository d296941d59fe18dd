import QtQuick 2.15
import "../js/style.js" as VEMLO_STYLES

// What every button of the library looks like; it takes its size from the button around it and
// leaves presses to it.
Item {
    id: look

    property string label: ""
    property bool showLabel: true
    property color labelColor: "#FF333333"
    property int labelPointSize: 10
    property bool labelBold: true
    property int labelVerticalAlignment: Text.AlignVCenter
    property int labelWrapMode: Text.WordWrap

    property url image: ""
    property bool showImage: false
    property int imageFillMode: Image.PreserveAspectFit // not to distort other proportions

    property bool showFace: true
    property color faceColor: "transparent"
    property bool showGradient: true
    property real faceOpacity: 1

    property color selectColor: "#00AEEF"
    property bool framed: false
    property bool pressed: false
    property real pressedOpacity: 0.35
    property bool rounded: false
    readonly property real corner: rounded ? width / 2 : VEMLO_STYLES.BUTTON_RADIUS

    property int faceWidth: width - 18
    property int faceHeight: height - 18
    property int labelWidth: faceWidth - 4
    property int labelHeight: faceHeight - 4
    readonly property int pictureExtent: Math.max(faceWidth, faceHeight)

    Rectangle {
        id: face
        anchors.centerIn: parent
        width: look.faceWidth
        height: look.faceHeight
        visible: look.showFace
        radius: VEMLO_STYLES.BUTTON_RADIUS
        border.width: 1
        opacity: look.faceOpacity
        color: look.faceColor
        gradient: look.showGradient ? faceGradient : null

        Gradient {
            id: faceGradient
            GradientStop { position: 0.0; color: "white" }
            GradientStop { position: 1.0; color: "#FFdddddd" }
        }
    }

    Image {
        anchors.fill: face
        source: look.image
        visible: look.showImage
        opacity: look.faceOpacity
        fillMode: look.imageFillMode
        // No larger than it is drawn, as far as its proportions allow.
        sourceSize: Qt.size(look.pictureExtent, look.pictureExtent)
    }

    Text {
        anchors.centerIn: parent
        width: look.labelWidth
        height: look.labelHeight
        visible: look.showLabel
        text: look.label
        textFormat: Text.PlainText
        color: look.labelColor
        font.pointSize: look.labelPointSize
        font.bold: look.labelBold
        // The size is the largest one: a translation that needs more room gets smaller letters.
        fontSizeMode: Text.Fit
        minimumPointSize: 6
        wrapMode: look.labelWrapMode
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: look.labelVerticalAlignment
    }

    Rectangle {
        anchors.fill: parent
        visible: look.pressed
        radius: look.corner
        color: look.selectColor
        opacity: look.pressedOpacity
    }

    Rectangle {
        anchors.fill: parent
        visible: look.framed
        radius: look.corner
        color: "transparent"
        border.width: 5
        border.color: look.selectColor
    }
}

import QtQuick 2.15
import "../../ServiceUI/qml/javascript/style.js" as STYLES

// The background, the title of the panel in sight and the panels.
Rectangle {
    x: 0
    y: 0
    width: systemConfig.serviceWidth
    height: systemConfig.serviceHeight
    color: "#FF252525"

    Text {
        id: pageTitleLabel
        anchors.left: mainPanel.left
        anchors.bottom: mainPanel.top
        anchors.bottomMargin: 3
        width: 900
        // A small screen leaves less than a line above the panel: smaller letters then, so that
        // accents on capitals are not cut off.
        height: Math.min(titleMetrics.height, mainPanel.y - anchors.bottomMargin)
        fontSizeMode: Text.VerticalFit
        minimumPixelSize: 13
        font.pixelSize: 36
        color: "white"
        textFormat: Text.PlainText

        FontMetrics {
            id: titleMetrics
            font.pixelSize: 36
        }
    }

    Image {
        anchors.centerIn: parent
        source: "file:///" + MERIVON_LOCATION_PICTURES_UI + "logo.png"
        // Never larger than the window has room for.
        sourceSize: Qt.size(parent.width / scale, parent.height / scale)
        opacity: 0.02
        scale: 1.7
    }

    MainPanel {
        id: mainPanel
        anchors.centerIn: parent
        enabled: !busy.working
        width: Math.min(parent.width - 2 * STYLES.MENU_PADDING, 900)
        height: Math.min(parent.height - 3.5 * STYLES.MENU_PADDING, 500)
    }
}

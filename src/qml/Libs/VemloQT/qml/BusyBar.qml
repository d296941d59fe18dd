import QtQuick 2.15

// A progress bar for work whose length is unknown. Small, opaque and clipped, so that each step of
// the animation repaints no more than the bar itself.
Rectangle {
    id: bar

    implicitWidth: 400
    implicitHeight: 12
    color: "#FF3a3a3a"
    clip: true

    Rectangle {
        id: runner
        width: bar.width / 4
        height: bar.height
        color: "#00AEEF"

        NumberAnimation on x {
            running: bar.visible
            from: -runner.width
            to: bar.width
            duration: 1800
            loops: Animation.Infinite
        }
    }
}

import QtQuick 2.15

// A rounded box that keeps its children inside.
Rectangle {
    width: 176
    height: 160
    radius: 10
    clip: true
    border.width: 2
    border.color: "#000000"
    gradient: Gradient {
        GradientStop { position: 0.0; color: "#55000000" }
        GradientStop { position: 1.0; color: "#77000000" }
    }
}

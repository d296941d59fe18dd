import QtQuick 2.15

// A vertical picker that shows one entry and steps to its neighbours with two buttons.
Item {
    id: wheel

    property var listText: ["sample", "list", "items"]
    property var listValue: [0, 1, 34]
    property int currentIndex: 0
    readonly property var currentText: listText[currentIndex]
    readonly property var currentValue: listValue[currentIndex]
    property int scroll_width: 80
    property int scroll_height: 190
    property int scroll_font_pointsize: 24
    property int xLocation: 0
    property int yLocation: 0
    property Gradient buttonGradient: Gradient {
        GradientStop { position: 0.0; color: "white" }
        GradientStop { position: 1.0; color: "#CCCCCC" }
    }

    signal scrolled

    // Selects an entry. An index before the first one selects the last, and one behind the last the
    // first; an empty list gives -1 and 0.
    function setCurrentIndex(newIndex) {
        currentIndex = wrapped(newIndex);
        scrolled();
    }

    // Selects the first entry of this value, the first of all where there is none. "1" finds 1: the
    // values of the platform's pages come as texts as well as numbers.
    function setCurrentValue(value) {
        for (var i = 0; i < listValue.length; ++i) {
            if (listValue[i] == value) {
                currentIndex = i;
                return;
            }
        }
        currentIndex = 0;
    }

    function wrapped(index) {
        var last = listText.length - 1;
        return index < 0 ? last : index > last ? 0 : index;
    }

    // Only a step that is seen to be made turns the wheel. Otherwise it shows its entry at once: what
    // spins by could be taken for what is chosen.
    function step(by) {
        view.highlightMoveDuration = 200;
        setCurrentIndex(currentIndex + by);
        view.highlightMoveDuration = 0;
    }

    // The view falls back to an index of its own when its model changes.
    function turnView() {
        view.currentIndex = Math.max(0, currentIndex);
        if (view.highlightMoveDuration === 0 && view.count > 0)
            view.offset = (view.count - view.currentIndex) % view.count;
    }

    x: xLocation
    y: yLocation
    width: scroll_width
    height: scroll_height
    onCurrentIndexChanged: turnView()

    Rectangle {
        anchors.fill: parent
        radius: 8
        border.width: 1
        border.color: "#55FFFFFF"
        gradient: Gradient {
            GradientStop { position: 0.0; color: "#BB000000" }
            GradientStop { position: 0.5; color: "#33000000" }
            GradientStop { position: 1.0; color: "#BB000000" }
        }
    }

    Rectangle {
        anchors.centerIn: parent
        width: parent.width
        height: 70
        radius: 5
        gradient: Gradient {
            GradientStop { position: 0.0; color: "#ffdddddd" }
            GradientStop { position: 0.1; color: "#ffeeeeee" }
            GradientStop { position: 0.3; color: "#ffffffff" }
            GradientStop { position: 0.7; color: "#ffffffff" }
            GradientStop { position: 0.9; color: "#ffeeeeee" }
            GradientStop { position: 1.0; color: "#ffdddddd" }
        }
    }

    PathView {
        id: view
        anchors.fill: parent
        interactive: false
        model: wheel.listText
        // A fifth of the wheel apart, neighbours are just out of sight and never overlap.
        pathItemCount: 5
        preferredHighlightBegin: 0.5
        preferredHighlightEnd: 0.5
        highlightRangeMode: PathView.StrictlyEnforceRange
        highlightMoveDuration: 0
        onModelChanged: wheel.turnView()

        path: Path {
            startX: view.width / 2
            startY: 0
            PathAttribute { name: "entryScale"; value: 0 }
            PathAttribute { name: "entryOpacity"; value: 0 }
            PathLine { x: view.width / 2; y: view.height * 0.3 }
            PathAttribute { name: "entryScale"; value: 0 }
            PathAttribute { name: "entryOpacity"; value: 0 }
            PathLine { x: view.width / 2; y: view.height * 0.45 }
            PathAttribute { name: "entryScale"; value: 0.5 }
            PathAttribute { name: "entryOpacity"; value: 0.25 }
            PathLine { x: view.width / 2; y: view.height * 0.5 }
            PathAttribute { name: "entryScale"; value: 1 }
            PathAttribute { name: "entryOpacity"; value: 1 }
            PathLine { x: view.width / 2; y: view.height * 0.55 }
            PathAttribute { name: "entryScale"; value: 0.5 }
            PathAttribute { name: "entryOpacity"; value: 0.25 }
            PathLine { x: view.width / 2; y: view.height * 0.7 }
            PathAttribute { name: "entryScale"; value: 0 }
            PathAttribute { name: "entryOpacity"; value: 0 }
            PathLine { x: view.width / 2; y: view.height }
            PathAttribute { name: "entryScale"; value: 0 }
            PathAttribute { name: "entryOpacity"; value: 0 }
        }

        delegate: NameText {
            width: view.width - 10
            height: 66
            // Not there until the entry comes onto the path.
            scale: PathView.entryScale || 0
            opacity: PathView.entryOpacity || 0
            text: modelData
            color: "#FF333333"
            pointSize: wheel.scroll_font_pointsize
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
    }

    // Dragging is blocked: only the two buttons turn the wheel.
    MouseArea { anchors.fill: parent }

    // Kept: "+" goes to the previous entry and "-" to the next; technicians know the wheels of the
    // service menu so.
    WheelButton {
        anchors.top: parent.top
        anchors.topMargin: 33
        sign: "+"
        gradient: wheel.buttonGradient
        onStepped: wheel.step(-1)
    }

    WheelButton {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 33
        sign: "-"
        gradient: wheel.buttonGradient
        onStepped: wheel.step(1)
    }
}

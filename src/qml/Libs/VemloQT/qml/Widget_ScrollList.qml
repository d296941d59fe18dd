import QtQuick 2.15

// A titled list with one selected row, or none.
Rectangle {
    id: scrollList

    property string listTitle: "Scroll List"
    property var listText: ["item 1"]
    property var listValues: [1]
    property int currentListIndex: 0
    readonly property string currentListText: textAt(currentListIndex)
    readonly property var currentListValue: valueAt(currentListIndex)
    property int listItemHeight: 35

    signal currentTextChanged(string text)
    signal currentValueChanged(var value)
    signal currentIndexChanged(var index)
    signal clicked

    function textAt(index) { return index >= 0 && index < listText.length ? listText[index] : ""; }
    function valueAt(index) {
        return index >= 0 && index < listValues.length ? listValues[index] : "";
    }

    function getCurrentIndex() { return currentListIndex; }
    function getCurrentText() { return currentListText; }
    function getCurrentValue() { return currentListValue; }
    function sendClicked() { clicked(); }

    function moveToValue(value) {
        for (var i = listValues.length - 1; i >= 0; --i) {
            if (listValues[i] === value) {
                currentListIndex = i;
                return;
            }
        }
    }

    // Kept: `rowTexts` does not exist, so a call ends in a script error; nothing calls it.
    function moveToText(text) { currentListIndex = rowTexts.indexOf(text); }

    // The row above the selection goes to the top, so that one sees that there is more above.
    function moveToCurrentSelection() {
        rows.positionViewAtIndex(Math.max(0, currentListIndex - 1), ListView.Beginning);
    }

    width: 300
    height: 400
    radius: 12
    border.width: 8
    border.color: "#FF444444"
    onCurrentListIndexChanged: {
        if (currentListIndex === -1)
            return;
        currentTextChanged(textAt(currentListIndex));
        currentValueChanged(valueAt(currentListIndex));
        currentIndexChanged(currentListIndex);
    }

    ListView {
        id: rows
        anchors.fill: parent
        anchors.margins: scrollList.border.width
        anchors.topMargin: scrollList.border.width + header.height
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: scrollList.listText

        delegate: ScrollListRow {
            width: rows.width
            height: scrollList.listItemHeight
            text: modelData
            selected: index === scrollList.currentListIndex
            onClicked: {
                scrollList.currentListIndex = index;
                scrollList.clicked();
            }
        }
    }

    Rectangle {
        id: header
        x: scrollList.border.width
        y: scrollList.border.width
        width: parent.width - 2 * x
        height: 30
        gradient: Gradient {
            GradientStop { position: 0.0; color: "white" }
            GradientStop { position: 1.0; color: "#CCCCCC" }
        }

        Text {
            anchors.fill: parent
            anchors.leftMargin: 10
            anchors.rightMargin: 10
            text: scrollList.listTitle
            textFormat: Text.PlainText
            color: "#FF333333"
            font.pixelSize: 16
            font.bold: true
            fontSizeMode: Text.Fit
            minimumPixelSize: 8
            elide: Text.ElideLeft
            verticalAlignment: Text.AlignVCenter
        }
    }

    Rectangle {
        anchors.top: header.bottom
        x: header.x
        width: header.width
        height: 13
        gradient: Gradient {
            GradientStop { position: 0.0; color: "#55000000" }
            GradientStop { position: 1.0; color: "#00000000" }
        }
    }

    Rectangle {
        anchors.bottom: rows.bottom
        x: header.x
        width: header.width
        height: 10
        gradient: Gradient {
            GradientStop { position: 0.0; color: "#00000000" }
            GradientStop { position: 1.0; color: "#55000000" }
        }
    }

    ScrollMark {
        anchors.rightMargin: scrollList.border.width + 2
        flickable: rows
    }
}

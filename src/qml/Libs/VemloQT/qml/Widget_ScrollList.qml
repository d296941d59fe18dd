import QtQuick 2.15

// A titled list with one selected row, or none.
Rectangle {
    id: scrollList

    property string listTitle: "Scroll List"
    property var listText: ["item 1"]
    property var listValues: [1]
    property int currentListIndex: 0
    readonly property alias currentListText: selection.text
    readonly property alias currentListValue: selection.value
    property int listItemHeight: 35
    // Tells of a row's text what it names: "folder", "file" or "", which shows no mark.
    property var kindOf: function(text) { return ""; }

    signal currentTextChanged(string text)
    signal currentValueChanged(var value)
    signal currentIndexChanged(var index)
    signal clicked

    // Kept as they are until the index changes, whatever becomes of the rows meanwhile.
    function takeSelection() {
        selection.text = textAt(currentListIndex);
        selection.value = valueAt(currentListIndex);
    }

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
        takeSelection();
        if (currentListIndex === -1)
            return;
        currentTextChanged(currentListText);
        currentValueChanged(currentListValue);
        currentIndexChanged(currentListIndex);
    }
    Component.onCompleted: takeSelection() // the rows may come after the index

    QtObject {
        id: selection

        property string text
        property var value: ""
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
            kind: scrollList.kindOf(modelData)
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

        NameText {
            anchors.fill: parent
            anchors.leftMargin: 10
            anchors.rightMargin: 10
            text: scrollList.listTitle
            color: "#FF333333"
            pointSize: 12
            font.bold: true
            wrapMode: Text.NoWrap
            elide: Text.ElideLeft // of a path the end tells where one is
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
        anchors.rightMargin: scrollList.border.width + 1
        flickable: rows
    }
}

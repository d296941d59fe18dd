import QtQuick 2.15

// A name from outside, as of a file: nobody knows how long it is. Where room is short its letters
// get smaller, but stay legible, and it is wrapped, but never within a word. What still does not
// fit is left out, in the middle of a single line: a name tells its version at the end.
Text {
    id: name

    property real pointSize: 10 // where there is room
    // 13 pixels, whatever the screen says of its dots an inch.
    readonly property int smallestPointSize: Math.ceil(smallest.fontInfo.pointSize)
    readonly property bool wordsFit: longestWord() <= width

    // In pixels, at the smallest size. Lines also break behind hyphens, but not before a number.
    function longestWord() {
        return text.split(/\s|-(?!\d)/).reduce(function(longest, word) {
            return Math.max(longest, smallestLetters.advanceWidth(word + "-"));
        }, 0);
    }

    textFormat: Text.PlainText
    font.pointSize: Math.max(smallestPointSize, pointSize)
    fontSizeMode: Text.Fit
    minimumPointSize: smallestPointSize
    wrapMode: wordsFit ? Text.WordWrap : Text.NoWrap
    elide: wordsFit ? Text.ElideRight : Text.ElideMiddle

    Text {
        id: smallest
        visible: false
        text: "0"
        font.pixelSize: 13
    }

    FontMetrics {
        id: smallestLetters
        font.family: name.font.family
        font.bold: name.font.bold
        font.pointSize: name.smallestPointSize
    }
}

import QtQuick 2.15

// A line in small print in a message. A name that is too long keeps its beginning and its end.
Text {
    textFormat: Text.PlainText
    color: "white"
    font.pixelSize: 14
    elide: Text.ElideMiddle
}

import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "../../Libs/VemloQT/qml"

// The packages and firmware images that were found, of which one can be chosen. Only the rows in
// sight are made: a medium can hold thousands.
Widget_Container {
    id: softwareList

    property var paths: []
    property int chosenIndex: -1

    signal chosen(string path)

    onPathsChanged: chosenIndex = -1

    // A choice that scrolls out of sight leaves the group; its row is checked again when it is made
    // anew.
    T.ButtonGroup { id: softwareGroup }

    ListView {
        id: rows
        anchors.fill: parent
        boundsBehavior: Flickable.StopAtBounds
        currentIndex: -1
        model: softwareList.paths

        delegate: Item {
            width: rows.width
            height: 100

            Widget_Vemlo_RadioButton {
                T.ButtonGroup.group: softwareGroup
                width: parent.width
                radioButtonText: manager.getFileName(modelData)
                checked: index === softwareList.chosenIndex
                onClicked: {
                    softwareList.chosenIndex = index;
                    softwareList.chosen(modelData);
                }
            }
        }
    }

    ScrollMark { flickable: rows }
}

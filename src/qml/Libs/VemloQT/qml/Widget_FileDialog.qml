import QtQuick 2.15
import MyLibrary 2.0

// Lets one walk through folders and choose a file; the browser item itself is the dialog.
FileHelper {
    id: fileDialog

    property string title: currentPath
    property string chooseButtonName: qsTr("Choose")

    // Does the steps that list a folder or look at a file, however long the medium takes. Who has a
    // say in what touches may do meanwhile puts a function of its own here.
    property var hold: function(step) { step(); }

    signal selectionCleared

    anchors.fill: parent
    visible: false
    onVisibleChanged: {
        if (visible && content.status === Loader.Null)
            content.setSource("FileDialogContent.qml", { dialog: fileDialog });
        selectionCleared();
    }

    // Loaded when the dialog is shown first: the start does not wait for what few open.
    Loader {
        id: content
        anchors.fill: parent
    }
}

import QtQuick 2.15
import "../../Libs/VemloQT/qml"
import "../../ServiceUI/qml"
import "../../ServiceUI/qml/javascript/style.js" as STYLES

// Versions and firmware by hand, and import from a file.
Widget_MenuPage {
    id: advancePanel

    function importFile(path) {
        busy.begin(manager.getFileName(path));
        busy.end(function() { importNow(path); });
    }

    function importNow(path) {
        msgPopUp.showMessage("Importing, please wait...", 0, true, true);
        manager.importSoftwareFromFile(path);
        msgPopUp.hideMessage();
        msgPopUp.showMessage("File has been imported successfully!");
        // Nobody tells how the import ended; the store shows whether it brought anything.
        var before = controls.listed();
        controls.reload();
        if (controls.listed() === before)
            msgPopUp.showDetail(vemTranslations.lookUp("No new version was added"));
    }

    MainPanelControls {
        id: controls
        anchors.fill: parent
        anchors.margins: 10
        onImportRequested: busy.hold(fileDialog.show)
    }

    // Above the controls: it is the way out of their delete question.
    Widget_Vemlo_Button {
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: STYLES.MENU_PADDING
        visible: !fileDialog.visible
        actionButton: true
        btnText: vemTranslations.lookUp("Back") + vemTranslations.languageBinder
        onButtonClicked: showChoicePanel()
    }

    Widget_FileDialog {
        id: fileDialog
        filterNames: ["quillmark-*.tar.gz", "*.hex"]
        currentPath: MEDIA_DIRECTORY
        chooseButtonName: vemTranslations.lookUp("Import") + vemTranslations.languageBinder
        hold: busy.hold
        onChooseFile: advancePanel.importFile(filePath)
    }
}

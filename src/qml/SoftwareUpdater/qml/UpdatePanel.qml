import QtQuick 2.15
import MyLibrary 2.0
import "../../Libs/VemloQT/qml"
import "../../ServiceUI/qml"
import "commandOutput.js" as CommandOutput

// Finds the packages and firmware images on the media and installs the one that is chosen.
Widget_MenuPage {
    id: updatePanel

    property var softwareListModel: []
    property string selectedPath: ""

    // Looked up once, when the panel is made: an install replaces the database file, so nothing may
    // look a text up while one runs.
    property string scanningText: vemTranslations.lookUp("Scanning, please wait...")
    property string noMediaText: vemTranslations.lookUp("Media not found! Please insert USB Media")
    property string noSoftwareText: vemTranslations.lookUp("New Software Not Found")
    property string importingText: vemTranslations.lookUp("Importing Software, please wait...")
    property string installingText: vemTranslations.lookUp("Installing Software, please wait...")
    property string installedText: vemTranslations.lookUp("Software has been updated successfully!")
    property string flashingText: vemTranslations.lookUp("Updating firmware, please wait...")
    property string flashedText: vemTranslations.lookUp("Firmware has been updated successfully!")

    function showCurrentVersion() {
        versionLabel.text = vemTranslations.lookUp("Current software version is: ")
                + manager.currentVersions();
    }

    function scan() {
        softwareListModel = [];
        installButton.setStateDisabled();
        showStatus(scanningText);
        scanTimer.restart();
    }

    // However long a slow stick takes: its touches are lost, so this panel stays in sight.
    function listMedia() { busy.hold(readMedia); }

    function readMedia() {
        if (!manager.mediaDeviceExist()) {
            showStatus(noMediaText);
            return;
        }
        softwareListModel = manager.findAvailableSoftware();
        showStatus(softwareListModel.length === 0 ? noSoftwareText : "");
    }

    function showStatus(text) {
        statusText.text = text;
        statusText.visible = text !== "";
    }

    function choose(path) {
        selectedPath = path;
        installButton.setStateNormal();
    }

    function install() {
        if (selectedPath === "")
            return;
        var fileName = manager.getFileName(selectedPath);
        installButton.setStateDisabled();
        if (fileName.indexOf("quillmark-") !== -1)
            softwareLauncher.start(selectedPath, fileName);
        else if (fileName.indexOf("MerivonMFV") !== -1)
            firmwareLauncher.launch("/usr/local/bin/vemlo", ["firmware", "update", selectedPath]);
        // Kept: for any other firmware image nothing runs, until another entry is chosen.
        showCurrentVersion();
    }

    function endFirmware(result) {
        msgPopUp.showMessage(flashedText);
        msgPopUp.showDetail(CommandOutput.complaint(result));
        offerNextInstall();
    }

    function showBusy(text, name) {
        busy.begin(name);
        msgPopUp.showMessage(text, 0, true, true);
    }

    function offerNextInstall() {
        installButton.setStateNormal();
        showCurrentVersion();
    }

    onVisibleChanged: {
        if (visible) {
            showCurrentVersion();
            scan();
        } else {
            scanTimer.stop(); // reading the media would hold up the screen shown instead
        }
    }

    Timer {
        id: scanTimer
        interval: 1000
        onTriggered: updatePanel.listMedia()
    }

    // First the import of a package into the versions store, then its install.
    LaunchAsync {
        id: softwareLauncher

        property int stage: 0
        property string fileName: ""
        property string importComplaint: ""

        function start(path, name) {
            manager.logImport(path);
            importComplaint = "";
            stage = 0;
            fileName = name;
            launch("/usr/local/bin/vemlo", ["import", path]);
        }

        // The import's result decides nothing: of a failed import the install finds nothing. What
        // the command said stands under the last word.
        function endImport(result) {
            importComplaint = CommandOutput.complaint(result);
            var nameVersion = manager.getNameVersion(fileName);
            var version = nameVersion[0] + "-" + nameVersion[1];
            console.log("version", version);
            vemTranslations.lookUp("KeyCloseDatabase");
            // Before the launch, which begins at once and shows the text of its stage.
            stage += 1;
            launch("/usr/local/bin/vemlo", ["install", version]);
        }

        function endInstall(result) {
            // Kept: the version is not known any more here, so a failure names it "undefined".
            var version;
            msgPopUp.hideMessage();
            if (result.indexOf("Error") !== -1) {
                msgPopUp.showMessage("Software " + version + " is corrupted. Can not install.");
                msgPopUp.showDetail(importComplaint);
                // Kept: the manager has no such operation. The handler ends here with a script
                // error, and the install button stays disabled until another entry is chosen.
                manager.logInstallFailed(version);
            } else {
                msgPopUp.showMessage(updatePanel.installedText);
                msgPopUp.showDetail(importComplaint);
                manager.logInstall(version);
            }
            updatePanel.offerNextInstall();
            stage += 1;
        }

        onBeginLaunch: {
            updatePanel.showBusy(stage === 0 ? updatePanel.importingText
                                             : updatePanel.installingText, fileName);
        }
        onEndLaunch: {
            busy.end(function() { stage === 0 ? endImport(result) : endInstall(result); });
        }
    }

    LaunchAsync {
        id: firmwareLauncher
        onBeginLaunch: updatePanel.showBusy(updatePanel.flashingText,
                                            manager.getFileName(updatePanel.selectedPath))
        onEndLaunch: busy.end(function() { updatePanel.endFirmware(result); })
    }

    Item {
        id: row
        anchors.fill: parent
        anchors.margins: 20

        SoftwareList {
            id: listBox
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(row.width / 2 - 10, 400)
            height: Math.min(row.height - 10, 450)

            paths: updatePanel.softwareListModel
            onChosen: updatePanel.choose(path)

            Text {
                id: statusText
                anchors.centerIn: parent
                width: parent.width - 20
                visible: false
                color: "white"
                font.pixelSize: 16
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
            }

            BusyBar {
                anchors.top: statusText.bottom
                anchors.topMargin: 20
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(implicitWidth, parent.width - 40)
                visible: statusText.visible && statusText.text === updatePanel.scanningText
            }
        }

        Item {
            anchors.left: listBox.right
            anchors.leftMargin: 20
            anchors.right: parent.right
            anchors.top: listBox.top
            anchors.bottom: listBox.bottom

            Text {
                id: versionLabel
                width: parent.width
                color: "white"
                font.pixelSize: 14
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
            }

            Column {
                anchors.centerIn: parent
                spacing: 12

                Text {
                    width: row.width - listBox.width - 20
                    color: "white"
                    font.pixelSize: 16
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                    text: vemTranslations.lookUp("Please select new software from the list, when ready press Install Software")
                          + vemTranslations.languageBinder
                }

                Widget_Vemlo_Button {
                    id: installButton
                    anchors.horizontalCenter: parent.horizontalCenter
                    totBtnWidth: 200
                    state: stateDisabled()
                    btnText: vemTranslations.lookUp("Install Software") + vemTranslations.languageBinder
                    onButtonClicked: busy.hold(updatePanel.install)
                }

                Row {
                    anchors.horizontalCenter: parent.horizontalCenter
                    spacing: 12

                    Widget_Vemlo_Button {
                        state: stateHidden()
                        btnText: vemTranslations.lookUp("Scan") + vemTranslations.languageBinder
                        onButtonClicked: updatePanel.scan()
                    }

                    Widget_Vemlo_Button {
                        actionButton: true
                        btnText: vemTranslations.lookUp("Back") + vemTranslations.languageBinder
                        onButtonClicked: showChoicePanel()
                    }
                }
            }
        }
    }
}

import QtQuick 2.15
import MyLibrary 1.0
import MyLibrary 2.0
import "../../Libs/VemloQT/qml"
import "../../ServiceUI/qml/javascript/style.js" as STYLES
import "versionRemoval.js" as VersionRemoval

// The installed versions and the stored firmware images, with what can be done to them.
Item {
    id: controls

    // Of the install or removal under way; the wheel may turn meanwhile.
    property string version: ""
    readonly property bool hasFirmware: systemConfig.systemType === SystemType.KRA

    signal importRequested

    function reload() {
        fill(versionWheel, manager.getMerivonVersions());
        var images = manager.getMFVVersions();
        console.log("versions:", images);
        fill(firmwareWheel, images.length === 0 ? [""] : images);
    }

    // All that the wheels offer, to be compared.
    function listed() { return JSON.stringify([versionWheel.listText, firmwareWheel.listText]); }

    // Names sort with the newest last, so the last entry is the one to offer.
    function fill(wheel, texts) {
        wheel.listText = texts;
        wheel.listValue = Object.keys(texts).map(Number);
        wheel.setCurrentIndex(texts.length - 1);
    }

    function installVersion() {
        if (versionWheel.currentText === undefined)
            return;
        version = versionWheel.currentText;
        versionLauncher.launch("/usr/local/bin/vemlo", ["install", version]);
    }

    function endInstall(result) {
        msgPopUp.hideMessage();
        if (result.indexOf("Error") === -1) {
            msgPopUp.showMessage("Software has been updated successfully!");
            manager.logInstall(version);
        } else {
            msgPopUp.showMessage("Software " + version + " is corrupted. Can not install.");
            // Kept: the manager has no such operation, so the handler ends in a script error.
            manager.logInstallFailed(version);
        }
    }

    function askToRemove() {
        if (versionWheel.currentText === undefined)
            return;
        version = versionWheel.currentText;
        // Kept: this is the updater's version, so only a folder that carries its name is protected.
        var running = systemConfig.systemName + "-" + manager.currentVersions();
        console.log("version: " + version + ", running: " + running);
        if (version === running) {
            msgPopUp.showMessage(vemTranslations.lookUp("Can not delete software version currently running"));
            return;
        }
        // Takes the place of the question's default text and of its binding.
        removalQuestion.label = "Delete Software Version " + version + "?";
        removalQuestion.show();
    }

    function removeVersion() {
        var reason = VersionRemoval.refusal(version);
        if (reason !== "") {
            console.warn("nothing deleted,", reason);
            msgPopUp.showMessage(vemTranslations.lookUp("This version can not be deleted"));
            return;
        }
        vemScriptLauncher.executeSystemCommand(VersionRemoval.command(version));
        msgPopUp.showMessage("Software Deleted");
        manager.logDeleted(version);
        reload();
    }

    function updateFirmware() {
        firmwareLauncher.image = "MerivonMFV_" + firmwareWheel.currentText + ".hex";
        firmwareLauncher.launch("/usr/local/bin/vemlo", [
            "firmware", "update", MERIVON_LOCATION_VERSIONS + firmwareLauncher.image
        ]);
    }

    // Made where it is not in sight, it reads when it comes into sight: once.
    Component.onCompleted: if (visible) reload()
    // A version that was installed meanwhile is to be there.
    onVisibleChanged: visible ? reload() : removalQuestion.close()

    LaunchAsync {
        id: versionLauncher
        onBeginLaunch: {
            busy.begin(controls.version);
            msgPopUp.showMessage("Installing Software, please wait...", 0, true, true);
            // The install replaces the database file. From here to its end nothing looks a text up.
            vemTranslations.lookUp("KeyCloseDatabase");
            manager.logInstall(controls.version);
        }
        onEndLaunch: busy.end(function() { controls.endInstall(result); })
    }

    LaunchAsync {
        id: firmwareLauncher

        property string image: ""

        onBeginLaunch: {
            busy.begin(image);
            msgPopUp.showMessage("Updating firmware (approx 4 min), please wait...", 0, true, true);
        }
        onEndLaunch: busy.end(function() { msgPopUp.showMessage(result, 1000, true); })
    }

    LabelSize {
        id: headingSize
        texts: controls.hasFirmware ? [versionHeading.text, firmwareHeading.text]
                                    : [versionHeading.text]
        room: versionWheel.width
        largest: STYLES.ABS_H1_TEXT_SIZE
        bold: false
        wrapped: false
    }

    LabelSize {
        id: labelSize
        texts: [installButton.btnText, removeButton.btnText]
        room: installButton.textWidth
        lineRoom: installButton.textHeight
    }

    Column {
        anchors.centerIn: parent
        spacing: 4

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 20

            Column {
                spacing: 4

                Text {
                    id: versionHeading
                    width: versionWheel.width
                    text: vemTranslations.lookUp("Software Version History") + vemTranslations.languageBinder
                    color: "white"
                    font.pointSize: headingSize.pointSize
                    horizontalAlignment: Text.AlignHCenter
                }

                Widget_ScrollWheel {
                    id: versionWheel
                    scroll_width: systemConfig.systemType === SystemType.TALVOGATEWAY ? 400 : 340
                }

                Row {
                    anchors.horizontalCenter: parent.horizontalCenter

                    Widget_Vemlo_Button {
                        id: installButton
                        actionButton: true
                        txtBtnObjPointSize: labelSize.pointSize
                        btnText: vemTranslations.lookUp("Install") + vemTranslations.languageBinder
                        onButtonClicked: busy.hold(controls.installVersion)
                    }

                    Widget_Vemlo_Button {
                        id: removeButton
                        actionButton: true
                        txtBtnObjPointSize: labelSize.pointSize
                        btnText: vemTranslations.lookUp("Remove") + vemTranslations.languageBinder
                        onButtonClicked: busy.hold(controls.askToRemove)
                    }
                }
            }

            Column {
                spacing: 4
                visible: controls.hasFirmware

                Text {
                    id: firmwareHeading
                    width: firmwareWheel.width
                    text: vemTranslations.lookUp("MFV Version History") + vemTranslations.languageBinder
                    color: "white"
                    font.pointSize: headingSize.pointSize
                    horizontalAlignment: Text.AlignHCenter
                }

                Widget_ScrollWheel {
                    id: firmwareWheel
                    scroll_width: 340
                }

                Widget_Vemlo_Button {
                    anchors.horizontalCenter: parent.horizontalCenter
                    actionButton: true
                    txtBtnObjPointSize: labelSize.pointSize
                    btnText: vemTranslations.lookUp("Install") + vemTranslations.languageBinder
                    onButtonClicked: busy.hold(controls.updateFirmware)
                }
            }
        }

        Widget_Vemlo_Button {
            anchors.horizontalCenter: parent.horizontalCenter
            totBtnWidth: 225
            actionButton: true
            btnText: vemTranslations.lookUp("Import New Software") + vemTranslations.languageBinder
            onButtonClicked: controls.importRequested()
        }
    }

    Widget_ConfirmationDialog {
        id: removalQuestion
        label: vemTranslations.lookUp("Delete Sotware Version?") + vemTranslations.languageBinder
        yesButtonText: vemTranslations.lookUp("Yes") + vemTranslations.languageBinder
        noButtonVisible: false
        onYes: busy.hold(controls.removeVersion)
    }
}

import QtQuick 2.15
import "../../Libs/VemloQT/qml"
import "../../ServiceUI/qml"
import "../../ServiceUI/qml/javascript/style.js" as STYLES

// The first screen: where to go, or back to the platform.
Widget_MenuPage {
    property bool leftBefore: false

    function restart() {
        if (DEV_MODE) {
            console.log("DEV MODE - restart skipped");
            return;
        }
        // The updater ends half a second later.
        busy.leave();
        restartButton.setStateDisabled();
        mainWindow.startMerivon();
    }

    onShowMenuChanged: {
        if (!showMenu)
            leftBefore = true;
        else if (leftBefore)
            doubleTap.restart();
    }

    // "Back" stood where "Restart Merivon" stands: its second tap must not end the updater.
    Timer {
        id: doubleTap
        interval: 500
    }

    LabelSize {
        id: labelSize
        texts: [updateButton.btnText, advancedButton.btnText]
        room: updateButton.textWidth
        lineRoom: updateButton.textHeight
    }

    Row {
        anchors.centerIn: parent
        spacing: STYLES.MENU_PADDING

        Widget_Vemlo_Button {
            id: updateButton
            actionButton: true
            txtBtnObjPointSize: labelSize.pointSize
            btnText: vemTranslations.lookUp("Update Software") + vemTranslations.languageBinder
            onButtonClicked: showUpdatePanel()
        }

        Widget_Vemlo_Button {
            id: advancedButton
            actionButton: true
            txtBtnObjPointSize: labelSize.pointSize
            btnText: vemTranslations.lookUp("Advanced Options") + vemTranslations.languageBinder
            onButtonClicked: showAdvanceOptionsPanel()
        }
    }

    Widget_Vemlo_Button {
        id: restartButton
        enabled: !doubleTap.running
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: STYLES.MENU_PADDING
        actionButton: true
        btnText: vemTranslations.lookUp("Restart Merivon") + vemTranslations.languageBinder
        onButtonClicked: restart()
    }
}

import QtQuick 2.15
import "../../Libs/VemloQT/qml"

// The root of the updater's scene. Panels reach `mainWindow`, `msgPopUp` and `busy` by
// name.
MainWindow {
    id: mainWindow

    function startMerivon() { manager.quitAndStartMerivon(); }

    // Kept without working bodies: neither the manager nor the scene has what these four act on,
    // so a call ends in a script error.
    function updateMerivon(version) { manager.updateMerivon(version); }
    function updateMFV(version) { manager.updateMFV(version); }
    function showInfoMessage(message, showOKButton) { infoMessage.show(message, showOKButton); }
    function hideInfoMessage() { infoMessage.hide(); }

    x: 0
    y: 0
    width: systemConfig.screenWidth
    height: systemConfig.screenHeight

    Widget_PopUp {
        id: msgPopUp
        z: 1
        busyName: busy.subject
        busyTime: busy.time
    }

    Busy {
        id: busy
        anchors.fill: parent
        covered: msgPopUp.covering
        z: shut ? 2 : 0
    }
}

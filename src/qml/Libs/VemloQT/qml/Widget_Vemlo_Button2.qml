import QtQuick 2.15

// The button of the dialogs: what it shows follows from its properties.
Item {
    id: button
    objectName: "widget_Vemlo_Button2"

    property alias text: look.label
    property alias source: look.image
    property bool smallButton: false
    property bool shortButton: false
    property bool textButton: false
    property bool hidden: false
    property bool checkable: false
    property bool checked: false
    property alias roundedSelectionBorder: look.rounded
    property color txtBtnObjectColor: "#FF333333"
    property alias txtBtnObjPointSize: look.labelPointSize
    property alias txtBtnObjBold: look.labelBold
    property alias alignVText: look.labelVerticalAlignment
    property alias textWrapMode: look.labelWrapMode
    readonly property alias labelWidth: look.labelWidth
    readonly property alias labelHeight: look.labelHeight

    signal pressed
    signal released
    signal clicked
    signal pressAndHold

    width: smallButton ? 65 : 108
    height: smallButton || shortButton ? 68 : textButton ? 40 : 96

    ButtonLook {
        id: look
        anchors.fill: parent
        showFace: !button.hidden
        showImage: !button.hidden
        imageFillMode: Image.Stretch
        faceOpacity: button.enabled ? 1 : 0.35
        labelColor: button.enabled ? button.txtBtnObjectColor : "white"
        framed: button.checked || touchArea.pressed
        pressed: touchArea.pressed
    }

    MouseArea {
        id: touchArea
        anchors.fill: parent
        visible: !button.hidden // hiding takes a press away that is under way
        onPressed: button.pressed()
        onReleased: {
            if (button.checkable)
                button.checked = !button.checked;
            button.released();
        }
        onClicked: button.clicked()
        onPressAndHold: {
            mouse.accepted = false; // a slow touch is a click as well
            button.pressAndHold();
        }
    }
}

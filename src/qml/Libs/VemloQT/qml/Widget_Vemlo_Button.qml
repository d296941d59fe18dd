import QtQuick 2.15

// The main button. What it shows and whether it can be used is its `state`.
Rectangle {
    id: button
    objectName: "widget_Vemlo_ButtonObj"

    property string btnText: ""
    property bool actionButton: false
    property int totBtnWidth: 108
    property int totBtnHeight: actionButton ? 68 : 96
    property alias innerBtnWidth: look.faceWidth
    property alias innerBtnHeight: look.faceHeight
    property alias textWidth: look.labelWidth
    property alias textHeight: look.labelHeight

    property color selectColor: "#00AEEF"
    property real defOpacity: 0.35
    property alias txtBtnObjectColor: look.labelColor
    property alias txtBtnObjPointSize: look.labelPointSize
    property alias txtBtnObjBold: look.labelBold
    property alias alignVText: look.labelVerticalAlignment
    property alias textWrapMode: look.labelWrapMode

    property string imgBtnSource: ""
    property bool imageTop: false
    property bool textBtn: true
    property bool showGradient: true
    property alias roundedSelectionBorder: look.rounded
    property bool checkable: false
    property bool checked: false
    property bool hiddenButVisible: false

    signal buttonPressed
    signal buttonReleased
    signal buttonClicked
    signal buttonPressAndHold

    function stateNormal() { return "stateDeselected"; }
    function stateSelected() { return "stateSelected"; }
    function stateDisabled() { return "stateDisabled"; }
    function stateHidden() { return "stateHidden"; }

    function setStateNormal() { state = stateNormal(); }
    function setStateSelected() { state = stateSelected(); }
    function setStateDisabled() { state = stateDisabled(); }
    function setStateHidden() { state = stateHidden(); }
    function show(shown) { state = shown ? stateNormal() : stateHidden(); }

    function isStateNormal() { return state === stateNormal(); }
    function isUsable() { return state !== stateDisabled(); }
    function isStateHidden() { return state === stateHidden(); }
    // Kept: these two give the state's name and so always read as true; the platform's pages count
    // on it.
    function isStateSelected() { return stateSelected(); }
    function isStateDisabled() { return stateDisabled(); }

    // Kept: a face that was once made transparent stays so, whatever showGradient says later.
    function dropGradient() {
        if (!showGradient)
            look.showGradient = false;
    }

    width: totBtnWidth
    height: totBtnHeight
    color: "transparent"
    state: stateNormal()
    states: [
        State { name: "stateDeselected" },
        State {
            name: "statePressed"
            PropertyChanges { target: look; framed: true }
        },
        State {
            name: "stateSelected"
            PropertyChanges { target: look; framed: true; pressed: true }
        },
        State {
            name: "stateDisabled"
            PropertyChanges { target: button; opacity: button.defOpacity }
        },
        State {
            name: "stateHidden"
            PropertyChanges { target: button; opacity: 0; visible: button.hiddenButVisible }
        }
    ]
    onCheckedChanged: checked ? setStateSelected() : setStateNormal()
    onShowGradientChanged: dropGradient()
    Component.onCompleted: dropGradient()

    ButtonLook {
        id: look
        anchors.fill: parent
        label: button.btnText
        showLabel: button.textBtn
        image: button.imgBtnSource
        showImage: button.imageTop
        selectColor: button.selectColor
        pressedOpacity: button.defOpacity
    }

    MouseArea {
        anchors.fill: parent
        enabled: button.isUsable()
        onPressed: {
            if (!button.checkable)
                button.setStateSelected();
            button.buttonPressed();
        }
        // Disabling does not take a press away that is under way: what follows it must not revive
        // the button, nor be told.
        onReleased: {
            if (!button.isUsable())
                return;
            if (!button.checkable)
                button.setStateNormal();
            button.buttonReleased();
        }
        // A press that is taken away, as by a flick, must not stick.
        onCanceled: {
            if (!button.checkable && button.state === button.stateSelected())
                button.setStateNormal();
        }
        onClicked: {
            if (button.isUsable())
                button.buttonClicked();
        }
        onPressAndHold: {
            mouse.accepted = false; // a slow touch is a click as well
            if (button.isUsable())
                button.buttonPressAndHold();
        }
    }
}

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// One choice of several: the whole button is the face, the checked one wears the frame. From the
// templates, as a style of the control set would only draw what is not shown here.
T.RadioButton {
    id: control

    property string radioButtonText: ""
    property int radioButtonValue: 0
    property string imgBtnSource: ""
    property string btnText: radioButtonText
    property bool narrowButton: false
    property bool actionButton: false
    property alias shortButton: control.actionButton

    property color transparent: "#00000000"
    property color darkgrey: "#6D6E71"
    property color lightgrey: "#E6E7E8"
    property color colCyan: "#00AEEF"
    property color selectColor: "#00AEEF"
    property real defOpacity: 0.35
    property alias txtBtnObjectColor: look.labelColor
    property alias txtBtnObjPointSize: look.labelPointSize
    property alias txtBtnObjBold: look.labelBold
    property alias alignVText: look.labelVerticalAlignment
    property alias textWrapMode: look.labelWrapMode

    readonly property bool imageTop: imgBtnSource !== ""
    readonly property bool textBtn: btnText !== ""

    implicitWidth: narrowButton ? 65 : 108
    implicitHeight: actionButton ? 68 : 96
    text: radioButtonText
    opacity: enabled ? 1 : defOpacity

    ButtonLook {
        id: look
        anchors.fill: parent
        label: control.btnText
        showLabel: control.textBtn
        image: control.imgBtnSource
        showImage: control.imageTop
        showGradient: false
        faceColor: control.textBtn ? "white" : control.transparent
        selectColor: control.selectColor
        framed: control.checked
        pressed: control.down
        pressedOpacity: control.defOpacity
    }
}

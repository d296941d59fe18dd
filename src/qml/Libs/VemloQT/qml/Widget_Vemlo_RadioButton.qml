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
    property alias txtBtnObjectColor: label.color
    property alias txtBtnObjPointSize: label.pointSize
    property alias txtBtnObjBold: label.font.bold
    property alias alignVText: label.verticalAlignment
    property alias textWrapMode: label.wrapMode

    readonly property bool imageTop: imgBtnSource !== ""
    readonly property bool textBtn: btnText !== ""

    implicitWidth: narrowButton ? 65 : 108
    implicitHeight: actionButton ? 68 : 96
    text: radioButtonText
    opacity: enabled ? 1 : defOpacity

    ButtonLook {
        id: look
        anchors.fill: parent
        showLabel: false
        image: control.imgBtnSource
        showImage: control.imageTop
        showGradient: false
        faceColor: control.textBtn ? "white" : control.transparent
        selectColor: control.selectColor
        framed: control.checked
        pressed: control.down
        pressedOpacity: control.defOpacity
    }

    // Choices are named by what is found, not by us.
    NameText {
        id: label
        anchors.centerIn: parent
        width: look.labelWidth
        height: look.labelHeight
        text: control.btnText
        color: "#FF333333"
        font.bold: true
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}

import QtQuick 2.15

// A yes-or-no question over everything that its parent holds.
Rectangle {
    id: dialog

    property string label: vemTranslations.lookUp("Are you sure ?") + vemTranslations.languageBinder
    property string yesButtonText: vemTranslations.lookUp("Yes") + vemTranslations.languageBinder
    property string noButtonText: vemTranslations.lookUp("No") + vemTranslations.languageBinder
    property bool yesButtonVisible: true
    property bool noButtonVisible: true

    signal yes
    signal no

    function show() { visible = true; }
    function close() { visible = false; }

    anchors.fill: parent
    z: 9999999
    visible: false
    color: "black"
    opacity: 0.95
    radius: 14
    border.width: 4
    border.color: "red"
    onYes: close()
    onNo: close()

    MouseArea { anchors.fill: parent }

    Text {
        id: question
        anchors.top: parent.top
        anchors.topMargin: 90
        anchors.horizontalCenter: parent.horizontalCenter
        width: parent.width - 40
        text: dialog.label
        textFormat: Text.PlainText
        color: "white"
        font.pixelSize: 16
        wrapMode: Text.Wrap
        horizontalAlignment: Text.AlignHCenter
    }

    Widget_Container {
        anchors.top: question.bottom
        anchors.topMargin: 10
        anchors.horizontalCenter: parent.horizontalCenter
        width: 300
        height: 100

        LabelSize {
            id: labelSize
            // Only when it is asked: few questions ever are.
            texts: dialog.visible ? [dialog.yesButtonText, dialog.noButtonText] : []
            room: yesButton.labelWidth
            lineRoom: yesButton.labelHeight
        }

        Row {
            anchors.centerIn: parent
            spacing: 12

            Widget_Vemlo_Button2 {
                id: yesButton
                shortButton: true
                txtBtnObjPointSize: labelSize.pointSize
                text: dialog.yesButtonText
                visible: dialog.yesButtonVisible
                onClicked: dialog.yes()
            }

            Widget_Vemlo_Button2 {
                shortButton: true
                txtBtnObjPointSize: labelSize.pointSize
                text: dialog.noButtonText
                visible: dialog.noButtonVisible
                onClicked: dialog.no()
            }
        }
    }
}

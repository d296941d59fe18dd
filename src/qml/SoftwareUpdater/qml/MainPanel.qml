import QtQuick 2.15
import "../../ServiceUI/qml/javascript/style.js" as STYLES

// The box in the middle with the three panels, of which one is shown. The panels call the switching
// functions by name.
Rectangle {
    id: mainPanel

    property string pageTitle: vemTranslations.lookUp("Software Updater")
                               + vemTranslations.languageBinder

    // Made when they are shown first: the start does not wait for them.
    property Item updatePanel: null
    property Item advanceOptionsPanel: null

    // A panel that comes into sight may be made first, read the store or wait for the database:
    // touches of that time were made on the panel before.
    function showChoicePanel() {
        busy.hold(function() {
            showOnly(choicePanel);
            pageTitleLabel.text = Qt.binding(function() { return mainPanel.pageTitle; });
        });
    }

    function showUpdatePanel() {
        busy.hold(function() {
            if (!updatePanel)
                updatePanel = made("UpdatePanel.qml");
            showOnly(updatePanel);
            setTitle("Update Software");
        });
    }

    function showAdvanceOptionsPanel() {
        busy.hold(function() {
            if (!advanceOptionsPanel)
                advanceOptionsPanel = made("AdvanceOptionsPanel.qml");
            showOnly(advanceOptionsPanel);
            setTitle("Advanced Options");
        });
    }

    function made(file) { return Qt.createComponent(file).createObject(mainPanel); }

    function showOnly(panel) {
        [choicePanel, updatePanel, advanceOptionsPanel].forEach(function(each) {
            if (each)
                each.showMenu = each === panel;
        });
    }

    // Bound, so that the title follows a change of language.
    function setTitle(key) {
        pageTitleLabel.text = Qt.binding(function() {
            return vemTranslations.lookUp(key) + vemTranslations.languageBinder;
        });
    }

    radius: 26
    border.color: STYLES.MENU_BORDER_COLOR
    border.width: 4
    color: "#22505050"
    clip: true
    Component.onCompleted: showChoicePanel()

    ChoicePanel { id: choicePanel }
}

import QtQuick 2.15
import "../../ServiceUI/qml/javascript/style.js" as STYLES

// The box in the middle with the three panels, of which one is shown. The panels call the switching
// functions by name.
Rectangle {
    id: mainPanel

    property string pageTitle: vemTranslations.lookUp("Software Updater")
                               + vemTranslations.languageBinder

    // Made when it is shown first: the start does not wait for what few technicians open.
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
            showOnly(updatePanel);
            setTitle("Update Software");
        });
    }

    function showAdvanceOptionsPanel() {
        busy.hold(function() {
            makeAdvanceOptionsPanel();
            showOnly(advanceOptionsPanel);
            setTitle("Advanced Options");
        });
    }

    function makeAdvanceOptionsPanel() {
        if (!advanceOptionsPanel)
            advanceOptionsPanel = Qt.createComponent("AdvanceOptionsPanel.qml").createObject(mainPanel);
    }

    function showOnly(panel) {
        choicePanel.showMenu = panel === choicePanel;
        updatePanel.showMenu = panel === updatePanel;
        if (advanceOptionsPanel)
            advanceOptionsPanel.showMenu = panel === advanceOptionsPanel;
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
    UpdatePanel { id: updatePanel }
}

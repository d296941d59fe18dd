import QtQuick 2.15

// Base of every page: as large as what holds it, and moved off to the left while it is not shown.
Rectangle {
    id: menuPage

    property bool showMenu: false
    property int activeMenuXPos: 0
    property int hiddenMenuXPos: -2000
    property var parentMenu: null
    property int myheight: 0
    property int mywidth: 0

    signal menuActivated

    // Shows this page in the place of `newParentMenu`, to which exitMenu() goes back; without one,
    // in the place of the page it was shown from before.
    function showAsChild(newParentMenu) {
        if (newParentMenu)
            parentMenu = newParentMenu;
        setMainScreenTitle(menuPage);
        parentMenu.showMenu = false;
        showMenu = true;
        console.log(parentMenu, menuPage);
        menuActivated();
    }

    function exitMenu() {
        setMainScreenTitle(parentMenu);
        showMenu = false;
        parentMenu.showMenu = true;
        console.log(parentMenu, menuPage);
        if (mywidth > 0)
            width = mywidth;
        if (myheight > 0)
            height = myheight;
    }

    // The service interface's main screen shows the title of the page in sight. The updater has no
    // such screen and switches its pages by showMenu alone.
    function setMainScreenTitle(page) {
        if (typeof mainScreen !== "undefined")
            mainScreen.pageTitle = page.pageTitle;
    }

    x: showMenu ? activeMenuXPos : hiddenMenuXPos
    visible: x !== hiddenMenuXPos
    width: parent.width
    height: parent.height
    radius: parent.radius
    color: "transparent"
}

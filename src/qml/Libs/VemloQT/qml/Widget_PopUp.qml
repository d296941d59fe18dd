import QtQuick 2.15

// Shows one message at a time: a bar near the bottom, or the whole screen, which then takes no
// touches until the message goes.
Rectangle {
    id: popUp

    property int duration: 750 // of a fade, in milliseconds
    property bool fullscreen: false
    property string message: ""
    property string detail: ""
    property bool loading: false
    property bool closable: false
    // Under the busy bar: what is worked on, and how long so far.
    property string busyName: ""
    property string busyTime: ""
    // A message on the whole screen can be seen, while it fades too. The click blocker is released
    // when it begins to fade, so who holds the pop-up decides what may be touched until it is gone.
    readonly property bool covering: fullscreen && visible
    readonly property int fullscreenWidth: parent.width - 10
    readonly property int fullscreenHeight: parent.height - 10

    // Shows `msg`, for 2 seconds unless `duration` says how many milliseconds; 0 is until
    // hideMessage(). `loadingAnimation` is for work that must not be interrupted: it adds the busy
    // bar and takes the close square away.
    function showMessage(msg, duration, fullscreen, loadingAnimation) {
        popUp.duration = 1000;
        // No screen holds more, and a command can print megabytes.
        message = String(msg).slice(0, 4000);
        detail = "";
        visible = true;
        opacity = 1;
        place(Boolean(fullscreen));
        hideAfter(duration === undefined ? 2000 : duration);
        loading = Boolean(loadingAnimation);
        closable = popUp.fullscreen && !loading;
    }

    // Small, under the message in sight, until the next one; "" for nothing.
    function showDetail(text) { detail = text; }

    function hideMessage() {
        hideTimer.stop();
        opacity = 0;
        clickBlocker.enabled = false;
        loading = false;
    }

    function close() {
        duration = 100;
        hideMessage();
    }

    // A bar releases the touches that an earlier full-screen message holds: nobody else would.
    function place(wholeScreen) {
        if (content.status === Loader.Null)
            content.setSource("PopUpContent.qml", { popUp: popUp });
        fullscreen = wholeScreen;
        clickBlocker.enabled = wholeScreen;
        if (wholeScreen) {
            // Kept: later bars wear the blue border, too.
            border.color = "blue";
            border.width = 4;
        }
    }

    // A timer that still runs for an earlier message must not take down one that is to stay.
    function hideAfter(milliseconds) {
        hideTimer.stop();
        hideTimer.interval = milliseconds;
        if (milliseconds !== 0)
            hideTimer.start();
    }

    anchors.horizontalCenter: parent.horizontalCenter
    y: fullscreen ? (parent.height - height) / 2 : parent.height - 40 - height
    width: fullscreenWidth
    height: !content.item ? 0 : fullscreen ? fullscreenHeight : content.item.wordsHeight + 20
    radius: 10
    color: "#DD000000"
    border.width: 2
    border.color: "#5500aeef"
    opacity: 0
    visible: false
    // Faded out, the close square must not take touches any more.
    onOpacityChanged: if (opacity === 0) visible = false

    Behavior on opacity {
        NumberAnimation { duration: popUp.duration; easing.type: Easing.InOutQuart }
    }

    Timer {
        id: hideTimer
        interval: 2500
        onTriggered: popUp.hideMessage()
    }

    // Takes every finger: a mouse area would let the second one through to the screen below.
    MultiPointTouchArea {
        id: clickBlocker
        anchors.centerIn: parent
        width: 1920
        height: 1080
        enabled: false
    }

    // Loaded with the first message: the start does not wait for it.
    Loader {
        id: content
        anchors.fill: parent
    }
}

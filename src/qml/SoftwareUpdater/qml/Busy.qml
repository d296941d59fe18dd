import QtQuick 2.15

// Whether the program is at work, on what and since when, and so whether a touch may act. Lies over
// the whole scene and takes every finger while none may: nothing can be started then, and what is
// touched in that time never acts on what is shown afterwards.
//
// The panels are disabled while `working`, which also takes away the presses that are under way.
MultiPointTouchArea {
    id: busy

    // A program runs, a step holds the scene up, or the updater is about to end.
    readonly property bool working: tasks > 0 || leaving
    // The file or version worked on, as it is named, and how long so far, as "1:23".
    property string subject: ""
    readonly property string time: Math.floor(seconds / 60) + ":" + ("0" + seconds % 60).slice(-2)
    readonly property int seconds: Math.round(elapsed / 1000)

    // A message hides the panels. It lies above this then, as it may have something to tap.
    property bool covered: false
    // To everything, messages included.
    readonly property bool shut: working || settling.running

    property int tasks: 0
    property bool leaving: false
    // Milliseconds: how long so far, and when that was found.
    property double elapsed: 0
    property double countedAt: 0

    // Work that leaves the scene alive, until as many calls of end().
    function begin(name) {
        tasks += 1;
        subject = name;
        elapsed = 0;
        countedAt = Date.now();
    }

    // The work is done; `lastStep` tells of it and may take a while, as hold()'s may.
    function end(lastStep) {
        try {
            hold(lastStep);
        } finally {
            finish();
        }
    }

    // Does a step during which the scene may stand still. Touches are kept for later then, so they
    // are taken on until those that were made meanwhile have come and the new screen is drawn. What
    // `step` throws is passed on.
    function hold(step) {
        var before = Date.now();
        tasks += 1;
        try {
            step();
        } finally {
            if (!isShort(Date.now() - before))
                settle();
            finish();
        }
    }

    function finish() { tasks = Math.max(0, tasks - 1); }

    // Whether nobody touches twice in so many milliseconds, so that nothing was touched meanwhile.
    // Less than none may be any time: the clock was set back.
    function isShort(milliseconds) { return milliseconds >= 0 && milliseconds < 50; }

    function settle() {
        settling.turns = 0;
        settling.restart();
    }

    // The clock of the dispenser may be set while a program runs; a second has passed then.
    function count() {
        var step = Date.now() - countedAt;
        elapsed += step < 0 || step > 10000 ? 1000 : step;
        countedAt += step;
    }

    // The updater ends; no touch acts any more.
    function leave() { leaving = true; }

    enabled: shut || covered

    // Counts turns of the animations' clock, not milliseconds: when it stood still, it goes on by all
    // of that time at once. Up to the second turn the event loop reads and delivers all input that
    // waits; a third one for the first frame, which may take a while itself.
    Timer {
        id: settling

        property int turns: 0

        interval: 1
        repeat: true
        onTriggered: {
            turns += 1;
            if (turns === 3)
                stop();
        }
    }

    Timer {
        interval: 1000
        repeat: true
        running: busy.tasks > 0
        onTriggered: busy.count()
    }
}

#pragma once

#include <vector>

// What the updater takes, as a multiple of a yardstick that is measured beside it.
struct Figure
{
    const char* name;
    double ratio;
    double limit;
};

using Figures = std::vector<Figure>;

// The figures by theme. Each theme needs a fresh dispenser and the virtual screen, writes to the
// platform tree and throws std::runtime_error when it cannot measure.

Figures startFigures(); // process start and memory, against an empty view
Figures databaseFigures(); // reads and the restore, against SQLite's C interface
Figures fileFigures(); // scan, copy and listing, against find, cp and ls
Figures launchFigures(); // waiting for other programs, against one core
Figures stallFigures(); // the event loop during an import, against 50 ms
Figures scanFigures(); // frames during the scan of a slow folder, against 100 ms
Figures screenFigures(); // opening the advanced screen, against the update screen
Figures listFigures(); // memory with many packages listed, against none

// What figures have a process of its own measure, once in each.

// From the call of the scene's function that opens a screen to the screen's first frame, in a scene
// that has just come up.
double secondsToOpen(const char* function);
// The longest time between two frames, with the busy bar on the screen, while a folder, slowed down
// by the library slow_folder, is scanned as a part of its medium.
double longestGapOfScan(const char* folder);
// The peak memory in KiB of a scene whose update screen has listed that many packages, a number.
double kibibytesToList(const char* packages);

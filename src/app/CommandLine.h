#pragma once

#include <QFileInfo>

// What the command line asks for: development mode ("--dev"), or a check of a firmware file on the
// console ("--update" and its path), after which the program ends.
struct CommandLine
{
    bool devMode = false;
    bool exitAfterArguments = false;
    // An acceptable firmware file was named, though not necessarily the last one named.
    bool firmwareValid = false;
    // The file named after the last "--update"; empty without one.
    QFileInfo firmwareFile;

    // Reads argv[1] to argv[argc - 1] and writes what it finds about each firmware file to standard
    // output. Options are compared exactly; unknown ones are ignored. Paths are bytes, of whatever
    // encoding.
    static CommandLine read(int argc, const char* const* argv);

    // To be called before the application object is made, which cannot be without a platform: where
    // neither QT_QPA_PLATFORM (an empty one is none) nor "-platform" says which, the console check
    // takes one without a display.
    static void choosePlatform(int argc, const char* const* argv);

private:
    void checkFirmware(const char* path);
};

#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

// What the scene knows as `manager`: finds new software on removable media, reads the store of
// installed versions, imports into it, records what was done, and stops and restarts the platform.
//
// The store is "/opt/Merivon/Versions/", the platform's control command "/usr/local/bin/vemlo".
//
// Keeps no state: each call reads the file system afresh. Nothing here reports an error to its
// caller; what fails gives an empty result. To be used on the user-interface thread.
//
// What reads media (mediaDeviceExist, findMediaDevices, findAvailableSoftware, getDirRecursivly)
// serves events until it has the result, however long a stick takes, so it may be called again
// meanwhile; it gives an empty result at once when the application quits.
//
// A package is named "quillmark-" + name + "-" + version + ".tar.gz", where the version holds no
// "-"; a controller firmware image matches "*MFV_V*.hex" on a medium and is
// "MerivonMFV_" + version + ".hex" in the store.
//
// The order of the declarations is the order of the class's meta-object, which the platform's
// tools go by.
class SoftwareManager : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    // Runs startMerivon 500 milliseconds from now and returns at once, so that the scene can finish
    // what it is drawing. A process that is to end before starts the platform as its last action.
    Q_INVOKABLE void quitAndStartMerivon();

    // Records that the platform goes down (a system message with the model's name from the system
    // configuration) and tells the control command to stop the platform's processes. Returns when
    // the command has been launched, not when the processes have ended. No events are processed,
    // for up to 30 seconds each for the start, the end and the output of the helper script that
    // launches it, should that hang; the log tells.
    Q_INVOKABLE void stopMerivon();

    // Names of the installed platform versions, by name ignoring case, so that the newest is
    // expected last: the store's folders with a "-" in their name, the current version left out. A
    // file in the store with a "-" counts too, if its name has a "_": "a-b_c.zip" as "c".
    Q_INVOKABLE QVariantList getMerivonVersions();

    // Versions of the firmware images in the store, in the order of the files' names ignoring case.
    // A folder whose name holds "MerivonMFV_" counts too, by its whole name.
    Q_INVOKABLE QVariantList getMFVVersions();

    // Brings a file of a medium into the store: a firmware image (suffix "hex" in any case) is
    // copied under its own name, anything else is handed to the control command's import. Blocks
    // for 2 seconds and then until the command has ended, while events are processed. Whether the
    // command succeeded is not examined.
    Q_INVOKABLE void importSoftwareFromFile(const QString& filePath);

    // Whether any medium is there.
    Q_INVOKABLE bool mediaDeviceExist();

    // Absolute paths of the packages and firmware images on all media, one a distinct file name,
    // in the character order of the file names. Reads all of every medium; what no text names (not
    // UTF-8) is left out, the log tells which.
    Q_INVOKABLE QStringList findAvailableSoftware();

    // Absolute paths of all packages and firmware images at or below a folder, the files of a
    // folder before those of its subfolders, each by name ignoring case. Links are followed on the
    // device of that folder only, to each folder once. Empty when the folder cannot be read.
    Q_INVOKABLE QStringList getDirRecursivly(const QString& path);

    // The last component of a path; empty for an empty path.
    Q_INVOKABLE QString getFileName(const QString& filePath);

    // The updater's own version, not the platform's; the scene shows it and compares it with the
    // names in the store.
    Q_INVOKABLE QString currentVersions();

    // Installations are not recorded: the scene calls this after each, and nothing happens.
    Q_INVOKABLE void logInstall(const QString& version);

    // Record an import or a deletion as a system message that holds the text as given.
    Q_INVOKABLE void logImport(const QString& filePath);
    Q_INVOKABLE void logDeleted(const QString& filePath);

    // Name and version of a package from its file name or path; empty when it is none by the exact
    // letters of the convention. Writes one log line either way.
    Q_INVOKABLE QStringList getNameVersion(const QString& fileName);

    // The entries of the store whose name holds a text but not the text with "current" after it
    // (both ignoring case): a folder by its name, a file by what stands between the first and the
    // second "_" of its name without suffix.
    QVariantList getMerivonVersions(const QString& prefix);

    // Names of the media, ignoring case in their order; each is a folder of the media folder. Those
    // that are not UTF-8 are left out.
    QStringList findMediaDevices();

    // The place for a firmware upload to a controller from the command line: it appends the lines
    // to print to the output. This version has no upload and does nothing.
    void uploadFirmware(quint8& controller, const QString& path, QStringList& output);

private slots:
    // Launches the control command's start, which blocks as stopMerivon does, and quits the
    // application.
    void startMerivon();
};

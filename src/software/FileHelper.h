#pragma once

#include <QQuickItem>
#include <QString>
#include <QStringList>

// Model and controller of the touch-screen file chooser: lists one folder at a time, walks down
// into subfolders and back up to a top folder, and reports the chosen file. It draws nothing; the
// scene's file dialog is declared as one of these.
//
// The same type offers the service pages their folder listings, file operations and storage
// queries. These depend on no state of the item. Everything runs on the user-interface thread;
// what fails gives an empty list or text, 0 or false.
class FileHelper : public QQuickItem
{
    Q_OBJECT
    Q_PROPERTY(QStringList folderEntries READ folderEntries NOTIFY listChanged)
    Q_PROPERTY(QString selectedPath READ selectedPath NOTIFY chooseFile)
    Q_PROPERTY(QString currentPath READ currentPath WRITE setCurrentPath NOTIFY listChanged)
    Q_PROPERTY(bool isFile READ isFile NOTIFY enteredChanged)
    Q_PROPERTY(QStringList filterNames READ filterNames WRITE setFilterNames)
    Q_PROPERTY(bool disableChangingDirectory READ disableChangingDirectory WRITE
                   setDisableChangingDirectory NOTIFY disableChangingDirectoryChanged)

public:
    explicit FileHelper(QQuickItem* parent = nullptr);

    // Names of what the current folder shows.
    QStringList folderEntries() const { return m_folderEntries; }
    // Path of the last entered name that is no folder.
    QString selectedPath() const { return m_selectedPath; }
    // Absolute path of the listed folder; empty until the first is set.
    QString currentPath() const { return m_currentPath; }
    // Whether the last entered name is a file.
    bool isFile() const { return m_isFile; }
    // Wildcards, case-sensitive, of the files to show; none shows no file.
    QStringList filterNames() const { return m_filterNames; }
    // Whether leaveFolder stays where it is.
    bool disableChangingDirectory() const { return m_disableChangingDirectory; }

    // Lists a folder. The first path ever set, as given, is the top folder for the item's life.
    void setCurrentPath(const QString& path);
    // Takes effect at the next listing.
    Q_INVOKABLE void setFilterNames(const QStringList& names);
    Q_INVOKABLE void setDisableChangingDirectory(bool disable);

    // Fills folderEntries: readable folders and files, neither hidden nor links, folders first,
    // then by suffix, then by name, both case-sensitively. A file that two filters match is listed
    // twice.
    void setFolderPath(const QString& path);

    // Steps into a folder of the current one, or selects a file of it.
    Q_INVOKABLE void enterFolder(const QString& folderName);
    // Goes to the parent folder, unless this is the top folder or changing is disabled.
    Q_INVOKABLE void leaveFolder();
    // Goes to the top folder.
    Q_INVOKABLE void setOriginalPath();
    // Goes to the top folder and makes the item visible.
    Q_INVOKABLE void show();
    // Hides the item and reports the selected file; does nothing when that is no file (any more).
    Q_INVOKABLE void choose();

    // Names in a folder by what is asked for, by name ignoring case; without links and hidden
    // entries. Modes: 1 pictures, 2 videos, 3 folders, 4 configuration archives, 5 videos and
    // pictures, 6 device configuration archives, 7 the flavour combinations, any other all folders
    // and files.
    QStringList getDirContents(const QString& path, signed char mode);

    // Listings of a folder as getDirContents gives them; folders stand before files.
    Q_INVOKABLE QStringList getImagesInFolder(const QString& path);
    Q_INVOKABLE QStringList getVideosInFolder(const QString& path);
    Q_INVOKABLE QStringList getFolders(const QString& path);
    Q_INVOKABLE QStringList getVideosAndImagesInFolder(const QString& path);
    Q_INVOKABLE QStringList getAllManuals(const QString& path);
    Q_INVOKABLE QStringList getAllInFolder(const QString& path);
    Q_INVOKABLE QStringList getImagesAndFolders(const QString& path);
    Q_INVOKABLE QStringList getVideosAndFolders(const QString& path);
    Q_INVOKABLE QStringList getVideosAndImagesAndFolders(const QString& path);
    Q_INVOKABLE QStringList getConfigFilesAndFolders(const QString& path);
    Q_INVOKABLE QStringList getIoTConfigFilesAndFolders(const QString& path);
    Q_INVOKABLE QStringList getFlavorComboFilesAndFolders(const QString& path);

    // Time of the last change in seconds since 1970-01-01 UTC; 4294967295 when there is no such
    // file or its time is outside that range.
    Q_INVOKABLE quint32 getFileTime(const QString& fileName);
    // Whether a path names an existing regular file, or a link to one.
    Q_INVOKABLE bool isPathFile(const QString& path);
    // Whether a path names an existing folder, or a link to one.
    Q_INVOKABLE bool isDir(const QString& path);
    // The last component of a path.
    Q_INVOKABLE QString getFileName(const QString& filePath);

    // Copies a file into a folder, whose path must end in "/", and processes events on the way.
    // Emits copyBegun, copyProgress at each change of the percent, copyProgress(100) and
    // copyCompleted. When it cannot begin, it emits error with the reason and returns false. Once
    // begun it runs to the end and returns true: a write that fails (disk full) or a medium that is
    // pulled goes unnoticed, so a caller that must be sure compares the files. It ends with false,
    // and half a copy, when this item is destroyed meanwhile.
    Q_INVOKABLE bool copyFile(const QString& sourceFilename, const QString& destinationFolder);
    // True when the file was there and has been removed; folders are not removed.
    Q_INVOKABLE bool deleteFile(const QString& path);
    // Deletes the files of a folder, whose path must end in "/", that are older than the current
    // version's entry in the versions store; all of them when there is no current version.
    Q_INVOKABLE void removeOldUpdates(const QString& filePath);
    // The first line of a regular file as UTF-8, with its line end; at most 64 KiB of it, and up to
    // a NUL byte if there is one.
    Q_INVOKABLE QString readOneLineFile(const QString& fname);
    // Names of the folders of the media folder that are mount points, by name ignoring case. A
    // folder that stands right after a plain one is never examined and always in the list.
    Q_INVOKABLE QStringList findMediaDevices();
    // What the platform's script getDiskSpace.sh prints, less its last character. Blocks until the
    // script has ended, while events are processed: for ever when there is no such script.
    Q_INVOKABLE QString availableDiskSize();
    // Bytes that the files in the two shared media folders take.
    Q_INVOKABLE qint64 storageSpaceSize();
    // Whether a file (a missing one counts as empty) still fits the shared media quota of 10 GiB.
    Q_INVOKABLE bool canCopyMediaFile(const QString& path);
    // What is left of that quota, as sizeFormat writes it.
    Q_INVOKABLE QString availableStorageMediaSize();
    // A byte count in whole units of 1024, rounded down, such as "1 KB"; the largest unit is TB.
    Q_INVOKABLE QString sizeFormat(qlonglong size);

signals:
    void copyCompleted();
    void copyBegun();
    // Why a copy cannot begin, an English sentence for the user.
    void error(const QString& message);
    // Per cent done, 0 to 100; one chunk of 1 MiB behind what has been copied.
    void copyProgress(int value);
    // Not emitted here; it belongs to the item's interface.
    void message(const QString& message);
    void listChanged();
    // The full path of a file that was there when it was chosen.
    void chooseFile(const QString& filePath);
    void enteredChanged();
    void disableChangingDirectoryChanged();

private:
    // The reason why a copy cannot begin goes out as the signal error.
    bool refuseCopy(const QString& reason);

    QString m_originalPath;
    QString m_currentPath;
    QString m_selectedPath;
    QStringList m_folderEntries;
    QStringList m_filterNames;
    bool m_isFile = false;
    bool m_disableChangingDirectory = false;
};

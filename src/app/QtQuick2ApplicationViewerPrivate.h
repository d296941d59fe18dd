#pragma once

#include <QString>

// What QtQuick2ApplicationViewer remembers, and where it looks for its QML files.
class QtQuick2ApplicationViewerPrivate
{
public:
    // The path of a file or folder that belongs to the program: beside the executable's folder if
    // it exists there, else inside the executable's folder, else the path as it was given. Needs
    // the application object.
    static QString adjustPath(const QString& path);

    // The adjusted path last given to setMainQmlFile(); empty before.
    QString mainQmlFile;
};

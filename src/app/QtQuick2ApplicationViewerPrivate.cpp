#include "app/QtQuick2ApplicationViewerPrivate.h"

#include <QCoreApplication>
#include <QFileInfo>

QString QtQuick2ApplicationViewerPrivate::adjustPath(const QString& path)
{
    // The folder above comes first: the QML tree normally lies beside the program's own folder.
    for (const char* const pattern : {"%1/../%2", "%1/%2"}) {
        QString candidate
            = QString::fromLatin1(pattern).arg(QCoreApplication::applicationDirPath(), path);
        if (QFileInfo::exists(candidate))
            return candidate;
    }
    return path;
}

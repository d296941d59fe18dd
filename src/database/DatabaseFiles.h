#pragma once

#include "database/PlatformFolders.h"

#include <QString>

// Where the platform keeps its databases, and their key.
namespace DatabaseFiles {

inline const QString sharedFolder = QStringLiteral("/opt/Merivon/Database/");
inline const QString sharedFile = QStringLiteral("merivon_database_enc.db");
inline const QString defaultsFolder
    = PlatformFolders::currentVersion + QStringLiteral("/Database/");
inline const QString defaultsFile = QStringLiteral("merivon_defaults.db");
inline const QString keyStatement = QStringLiteral("PRAGMA key='d8pantry%';");

} // namespace DatabaseFiles

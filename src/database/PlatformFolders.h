#pragma once

#include <QString>

// Where the platform keeps what it has installed.
namespace PlatformFolders {

// The versions store: a folder for each installed version, controller firmware images beside them.
inline const QString versionsStore = QStringLiteral("/opt/Merivon/Versions/");

// The store's entry for the version that the dispenser runs, without a trailing "/".
inline const QString currentVersion = versionsStore + QStringLiteral("Merivon-current");

} // namespace PlatformFolders

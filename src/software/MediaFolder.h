#pragma once

#include <QString>
#include <QStringList>

// Where the platform mounts removable media: one folder a medium, directly under "/media/" and the
// login name. The login name is the last component of the home directory, so that it is also right
// for a process that was started without a login session.
namespace MediaFolder {

// "/media/" and the login name, without a trailing "/".
QString path();

// Names of the folders in path(), links to folders included, hidden ones not, by name ignoring
// case. Empty when there is no such folder.
QStringList subfolders();

} // namespace MediaFolder

#pragma once

#include "software/Background.h"

#include <QByteArrayList>
#include <QString>
#include <QStringList>

// Where the platform mounts removable media: one folder a medium, directly under "/media/" and the
// login name. The login name is the last component of the home directory, so that it is also right
// for a process that was started without a login session.
namespace MediaFolder {

// "/media/" and the login name, without a trailing "/".
QString path();

// Names of the folders in path(), links to folders included, hidden ones not, by name ignoring
// case. As the file system spells them, since a stick's label need not be UTF-8. Empty when there
// is no such folder; the names read so far when `stop` is set.
QByteArrayList subfolders(const Background::Stop& stop = Background::never);

// Such names as texts; those that no text leads back to are left out.
QStringList texts(const QByteArrayList& names);

// The absolute path of one of them, spelled likewise.
QByteArray pathOf(const QByteArray& subfolder);

} // namespace MediaFolder

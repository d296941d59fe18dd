#pragma once

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
// is no such folder.
QByteArrayList subfolders();

// Such names as texts, to show; one that was not UTF-8 names no folder any more.
QStringList texts(const QByteArrayList& names);

// The absolute path of one of them, spelled likewise.
QByteArray pathOf(const QByteArray& subfolder);

} // namespace MediaFolder

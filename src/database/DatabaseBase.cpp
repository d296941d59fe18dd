#include "database/DatabaseBase.h"

#include "database/DatabaseFiles.h"
#include "database/ThreadConnection.h"

#include <QDir>

bool DatabaseBase::_debug = false;

DatabaseBase::DatabaseBase(QObject* parent) : QObject(parent)
{
    const QDir folder(DatabaseFiles::sharedFolder);
    if (!folder.exists())
        folder.mkpath(QStringLiteral("."));
    ThreadConnection::current().ensureRegistered();
}

DatabaseBase::~DatabaseBase()
{
    ThreadConnection::current().closeUnlessHeld();
}

QString DatabaseBase::connectionName()
{
    return ThreadConnection::name();
}

bool DatabaseBase::openDatabase()
{
    return ThreadConnection::current().open();
}

bool DatabaseBase::closeDatabase()
{
    return ThreadConnection::current().close();
}

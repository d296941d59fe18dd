#include "database/DatabaseBase.h"

#include "database/DatabaseFiles.h"
#include "database/SqlQuery.h"

#include <QDir>
#include <QtPlugin>

// The driver is linked statically; this source is in every program that uses the database.
Q_IMPORT_PLUGIN(SqlCipherPlugin)

namespace {

thread_local int holds = 0;

// Set once this very thread has registered its connection. The system gives the identifier of a
// dead thread to a later one, which then finds a connection of its own name that Qt will not let
// it use.
thread_local bool registered = false;

QSqlDatabase threadConnection()
{
    return QSqlDatabase::database(DatabaseBase::connectionName(), false);
}

void registerConnection()
{
    if (registered && threadConnection().isValid())
        return;
    const QString name = DatabaseBase::connectionName();
    const QString path
        = QDir::toNativeSeparators(DatabaseFiles::sharedFolder + DatabaseFiles::sharedFile);
    if (QSqlDatabase::contains(name))
        QSqlDatabase::removeDatabase(name);
    qDebug() << "threadDatabaseConnection created " << path;
    QSqlDatabase::addDatabase(QStringLiteral("QSQLCIPHER"), name).setDatabaseName(path);
    registered = true;
}

void logTiming(const QElapsedTimer& timer, const char* event)
{
    if (DatabaseBase::_debug)
        LogLine() << "[" << timer.elapsed() << "ms]" << DatabaseBase::connectionName() << event;
}

void logEmptyLine()
{
    if (DatabaseBase::_debug)
        LogLine() << "";
}

} // namespace

bool DatabaseBase::_debug = false;

DatabaseBase::ConnectionHold::ConnectionHold()
{
    ++holds;
}

DatabaseBase::ConnectionHold::~ConnectionHold()
{
    --holds;
}

DatabaseBase::DatabaseBase(QObject* parent) : QObject(parent)
{
    const QDir folder(DatabaseFiles::sharedFolder);
    if (!folder.exists())
        folder.mkpath(QStringLiteral("."));
    registerConnection();
}

DatabaseBase::~DatabaseBase()
{
    closeUnlessHeld();
}

QString DatabaseBase::connectionName()
{
    // Cut to 32 bits also where identifiers are longer: all processes of the platform do so.
    const auto identifier = reinterpret_cast<quintptr>(QThread::currentThreadId());
    return QStringLiteral("%1").arg(static_cast<qint64>(static_cast<qint32>(identifier)));
}

bool DatabaseBase::openDatabase()
{
    QElapsedTimer timer;
    timer.start();
    logEmptyLine();
    registerConnection(); // the object may have been made on another thread
    QSqlDatabase connection = threadConnection();
    if (connection.isOpen()) {
        logTiming(timer, "DB: IS OPEN");
        return true;
    }
    const bool opened = connection.open();
    logTiming(timer, "DB: OPENED");
    if (!opened)
        qDebug() << "Error:"
                 << "openDatabase" << connection.lastError();
    // Also after a failure, and without a look at the result: the statements that follow fail with
    // messages of their own, and a locked database is waited for here already.
    SqlQuery key;
    key.prepare(DatabaseFiles::keyStatement);
    key.exec();
    return opened;
}

bool DatabaseBase::closeDatabase()
{
    QElapsedTimer timer;
    timer.start();
    QSqlDatabase connection = threadConnection();
    connection.close();
    logTiming(timer, "DB: CLOSED ");
    if (connection.isOpen())
        qDebug() << "Error:"
                 << "closeDatabase" << connection.lastError();
    logEmptyLine();
    return connection.isOpen();
}

void DatabaseBase::closeUnlessHeld()
{
    if (holds == 0)
        closeDatabase();
}

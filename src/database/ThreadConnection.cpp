#include "database/ThreadConnection.h"

#include "database/DatabaseBase.h"
#include "database/DatabaseFiles.h"
#include "database/SqlQuery.h"

#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QThread>
#include <QtPlugin>

// The driver is linked statically; this source is in every program that uses the database.
Q_IMPORT_PLUGIN(SqlCipherPlugin)

namespace {

void logTiming(const QElapsedTimer& timer, const char* event)
{
    if (DatabaseBase::_debug)
        qDebug() << "[" << timer.elapsed() << "ms]" << ThreadConnection::name() << event;
}

void logEmptyLine()
{
    if (DatabaseBase::_debug)
        qDebug() << "";
}

} // namespace

ThreadConnection& ThreadConnection::current()
{
    static thread_local ThreadConnection connection;
    return connection;
}

QString ThreadConnection::name()
{
    // Cut to 32 bits also where identifiers are longer: all processes of the platform do so.
    static thread_local const QString ownName = QString::number(
        static_cast<qint32>(reinterpret_cast<quintptr>(QThread::currentThreadId())));
    return ownName;
}

QSqlDatabase ThreadConnection::database()
{
    return QSqlDatabase::database(name(), false);
}

void ThreadConnection::ensureRegistered()
{
    if (m_registered && database().isValid())
        return;
    const QString path
        = QDir::toNativeSeparators(DatabaseFiles::sharedFolder + DatabaseFiles::sharedFile);
    if (QSqlDatabase::contains(name()))
        QSqlDatabase::removeDatabase(name());
    qDebug() << "threadDatabaseConnection created " << path;
    QSqlDatabase::addDatabase(QStringLiteral("QSQLCIPHER"), name()).setDatabaseName(path);
    m_registered = true;
}

bool ThreadConnection::open()
{
    QElapsedTimer timer;
    timer.start();
    logEmptyLine();
    ensureRegistered();
    QSqlDatabase connection = database();
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

bool ThreadConnection::close()
{
    QElapsedTimer timer;
    timer.start();
    QSqlDatabase connection = database();
    connection.close();
    logTiming(timer, "DB: CLOSED ");
    if (connection.isOpen())
        qDebug() << "Error:"
                 << "closeDatabase" << connection.lastError();
    logEmptyLine();
    return connection.isOpen();
}

void ThreadConnection::closeUnlessHeld()
{
    if (m_holds == 0)
        close();
}

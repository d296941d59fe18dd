#include "database/AttachedDefaults.h"

#include "database/DatabaseBase.h"
#include "database/DatabaseFiles.h"

#include <QFileInfo>

AttachedDefaults::AttachedDefaults(DatabaseBase& database) : m_database(database)
{
    // Once, also where the connection has just been opened: the driver ignores a repeated key.
    m_database.genericQuery(DatabaseFiles::keyStatement);
    // SQLite would make the missing file, and attach it empty.
    if (QFileInfo(DatabaseFiles::defaultsFolder + DatabaseFiles::defaultsFile).isFile()
        && m_database.genericQuery(statement()))
        m_attached.emplace(LogDelay::Attachment);
}

AttachedDefaults::~AttachedDefaults()
{
    if (!areThere())
        return;
    if (!m_database.genericQuery(QStringLiteral("DETACH defaults")))
        m_database.closeDatabase(); // ends the attachment as well
    m_database.genericQuery(DatabaseFiles::keyStatement);
}

QString AttachedDefaults::statement()
{
    return QStringLiteral("ATTACH DATABASE '%1%2' AS defaults")
        .arg(DatabaseFiles::defaultsFolder, DatabaseFiles::defaultsFile);
}

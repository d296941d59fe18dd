// The plug-in is linked into the program, not loaded: it is there before the application object is.
#define QT_STATICPLUGIN

#include "sqlcipher/SqlCipherDriver.h"

#include <QSqlDriverPlugin>

#include <sqlite3.h>

namespace {

// Nobody asks the library how much memory it has in use, and to count that takes a lock for each
// allocation. It is told before its first use only; later it ignores this.
void leaveMemoryUncounted()
{
    [[maybe_unused]] static const int result = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

} // namespace

class SqlCipherPlugin : public QSqlDriverPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QSqlDriverFactoryInterface" FILE "sqlcipher.json")

public:
    QSqlDriver* create(const QString& key) override
    {
        leaveMemoryUncounted();
        return key == QLatin1String("QSQLCIPHER") ? new SqlCipherDriver : nullptr;
    }
};

#include "SqlCipherPlugin.moc"

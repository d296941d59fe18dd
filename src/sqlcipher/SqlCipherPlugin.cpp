// The plug-in is linked into the program, not loaded: it is there before the application object is.
#define QT_STATICPLUGIN

#include "sqlcipher/SqlCipherDriver.h"

#include <QSqlDriverPlugin>

class SqlCipherPlugin : public QSqlDriverPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QSqlDriverFactoryInterface" FILE "sqlcipher.json")

public:
    QSqlDriver* create(const QString& key) override
    {
        return key == QLatin1String("QSQLCIPHER") ? new SqlCipherDriver : nullptr;
    }
};

#include "SqlCipherPlugin.moc"

#include "Dispenser.h"
#include "config/UiConfig.h"

#include <QCoreApplication>

class UiConfigTest : public QObject
{
    Q_OBJECT

private slots:
    // What the kind of dispenser stands for is stored by the first start, since the platform's
    // other programs lay themselves out by it.
    void theKindAndItsSettingsMakeTheGeometry_data()
    {
        QTest::addColumn<QString>("setting");
        QTest::addColumn<QString>("geometry");
        QTest::newRow("kra")
            << "brandSpacing=7"
            << "7 KRA Pro 1920 1080 1920 1080 1920 1080 0 0 1920 360 300 420 false 0";
        QTest::newRow("talvo")
            << "brandWidth=500"
            << "500 Talvo 1920 1080 1920 1079 1810 1080 0 55 1920 360 300 20 false 4";
        QTest::newRow("talvogateway")
            << "brandWidth=500"
            << "500 Talvo Gateway 800 480 800 480 0 0 0 0 800 480 10 false 2";
    }

    void theKindAndItsSettingsMakeTheGeometry()
    {
        QFETCH(QString, setting);
        Dispenser::sql(QString("DELETE FROM dictionary; INSERT INTO dictionary VALUES "
                               "(null,'systemType','%1'), (null,'%2','%3')")
                           .arg(QTest::currentDataTag())
                           .arg(setting.section('=', 0, 0), setting.section('=', 1)));
        UiConfig* const config = UiConfig::getInstance();
        config->initialize();
        config->readFromDb();
        QTEST(Dispenser::sql("SELECT value FROM dictionary ORDER BY id").mid(1).join(' '),
              "geometry");
        // Kept: a gateway has its built-in brand size.
        const bool isOwn = config->getSystemType() == UiConfig::TALVO;
        QCOMPARE(config->property("brandWidth").toInt(), isOwn ? 500 : 420);
    }
};

DISPENSER_TEST_MAIN(UiConfigTest, QCoreApplication)

#include "tst_uiconfig.moc"

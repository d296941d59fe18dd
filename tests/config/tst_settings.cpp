#include "config/Settings.h"

#include "Dispenser.h"

#include <QCoreApplication>

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void namesAndDatesFollowTheLanguage()
    {
        const QString english = "Mon, Dec, Thursday, February 29, 2024";
        const QVector<QStringList> rows {{"english", english},
                                         {"french", "lun, déc, jeudi 29 février 2024"},
                                         {"German", english},
                                         {"spanish", "lun, dic, jueves, 29 de febrero de 2024"},
                                         {"german", "Mo., Dez, Donnerstag, 29. Februar 2024"}};
        Settings settings;
        for (const QStringList& row : rows) {
            settings.setLanguage(row.first());
            QCOMPARE(settings.getDayNames().value(0).toString().left(3) + ", "
                         + settings.getMonthNames().value(11).toString().left(3) + ", "
                         + settings.getDate(2, 29, 2024).toString(),
                     row.last());
        }
        QVERIFY(settings.getDayNames().size() == 7 && settings.getMonthNames().size() == 12);
        QVERIFY(settings.getDaysInMonth(2, 1, 2024) == 29);
        QVERIFY(settings.getDaysInMonth(2, 30, 2024) == 0);
        QCOMPARE(settings.getDate(13, 1, 2024), QVariant(QString()));
    }
};

DISPENSER_TEST_MAIN(SettingsTest, QCoreApplication)

#include "tst_settings.moc"

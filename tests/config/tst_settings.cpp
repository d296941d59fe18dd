#include "config/Settings.h"

#include "Dispenser.h"

#include <QCoreApplication>
#include <QTest>

class SettingsTest : public QObject
{
    Q_OBJECT

private slots:
    void namesAndDatesFollowTheLanguage()
    {
        const auto said = [](const char* word) {
            Settings settings;
            settings.setLanguage("french");
            settings.setLanguage(word);
            return QStringList {settings.getDayNames().first().toString().left(3),
                                settings.getMonthNames().last().toString().left(3),
                                settings.getDate(2, 29, 2024).toString()};
        };
        const QStringList english {"Mon", "Dec", "Thursday, February 29, 2024"};
        QCOMPARE(said("english"), english);
        QCOMPARE(said("German"), english);
        QCOMPARE(said("spanish"), QStringList({"lun", "dic", "jueves, 29 de febrero de 2024"}));
        QCOMPARE(said("french"), QStringList({"lun", "déc", "jeudi 29 février 2024"}));
        QCOMPARE(said("german"), QStringList({"Mo.", "Dez", "Donnerstag, 29. Februar 2024"}));
        QCOMPARE(Settings().getDayNames().size(), 7);
        QCOMPARE(Settings().getMonthNames().size(), 12);
    }

    void aDateThatDoesNotExistGivesNothing()
    {
        Settings settings;
        QCOMPARE(settings.getDaysInMonth(2, 1, 2024), 29);
        QCOMPARE(settings.getDaysInMonth(2, 30, 2024), 0);
        QCOMPARE(settings.getDate(13, 1, 2024), QVariant(QString()));
    }
};

DISPENSER_TEST_MAIN(SettingsTest, QCoreApplication)

#include "tst_settings.moc"

#include "Dispenser.h"

#include "software/SoftwareManager.h"

#include <QCoreApplication>
#include <QDir>

class TestSoftwareManager : public QObject
{
    Q_OBJECT

private slots:
    void listsTheStore()
    {
        const QDir store(Dispenser::versionsStore);
        QVERIFY(QDir(store).removeRecursively());
        for (const char* folder : {"b-2.00", "A b-1.00", "c-CURRENT", "plain", ".h-1"})
            QVERIFY(store.mkpath(folder));
        for (const char* file : {"MerivonMFV_88.15.hex", "merivonmfv_88_9.hex", "X_MFV_V88.hex",
                                 "Old-release.txt", "MerivonMFV_current.hex"})
            Dispenser::writeFile(store.filePath(file), "x");
        SoftwareManager manager;
        QCOMPARE(manager.getMerivonVersions(), QVariantList({"A b-1.00", "b-2.00"}));
        QCOMPARE(manager.getMFVVersions(), QVariantList({"88.15", "88"}));
    }

    void choosesOneCopyOfAName()
    {
        const QVector<QStringList> rows {
            // of the media "A", "STICK" and "z"; what is found
            {"z/a_mfv_v.hex|A/a_mfv_v.hex|A/f/a_mfv_v.hex", "A/a_mfv_v.hex"},
            {"z/a_MFV_V.hex|A/a_MFV_V.hex", "z/a_MFV_V.hex"},
            {"A/a_mfv_v.hex|z/A_mfv_v.hex", "A/a_mfv_v.hex"},
            {"A/A_mfv_v.hex|z/a_mfv_v.hex", "A/A_mfv_v.hex|z/a_mfv_v.hex"}};
        const QString media = Dispenser::mediaFolder();
        QDir(media + "STICK").removeRecursively();
        for (const QStringList& row : rows) {
            QDir(media + "A").removeRecursively();
            QDir(media + "z").removeRecursively();
            for (const QString& path : row.first().split('|'))
                Dispenser::writeFile(media + path, "x");
            const QStringList found = SoftwareManager().findAvailableSoftware();
            QCOMPARE(found.filter(".hex").join('|').remove(media), row.last());
        }
    }
};

DISPENSER_TEST_MAIN(TestSoftwareManager, QCoreApplication)

#include "tst_software_manager.moc"

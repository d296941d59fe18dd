#include "Dispenser.h"
#include "LogCapture.h"

#include "software/SoftwareManager.h"

#include <QCoreApplication>
#include <QDir>

#include <atomic>
#include <cstdio>
#include <thread>

namespace {

const QString media = Dispenser::mediaFolder();
const QString stick = media + QStringLiteral("STICK/");

// Paths on the media, separated by "|".
void put(const QString& paths)
{
    for (const QString& path : paths.split('|'))
        Dispenser::writeFile(media + path, "x");
}

QString onMedia(QStringList paths)
{
    return paths.replaceInStrings(QRegularExpression('^' + media), QString()).join('|');
}

} // namespace

class TestPackageDiscovery : public QObject
{
    Q_OBJECT

private slots:
    // The mounted stick stays, empty; its name comes after "A" and before "z".
    void init()
    {
        const QFileInfoList entries = QDir(media).entryInfoList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (const QFileInfo& entry : entries)
            entry.isDir() ? QDir(entry.filePath()).removeRecursively()
                          : QFile::remove(entry.filePath());
    }

    void listsOneCopyOfEachName()
    {
        const QString odd = QStringLiteral("A b/quillmark-%1 \n%2'\"`;\u00E9") + QString(222, 'n')
            + "-1.tar.gz"; // 255 bytes
        const QVector<QStringList> rows {
            // files, found
            {"STICK/a/a_mfv_v.hex|STICK/a_mfv_v.hex", "STICK/a_mfv_v.hex"},
            {"z/a_mfv_v.hex|A/a_mfv_v.hex|STICK/a_mfv_v.hex", "A/a_mfv_v.hex"},
            {"A/a_MFV_V.hex|z/a_MFV_V.hex", "z/a_MFV_V.hex"},
            {"A/a_mfv_v.hex|z/A_mfv_v.hex", "A/a_mfv_v.hex"},
            {"A/A_mfv_v.hex|z/a_mfv_v.hex", "A/A_mfv_v.hex|z/a_mfv_v.hex"},
            {"A/a_MFV_V.hex|STICK/9_MFV_V.hex|z/B_MFV_V.hex",
             "STICK/9_MFV_V.hex|z/B_MFV_V.hex|A/a_MFV_V.hex"},
            {"A/quillmark-a.tar.gz|A/quillmark-a-1.tar.gz.bak|A/my-quillmark-a-1.tar.gz|"
             "A/x_MFV-V1.hex|A/QUILLMARK-A-1.TAR.GZ|A/x_mfv_v2.HEX",
             "A/QUILLMARK-A-1.TAR.GZ|A/x_mfv_v2.HEX"},
            {"A/.a_MFV_V.hex|A/.f/a_MFV_V.hex|.A/a_MFV_V.hex|A/d_MFV_V.hex/b_MFV_V.hex",
             "A/d_MFV_V.hex/b_MFV_V.hex"},
            {odd, odd}};
        for (const QStringList& row : rows) {
            put(row.first());
            QCOMPARE(onMedia(SoftwareManager().findAvailableSoftware()), row.last());
            init();
        }
    }

    void namesTheMedia()
    {
        put("b/x|A/x|.hidden/x|file");
        SoftwareManager manager;
        QCOMPARE(manager.findMediaDevices(), QStringList({"A", "b", "BACKUP", "STICK"}));
        QVERIFY(manager.mediaDeviceExist());
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", "/home/nobody");
        QVERIFY(!manager.mediaDeviceExist() && manager.findAvailableSoftware().isEmpty());
        qputenv("HOME", home);
    }

    void walksDepthFirstFollowsLinksButNoLoopAndTellsOfWhatCannotBeRead()
    {
        put("STICK/b/z_MFV_V1.hex|STICK/b/C/y_MFV_V1.hex|STICK/B2/x_MFV_V1.hex|STICK/f/"
            "x_MFV_V1.hex|"
            "STICK/n_MFV_V1.hex|STICK/M_MFV_V1.hex|STICK/shut/x_MFV_V1.hex");
        QVERIFY(QFile::link("..", stick + "b/C/up") && QFile::link(stick, stick + "b/stick")
                && QFile::link("self", stick + "self") && QFile::link("B2", stick + "d")
                && QFile::link("nowhere", stick + "gone_MFV_V1.hex")
                && QFile::link("../n_MFV_V1.hex", stick + "B2/link_MFV_V1.hex"));
        QFile::setPermissions(stick + "shut", QFile::Permissions());
        const QByteArray latin1 = QFile::encodeName(stick) + "caf\xE9";
        QCOMPARE(rename(QFile::encodeName(stick) + "f", latin1), 0);
        const LogCapture log;
        QDir::setCurrent(media);
        const QStringList found = SoftwareManager().getDirRecursivly("STICK");
        rename(latin1, QFile::encodeName(stick) + "readable");
        put("other/w_MFV_V1.hex"); // so may a medium be called
        const QByteArray medium = QFile::encodeName(media) + "caf\xE9";
        QCOMPARE(rename(QFile::encodeName(media) + "other", medium), 0);
        QVERIFY(SoftwareManager().findMediaDevices().contains(QStringLiteral("caf\uFFFD")));
        QVERIFY(onMedia(SoftwareManager().findAvailableSoftware())
                    .contains(QStringLiteral("caf\uFFFD/w_MFV_V1.hex")));
        rename(medium, QFile::encodeName(media) + "other");
        QCOMPARE(onMedia(found).remove("STICK/").remove("_MFV_V1.hex"),
                 QStringLiteral("M|n|b/z|b/C/y|B2/link|B2/x|caf\uFFFD/x|d/link|d/x"));
        QVERIFY(log.count("cannot read folder: ") > 0);
        QVERIFY(log.count("name is not UTF-8") > 0);
    }

    void surelyFindsWhatStaysWhileTheRestVanishes()
    {
        put("STICK/stays/x_MFV_V1.hex");
        std::atomic<bool> done {false};
        std::thread technician([&done] {
            while (!done) {
                put("STICK/f/g/y_MFV_V1.hex|STICK/h/i/y_MFV_V1.hex");
                QDir(stick + "f").removeRecursively();
                QDir(stick + "h").removeRecursively();
            }
        });
        int found = 0;
        for (int i = 0; i < 2000; ++i)
            found += SoftwareManager().getDirRecursivly(stick).count(stick + "stays/x_MFV_V1.hex");
        done = true;
        technician.join();
        QCOMPARE(found, 2000);
    }

    void splitsPackageNamesAndLogsThem()
    {
        const QVector<QStringList> rows {{"quillmark-base-1.03.00.tar.gz", "base", "1.03.00"},
                                         {"/quillmark-x/quillmark-b-ui-2.tar.gz", "b-ui", "2"},
                                         {"quillmark--.tar.gz", "", ""},
                                         {"QUILLMARK-BASE-1.0.TAR.GZ"},
                                         {"quillmark-base.tar.gz"}};
        for (const QStringList& row : rows) {
            const LogCapture log;
            QCOMPARE(SoftwareManager().getNameVersion(row.first()), row.mid(1));
            QCOMPARE(log.lines(),
                     QStringList(QStringLiteral("file:  \"%1\" , name:  \"%2\" , version:  \"%3\"")
                                     .arg(row.at(0), row.value(1), row.value(2))));
        }
    }
};

DISPENSER_TEST_MAIN(TestPackageDiscovery, QCoreApplication)

#include "tst_package_discovery.moc"

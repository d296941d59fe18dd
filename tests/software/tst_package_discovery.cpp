#include "Dispenser.h"

#include "software/SoftwareManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <atomic>
#include <sys/stat.h>
#include <thread>

namespace {

const QString media = Dispenser::mediaFolder();
const QString stick = media + QStringLiteral("STICK/");

void put(const QStringList& paths)
{
    for (const QString& path : paths)
        Dispenser::writeFile(media + path, "x");
}

QStringList relative(QStringList paths)
{
    return paths.replaceInStrings(QRegularExpression('^' + media), QString());
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

    // Paths on the media, separated by "|".
    void listsOneCopyOfEachName_data()
    {
        QTest::addColumn<QString>("files");
        QTest::addColumn<QString>("found");

        QTest::newRow("folders first") << "STICK/a/a_mfv_v.hex|STICK/a_mfv_v.hex"
                                       << "STICK/a_mfv_v.hex";
        QTest::newRow("lower: first") << "z/a_mfv_v.hex|A/a_mfv_v.hex|STICK/a_mfv_v.hex"
                                      << "A/a_mfv_v.hex";
        QTest::newRow("capitals: last") << "A/a_MFV_V.hex|z/a_MFV_V.hex"
                                        << "z/a_MFV_V.hex";
        QTest::newRow("lower, mixed") << "A/a_mfv_v.hex|z/A_mfv_v.hex"
                                      << "A/a_mfv_v.hex";
        QTest::newRow("mixed, lower") << "A/A_mfv_v.hex|z/a_mfv_v.hex"
                                      << "A/A_mfv_v.hex|z/a_mfv_v.hex";
        QTest::newRow("by character") << "A/a_MFV_V.hex|STICK/9_MFV_V.hex|z/B_MFV_V.hex"
                                      << "STICK/9_MFV_V.hex|z/B_MFV_V.hex|A/a_MFV_V.hex";
        QTest::newRow("whole names, ignoring case")
            << "A/quillmark-a.tar.gz|A/quillmark-a-1.tar.gz.bak|A/my-quillmark-a-1.tar.gz|"
               "A/x_MFV-V1.hex|A/QUILLMARK-A-1.TAR.GZ|A/x_mfv_v2.HEX"
            << "A/QUILLMARK-A-1.TAR.GZ|A/x_mfv_v2.HEX";
        QTest::newRow("hidden, and a folder named like a file")
            << "A/.a_MFV_V.hex|A/.f/a_MFV_V.hex|.A/a_MFV_V.hex|A/d_MFV_V.hex/b_MFV_V.hex"
            << "A/d_MFV_V.hex/b_MFV_V.hex";
        const QString odd = "A b/quillmark- \n-1.tar.gz|A b/quillmark-%1 %2-1.tar.gz|"
                            "A b/quillmark-'\"`;-1.tar.gz|A b/quillmark-\xC3\xA9"
            + QString(234, 'n') + "-1.tar.gz";
        QTest::newRow("odd and longest names") << odd << odd;
    }

    void listsOneCopyOfEachName()
    {
        QFETCH(QString, files);
        QFETCH(QString, found);
        put(files.split('|', Qt::SkipEmptyParts));
        QCOMPARE(relative(SoftwareManager().findAvailableSoftware()).join('|'), found);
    }

    void namesTheMedia()
    {
        put({"b/x", "A/x", ".hidden/x", "file"});
        SoftwareManager manager;
        QCOMPARE(manager.findMediaDevices(), QStringList({"A", "b", "BACKUP", "STICK"}));
        QVERIFY(manager.mediaDeviceExist());
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", "/home/nobody");
        QVERIFY(!manager.mediaDeviceExist());
        QCOMPARE(manager.findAvailableSoftware(), QStringList());
        qputenv("HOME", home);
    }

    void walksDepthFirstAndFollowsLinksButNoLoop()
    {
        put({"STICK/b/z_MFV_V1.hex", "STICK/b/C/y_MFV_V1.hex", "STICK/B2/x_MFV_V1.hex",
             "STICK/n_MFV_V1.hex", "STICK/M_MFV_V1.hex"});
        QVERIFY(QFile::link("..", stick + "b/C/up") && QFile::link(stick, stick + "b/stick")
                && QFile::link("self", stick + "self") && QFile::link("B2", stick + "d")
                && QFile::link("nowhere", stick + "gone_MFV_V1.hex")
                && QFile::link("../n_MFV_V1.hex", stick + "B2/link_MFV_V1.hex"));
        const QString expected = "M|n|b/z|b/C/y|B2/link|B2/x|d/link|d/x";
        SoftwareManager manager;
        QStringList found = manager.getDirRecursivly(stick);
        QCOMPARE(found.replaceInStrings(stick, "").replaceInStrings("_MFV_V1.hex", "").join('|'),
                 expected);
        QDir::setCurrent(media);
        QCOMPARE(manager.getDirRecursivly("STICK/B2").value(1), stick + "B2/x_MFV_V1.hex");
        QDir::setCurrent("/");
        QCOMPARE(manager.getDirRecursivly(stick + "n_MFV_V1.hex"), QStringList());
    }

    void tellsOfWhatCannotBeReadAndGoesOn()
    {
        put({"STICK/shut/x_MFV_V1.hex", "STICK/y_MFV_V1.hex", "STICK/z/x_MFV_V1.hex"});
        const QByteArray latin1 = QFile::encodeName(stick) + "caf\xE9";
        QCOMPARE(mkdir(latin1.constData(), 0777), 0);
        QCOMPARE(rename(QFile::encodeName(stick) + "y_MFV_V1.hex", latin1 + "/y_MFV_V1.hex"), 0);
        QFile::setPermissions(stick + "shut", QFile::Permissions());
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("cannot read folder:.*shut"));
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("name is not UTF-8.*caf.xE9"));
        QCOMPARE(
            relative(SoftwareManager().getDirRecursivly(stick)),
            QStringList({QStringLiteral("STICK/caf\uFFFD/y_MFV_V1.hex"), "STICK/z/x_MFV_V1.hex"}));
        rename(latin1, QFile::encodeName(stick) + "readable");
    }

    void surelyFindsWhatStaysWhileTheRestVanishes()
    {
        put({"STICK/stays/x_MFV_V1.hex"});
        std::atomic<bool> done {false};
        std::thread technician([&] {
            while (!done) {
                for (int i = 0; i < 50; ++i)
                    put({QStringLiteral("STICK/f%1/g/y%1_MFV_V1.hex").arg(i)});
                for (int i = 0; i < 50; ++i)
                    QDir(stick + 'f' + QString::number(i)).removeRecursively();
            }
        });
        int found = 0;
        SoftwareManager manager;
        for (int i = 0; i < 100; ++i)
            found += manager.getDirRecursivly(stick).count(stick + "stays/x_MFV_V1.hex");
        done = true;
        technician.join();
        QCOMPARE(found, 100);
    }

    void splitsPackageNamesAndLogsThem()
    {
        const QVector<QStringList> rows {{"quillmark-base-1.03.00.tar.gz", "base", "1.03.00"},
                                         {"/quillmark-x/quillmark-b-ui-2.tar.gz", "b-ui", "2"},
                                         {"quillmark--.tar.gz", "", ""},
                                         {"QUILLMARK-BASE-1.0.TAR.GZ"},
                                         {"quillmark-base.tar.gz"}};
        for (const QStringList& row : rows) {
            const QStringList pieces = row + QStringList {"", ""};
            const QString line = "file:  \"" + pieces.mid(0, 3).join("\" , \\w+:  \"") + '"';
            QTest::ignoreMessage(QtDebugMsg, QRegularExpression(line));
            QCOMPARE(SoftwareManager().getNameVersion(row.first()), row.mid(1));
        }
    }
};

DISPENSER_TEST_MAIN(TestPackageDiscovery, QCoreApplication)

#include "tst_package_discovery.moc"

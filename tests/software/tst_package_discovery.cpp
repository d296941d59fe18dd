#include "Dispenser.h"
#include "LogCapture.h"

#include "software/SoftwareManager.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>

#include <algorithm>
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

    // A real folder always, what links lead to besides once and on the medium only: the links come
    // first in one order and last in the other.
    void walksDepthFirstAndFollowsLinksOnTheirMedium()
    {
        put("STICK/b/z_MFV_V1.hex|STICK/b/C/y_MFV_V1.hex|STICK/B2/x_MFV_V1.hex|"
            "STICK/n_MFV_V1.hex|STICK/M_MFV_V1.hex|STICK/shut/x_MFV_V1.hex|"
            "BACKUP/v_MFV_V1.hex|BACKUP/f/u_MFV_V1.hex");
        const QMap<QString, QString> links {{"a", "b/C"},
                                            {"b/C/up", ".."},
                                            {"b/stick", stick},
                                            {"self", "self"},
                                            {"d", "B2"},
                                            {"gone_MFV_V1.hex", "nowhere"},
                                            {"none", "M_MFV_V1.hex/none"},
                                            {"B2/link_MFV_V1.hex", "../n_MFV_V1.hex"},
                                            {"s/root", "/"},
                                            {"s/proc", "/proc"},
                                            {"s/sys", "/sys"},
                                            {"s/other", media + "BACKUP"},
                                            {"s/off_MFV_V1.hex", media + "BACKUP/v_MFV_V1.hex"},
                                            {"blind_MFV_V1.hex", "shut/x_MFV_V1.hex"}};
        QVERIFY(QDir().mkdir(stick + "s"));
        for (auto link = links.begin(); link != links.end(); ++link)
            QVERIFY(QFile::link(link.value(), stick + link.key()));
        // Dated beyond what 32 bits hold, as by a clock that was wrong.
        QDir::setCurrent(stick);
        QCOMPARE(QProcess::execute("touch", {"-d", "2040-01-01", "b", "b/C", "n_MFV_V1.hex"}), 0);
        QFile::setPermissions(stick + "shut", QFile::Permissions());
        const LogCapture log;
        QDir::setCurrent(media);
        const QStringList found = SoftwareManager().getDirRecursivly("STICK");
        QFile::setPermissions(stick + "shut",
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(onMedia(found).remove("STICK/").remove("_MFV_V1.hex"),
                 QString("M|n|a/y|a/up/z|b/z|b/C/y|B2/link|B2/x"));
        QCOMPARE(log.count("leads off the medium"), 5);
        QCOMPARE(log.count("Permission denied"), 2);
        QCOMPARE(log.lines().size(), 7);
    }

    // Every path through ten such folders would be millions.
    void searchesFoldersThatLinkOneAnotherTwiceAtMost()
    {
        for (int i = 0; i < 10; ++i) {
            const QString folder = QString::number(i);
            put("STICK/" + folder + "/x_MFV_V1.hex");
            for (int other = 0; other < 10; ++other)
                QFile::link("../" + QString::number(other),
                            stick + folder + "/to" + QString::number(other));
        }
        const QStringList found = SoftwareManager().getDirRecursivly(stick);
        for (int i = 0; i < 10; ++i)
            QVERIFY(found.contains(stick + QString::number(i) + "/x_MFV_V1.hex"));
        QVERIFY(found.size() <= 20);
    }

    // A name that no text leads to is left out before it could stand for one that can be opened.
    void leavesOutWhatIsNotUtf8AndSaysSo()
    {
        const QString twin = QStringLiteral("quillmark-caf\uFFFD-1.tar.gz");
        put("A/file|A/folder/x_MFV_V1.hex|other/w_MFV_V1.hex|STICK/" + twin);
        const QByteArray to = QFile::encodeName(media);
        QVector<QByteArrayList> renamed {{to + "A/file", to + "A/quillmark-caf\xE9-1.tar.gz"},
                                         {to + "A/folder", to + "A/caf\xE9"},
                                         {to + "other", to + "caf\xE9"}};
        for (const QByteArrayList& names : renamed)
            QCOMPARE(rename(names.first(), names.last()), 0);
        const LogCapture log;
        const QStringList found = SoftwareManager().findAvailableSoftware();
        const QStringList devices = SoftwareManager().findMediaDevices();
        QCOMPARE(rename(renamed.last().last(), renamed.last().first()), 0);
        QCOMPARE(onMedia(found), "STICK/" + twin);
        QCOMPARE(devices.join('|'), QString("A|BACKUP|STICK"));
        QCOMPARE(log.count("not UTF-8"), 3);
    }

    // A thousand repeats of a line reboot the device.
    void repeatsNoLogLine()
    {
        for (int i = 0; i < 1001; ++i)
            put(QStringLiteral("STICK/%1/A_MFV_V1.hex").arg(i));
        const LogCapture log;
        QCOMPARE(SoftwareManager().findAvailableSoftware().size(), 1);
        QStringList lines = log.lines();
        const int all = lines.size();
        lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
        QCOMPARE(lines.size(), all);
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

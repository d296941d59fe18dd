#include "Dispenser.h"

#include "software/FileHelper.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <limits>
#include <sys/stat.h>

namespace {

const QStringList filters {"quillmark-*.tar.gz", "*.hex"};
const QString currentVersion = QStringLiteral("/opt/Merivon/Versions/Merivon-current");

void writeSparse(const QString& path, qint64 size)
{
    Dispenser::writeFile(path, {});
    QFile::resize(path, size);
}

} // namespace

class TestFileHelper : public QObject
{
    Q_OBJECT

    QScopedPointer<QTemporaryDir> m_folder;
    QScopedPointer<FileHelper> m_helper;
    QStringList m_heard; // of a copy, in its order

    QString at(const QString& name) const { return m_folder->filePath(name); }

    void put(const QStringList& files) const
    {
        for (const QString& file : files)
            Dispenser::writeFile(at(file), file.toUtf8());
    }

private slots:
    void init()
    {
        m_folder.reset(new QTemporaryDir);
        m_helper.reset(new FileHelper);
        m_helper->setFilterNames(filters);
        m_heard.clear();
        connect(m_helper.get(), &FileHelper::copyBegun, [this] { m_heard += "begun"; });
        connect(m_helper.get(), &FileHelper::copyCompleted, [this] { m_heard += "completed"; });
        connect(m_helper.get(), &FileHelper::error, [this](const QString& t) { m_heard += t; });
        connect(m_helper.get(), &FileHelper::copyProgress,
                [this](int percent) { m_heard += QString::number(percent); });
    }

    void listsFoldersThenFilesBySuffixAndName()
    {
        put({"sub/x", "Zub/x", "a.b/x", ".hidden/x", "a.hex", "B.hex", "A.HEX", ".a.hex",
             "quillmark-x-1.0.tar.gz", "notes.txt", "shut.hex"});
        QFile::setPermissions(at("shut.hex"), QFile::Permissions());
        QVERIFY(QFile::link("a.hex", at("l.hex")) && QFile::link("sub", at("l")));
        QCOMPARE(mkfifo(QFile::encodeName(at("pipe.hex")), 0666), 0);
        m_helper->setCurrentPath(m_folder->path());
        m_helper->setFilterNames(filters + QStringList {"quillmark*", "["});
        QCOMPARE(m_helper->folderEntries().join('|'),
                 "Zub|sub|a.b|quillmark-x-1.0.tar.gz|B.hex|a.hex");
        m_helper->setOriginalPath();
        QCOMPARE(m_helper->folderEntries().join('|'),
                 "Zub|sub|a.b|quillmark-x-1.0.tar.gz|quillmark-x-1.0.tar.gz|B.hex|a.hex");
    }

    void walksDownAndUpButNotAboveTheTop()
    {
        put({"a/b/x.hex"});
        QSignalSpy listed(m_helper.get(), &FileHelper::listChanged);
        QSignalSpy entered(m_helper.get(), &FileHelper::enteredChanged);
        m_helper->setCurrentPath(at("a"));
        m_helper->enterFolder("b");
        m_helper->enterFolder("x.hex");
        QVERIFY(m_helper->isFile());
        QCOMPARE(m_helper->currentPath(), at("a/b"));
        QCOMPARE(m_helper->selectedPath(), at("a/b/x.hex"));
        m_helper->setDisableChangingDirectory(true);
        m_helper->leaveFolder();
        QCOMPARE(m_helper->currentPath(), at("a/b"));
        QVERIFY(!m_helper->isFile());
        m_helper->setDisableChangingDirectory(false);
        m_helper->leaveFolder();
        m_helper->leaveFolder();
        QCOMPARE(m_helper->currentPath(), at("a"));
        QCOMPARE(QList<int>({listed.count(), entered.count()}), QList<int>({5, 5}));

        FileHelper unbound;
        unbound.setCurrentPath(at("a/"));
        for (int i = 0; i < 5; ++i)
            unbound.leaveFolder();
        QCOMPARE(unbound.currentPath(), QString("/"));
        unbound.setOriginalPath();
        QCOMPARE(unbound.currentPath(), at("a"));
    }

    void choosesOnlyAFileThatIsStillThere()
    {
        const QString name = QStringLiteral("quillmark-'%1\"\n x.tar.gz");
        put({name, "b.hex"});
        m_helper->setVisible(false);
        m_helper->setCurrentPath(m_folder->path());
        m_helper->show();
        QSignalSpy chosen(m_helper.get(), &FileHelper::chooseFile);
        m_helper->choose();
        m_helper->enterFolder("b.hex");
        QFile::remove(at("b.hex"));
        m_helper->choose();
        QVERIFY(chosen.isEmpty() && m_helper->isVisible());
        m_helper->enterFolder(m_helper->folderEntries().first());
        m_helper->choose();
        QVERIFY(!m_helper->isVisible());
        QCOMPARE(chosen.value(0).value(0).toString(), at(name));
    }

    void findsTheWayOutOfAFolderThatVanished()
    {
        put({"stick/a/x"});
        m_helper->setCurrentPath(m_folder->path());
        m_helper->enterFolder("stick");
        m_helper->enterFolder("a");
        QDir(at("stick")).removeRecursively();
        m_helper->enterFolder("x");
        QVERIFY(!m_helper->isFile());
        m_helper->leaveFolder();
        m_helper->leaveFolder();
        QCOMPARE(m_helper->currentPath(), m_folder->path());
    }

    void listsByMediaType()
    {
        put({"sub/x", "Big/x", "b.PNG", "A.jpeg", "c.mp4", "device-config2.tar.gz",
             "e-iot-config.tar.gz", ".f.png"});
        QVERIFY(QFile::link("b.PNG", at("link.png")));
        const QString path = m_folder->path();
        QCOMPARE(m_helper->getImagesAndFolders(path).join('|'), "Big|sub|A.jpeg|b.PNG");
        QCOMPARE(m_helper->getIoTConfigFilesAndFolders(path).value(2), "device-config2.tar.gz");
        QCOMPARE(m_helper->getDirContents(path, -1).size(), 7);
        for (const QString& nowhere : {at("b.PNG"), at("gone"), QString()})
            QCOMPARE(m_helper->getAllInFolder(nowhere), QStringList());
    }

    void copiesInChunksAndTellsTheProgressOfTheOneBefore()
    {
        put({"to/x"});
        Dispenser::writeFile(at("film %1.mp4"), QByteArray("0123456").repeated(3670016 / 7));
        int rounds = 0;
        QTimer events;
        events.callOnTimeout([&] { ++rounds; });
        events.start(0);
        QVERIFY(m_helper->copyFile(at("film %1.mp4"), at("to/")));
        QCOMPARE(m_heard.join('|'), "begun|28|57|85|100|completed");
        QCOMPARE(rounds, 4);
        QCOMPARE(QProcess::execute("cmp", {at("film %1.mp4"), at("to/film %1.mp4")}), 0);
        m_heard.clear();
        writeSparse(at("empty"), 0);
        QVERIFY(m_helper->copyFile(at("empty"), at("to/")));
        QCOMPARE(m_heard.join('|'), "begun|100|completed");
    }

    void refusesACopyThatCannotBegin()
    {
        put({"a%1", "to/a%1", "shut/x"});
        QFile::setPermissions(at("shut"), QFile::ReadOwner | QFile::ExeOwner);
        QVERIFY(!m_helper->copyFile(at("gone"), "/nowhere/"));
        QVERIFY(!m_helper->copyFile(at("to"), "/nowhere/"));
        for (const QString& folder : {at("nowhere/"), at("to/"), at("shut/")})
            QVERIFY(!m_helper->copyFile(at("a%1"), folder));
        QFile::setPermissions(at("shut"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(m_heard,
                 QStringList({"Error: File '" + at("gone") + "' doesn't exist.",
                              "Error: Can't access file '" + at("to") + "'.",
                              "Error: Destination folder doesn't exist.",
                              "Warning: File already exists.", "Error: Permission denied"}));
        QCOMPARE(m_helper->readOneLineFile(at("to/a%1")), QString("to/a%1"));
    }

    void comesToAnEndWhenTheDiskIsFullOrTheSourceVanishes()
    {
        const QString whole = QStringLiteral("begun|25|50|75|100|completed");
        const QTemporaryDir small("/run/small/XXXXXX");
        writeSparse(at("film"), 4 << 20);
        QVERIFY(m_helper->copyFile(at("film"), small.path() + '/'));
        QCOMPARE(m_heard.join('|'), whole);
        QVERIFY(QFileInfo(small.filePath("film")).size() <= 1 << 20);

        put({"to/x"});
        m_heard.clear();
        connect(m_helper.get(), &FileHelper::copyProgress,
                [&] { QFile::resize(at("film"), 0) && QFile::remove(at("film")); });
        QVERIFY(m_helper->copyFile(at("film"), at("to/")));
        QCOMPARE(m_heard.join('|'), whole);
        QCOMPARE(QFileInfo(at("to/film")).size(), 2 << 20);
    }

    void removesUpdatesOlderThanTheCurrentVersion()
    {
        put({"a/newer", "a/older", "a/same", "a/sub/x"});
        const QString path = at("a/");
        auto time = QDateTime::fromSecsSinceEpoch(m_helper->getFileTime(currentVersion) - 1);
        for (const char* name : {"older", "same", "newer"}) {
            QFile file(path + name);
            QVERIFY(file.open(QFile::ReadWrite)
                    && file.setFileTime(time, QFile::FileModificationTime));
            time = time.addSecs(1);
        }
        for (const char* line : {"FileHelper::deleteFile :  \"", "Delete old update file  \""})
            QTest::ignoreMessage(QtDebugMsg, qPrintable(line + path + "older\""));
        m_helper->removeOldUpdates(path);
        QCOMPARE(m_helper->getAllInFolder(path).join('|'), "newer|same|sub");
        QVERIFY(!m_helper->deleteFile(path + "older"));

        QVERIFY(QDir().rename(currentVersion, currentVersion + ".away"));
        m_helper->removeOldUpdates(path);
        QVERIFY(QDir().rename(currentVersion + ".away", currentVersion));
        QCOMPARE(m_helper->getAllInFolder(path).join('|'), "sub");
    }

    void readsTheFirstLineAsText()
    {
        const QString line = QStringLiteral("caf\u00E9\n");
        Dispenser::writeFile(at("line"), line.toUtf8() + "rest");
        QCOMPARE(m_helper->readOneLineFile(at("line")), line);
        Dispenser::writeFile(at("line"), QByteArray("ab\0cd\n", 6));
        QCOMPARE(m_helper->readOneLineFile(at("line")), QString("ab"));
        QCOMPARE(m_helper->readOneLineFile(at("gone")), QString());
    }

    // Around the mounted sticks: of two plain folders in a row only the first goes.
    void skipsTheFolderAfterOneThatIsNotMounted()
    {
        for (const char* name : {"a1", "a2", "Z1", "Z2", "Z3"})
            QVERIFY(QDir().mkpath(Dispenser::mediaFolder() + name));
        QCOMPARE(m_helper->findMediaDevices().join('|'), "a2|BACKUP|STICK|Z2");
    }

    void keepsTheQuotaOfTheSharedMedia()
    {
        const QString shared = QStringLiteral("/opt/Merivon/Videos/Shared/");
        writeSparse(shared + "sub/not counted", 1000);
        const qint64 most = 10737418239;
        writeSparse(shared + "big.bin", most - m_helper->storageSpaceSize());
        QCOMPARE(m_helper->storageSpaceSize(), most);
        put({"1"});
        QVERIFY(!m_helper->canCopyMediaFile(at("1")) && m_helper->canCopyMediaFile(at("gone")));
        QCOMPARE(m_helper->availableStorageMediaSize(), QString("1 B"));
        QFile::remove(shared + "big.bin");
    }

    void tellsSizes()
    {
        const qint64 tera = Q_INT64_C(1) << 40;
        const QMap<qint64, QString> texts {
            {0, "0 B"},        {1023, "1023 B"},         {1024, "1 KB"}, {1048575, "1023 KB"},
            {1048576, "1 MB"}, {5120 * tera, "5120 TB"}, {-5, "-4 B"},   {-tera, "-2147483648 B"}};
        for (auto text = texts.begin(); text != texts.end(); ++text)
            QCOMPARE(m_helper->sizeFormat(text.key()), text.value());
        Dispenser::writeScript(Dispenser::scriptsFolder + "getDiskSpace.sh", "echo 12G free");
        QCOMPARE(m_helper->availableDiskSize(), QString("12G free"));
    }
};

DISPENSER_TEST_MAIN(TestFileHelper, QCoreApplication)

#include "tst_file_helper.moc"

#include "Dispenser.h"

#include "software/FileHelper.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/stat.h>

namespace {

const QString currentVersion = QStringLiteral("/opt/Merivon/Versions/Merivon-current");

// What a copy tells, in its order, and its result.
QString copied(const QString& file, const QString& folder)
{
    FileHelper helper;
    QStringList told;
    const auto tell = [&told](const QString& what) { told += what; };
    QObject::connect(&helper, &FileHelper::copyBegun, [&] { tell("begun"); });
    QObject::connect(&helper, &FileHelper::copyCompleted, [&] { tell("completed"); });
    QObject::connect(&helper, &FileHelper::copyProgress, [&](int n) { tell(QString::number(n)); });
    QObject::connect(&helper, &FileHelper::error, tell);
    tell(helper.copyFile(file, folder) ? "true" : "false");
    return told.join('|');
}

} // namespace

class TestFileHelper : public QObject
{
    Q_OBJECT

    QScopedPointer<QTemporaryDir> m_folder;
    QScopedPointer<FileHelper> m_helper;

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
        m_helper->setFilterNames({"quillmark-*.tar.gz", "*.hex"});
    }

    void listsForTheChooserAndByMediaType()
    {
        put({"sub/x", "Zub/x", "a.b/x", ".hidden/x", "a.hex", "B.hex", "A.HEX", ".a.hex",
             "quillmark-x-1.0.tar.gz", "shut.hex", "b.PNG", "A.jpeg", ".f.png", "c.mp4",
             "device-config2.tar.gz", "e-iot-config.tar.gz"});
        QFile::setPermissions(at("shut.hex"), QFile::Permissions());
        QVERIFY(QFile::link("a.hex", at("l.hex")) && QFile::link("sub", at("l"))
                && QFile::link("b.PNG", at("link.png")));
        QCOMPARE(mkfifo(QFile::encodeName(at("pipe.hex")), 0666), 0);
        const QString path = m_folder->path();
        m_helper->setCurrentPath(path);
        m_helper->setFilterNames({"quillmark*", "quillmark-*.tar.gz", "["});
        QCOMPARE(m_helper->folderEntries().join('|'),
                 "Zub|sub|a.b|quillmark-x-1.0.tar.gz|B.hex|a.hex");
        m_helper->setOriginalPath();
        QCOMPARE(m_helper->folderEntries().join('|'),
                 "Zub|sub|a.b|quillmark-x-1.0.tar.gz|quillmark-x-1.0.tar.gz");
        QCOMPARE(m_helper->getImagesAndFolders(path).join('|'), "a.b|sub|Zub|A.jpeg|b.PNG");
        QCOMPARE(m_helper->getIoTConfigFilesAndFolders(path).value(3), "device-config2.tar.gz");
        QCOMPARE(m_helper->getDirContents(path, -1).size(), 13);
        for (const QString& nowhere : {at("b.PNG"), at("gone"), QString()})
            QVERIFY(m_helper->getAllInFolder(nowhere).isEmpty());
    }

    void walksDownAndUpAndChoosesWhatIsThere()
    {
        const QString name = QStringLiteral("quillmark-'%1\"\n x.tar.gz");
        put({"a/b/" + name});
        QSignalSpy listed(m_helper.get(), &FileHelper::listChanged);
        QSignalSpy entered(m_helper.get(), &FileHelper::enteredChanged);
        QSignalSpy chosen(m_helper.get(), &FileHelper::chooseFile);
        m_helper->setCurrentPath(at("a"));
        m_helper->enterFolder("b");
        m_helper->enterFolder(m_helper->folderEntries().value(0));
        m_helper->choose();
        QVERIFY(m_helper->isFile() && !m_helper->isVisible());
        m_helper->show();
        QVERIFY(!m_helper->isFile() && m_helper->isVisible() && m_helper->currentPath() == at("a"));
        m_helper->enterFolder("b");
        m_helper->setDisableChangingDirectory(true);
        m_helper->leaveFolder();
        QCOMPARE(m_helper->currentPath(), at("a/b"));
        m_helper->setDisableChangingDirectory(false);
        QDir(at("a")).removeRecursively(); // as when a stick is pulled
        m_helper->enterFolder(name);
        m_helper->choose();
        m_helper->leaveFolder();
        m_helper->leaveFolder();
        QVERIFY(m_helper->isVisible() && m_helper->currentPath() == at("a"));
        QVERIFY(listed.count() == 7 && entered.count() == 8);
        QVERIFY(chosen == QList<QVariantList> {{at("a/b/" + name)}});

        FileHelper unbound;
        unbound.setCurrentPath(at("a/"));
        for (int i = 0; i < 5; ++i)
            unbound.leaveFolder();
        QCOMPARE(unbound.currentPath(), QString("/"));
    }

    // Also when the disk is full (of one mebibyte) and when the source vanishes half-way.
    void copiesToTheEndAndTellsTheProgressOfTheChunkBefore()
    {
        const QString film = at("film %1.mp4");
        const QTemporaryDir small("/run/small/XXXXXX");
        put({"to/x", "vanishing/x", "empty"});
        Dispenser::writeFile(film, QByteArray("0123456").repeated(3670016 / 7));
        QVERIFY(QFile::resize(at("empty"), 0));
        int rounds = 0;
        QTimer events;
        events.callOnTimeout(
            [&] { ++rounds == 6 && QFile::resize(film, 0) && QFile::remove(film); });
        events.start(0);
        const QString whole = "begun|28|57|85|100|completed|true";
        QCOMPARE(copied(film, at("to/")), whole);
        QCOMPARE(rounds, 4);
        QCOMPARE(QProcess::execute("cmp", {film, at("to/film %1.mp4")}), 0);
        QCOMPARE(copied(film, at("vanishing/")), whole);
        QCOMPARE(QFileInfo(at("vanishing/film %1.mp4")).size(), 2 << 20);
        QCOMPARE(copied(at("to/film %1.mp4"), small.path() + '/'), whole);
        QVERIFY(QFileInfo(small.filePath("film %1.mp4")).size() <= 1 << 20);
        QCOMPARE(copied(at("empty"), at("to/")), "begun|100|completed|true");
    }

    void refusesACopyThatCannotBegin()
    {
        put({"a", "to/a", "shut/x"});
        QFile::setPermissions(at("shut"), QFile::ReadOwner | QFile::ExeOwner);
        QCOMPARE(copied(at("%1"), "/none/"), "Error: File '" + at("%1") + "' doesn't exist.|false");
        QCOMPARE(copied(at("to"), "/none/"), "Error: Can't access file '" + at("to") + "'.|false");
        QCOMPARE(copied(at("a"), "/none/"), "Error: Destination folder doesn't exist.|false");
        QCOMPARE(copied(at("a"), at("to/")), "Warning: File already exists.|false");
        QCOMPARE(copied(at("a"), at("shut/")), "Error: Permission denied|false");
        QVERIFY(QFile::link("nowhere", at("gone")));
        QCOMPARE(copied(at("gone"), at("to/")),
                 "Error: File '" + at("gone") + "' doesn't exist.|false");
        QFile::setPermissions(at("shut"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QCOMPARE(m_helper->readOneLineFile(at("to/a")), QString("to/a"));
    }

    void endsACopyWhoseItemIsDestroyedOnTheWay()
    {
        Dispenser::writeFile(at("film"), QByteArray(3 << 20, 'x'));
        for (const int moment : {0, 33, 66, 100}) { // of the beginning, of a chunk, of the end
            put({QString::number(moment) + "/x"});
            auto* const helper = new FileHelper;
            const auto destroy = [helper, moment](int percent) {
                if (percent == moment)
                    delete helper;
            };
            connect(helper, &FileHelper::copyBegun, this, [destroy] { destroy(0); });
            connect(helper, &FileHelper::copyProgress, this, destroy);
            QVERIFY(!helper->copyFile(at("film"), at(QString::number(moment) + '/')));
        }
    }

    void removesUpdatesOlderThanTheCurrentVersion()
    {
        put({"a/newer", "a/older", "a/same", "a/sub/x"});
        const quint32 time = m_helper->getFileTime(currentVersion);
        const QString change
            = "touch -d @%1 older; touch -d @%2 same; touch -d @%3 newer; touch -d @2208988800 sub";
        QDir::setCurrent(at("a"));
        QCOMPARE(std::system(qPrintable(change.arg(time - 1).arg(time).arg(time + 1))), 0);
        QCOMPARE(m_helper->getFileTime(at("a/sub")), 2208988800U); // beyond what 32 bits hold
        for (const char* line : {"FileHelper::deleteFile :  \"", "Delete old update file  \""})
            QTest::ignoreMessage(QtDebugMsg, qPrintable(line + at("a/older\"")));
        m_helper->removeOldUpdates(at("a/"));
        QCOMPARE(m_helper->getAllInFolder(at("a")).join('|'), "newer|same|sub");
        QVERIFY(!m_helper->deleteFile(at("a/older")));

        QVERIFY(QDir().rename(currentVersion, currentVersion + ".away"));
        m_helper->removeOldUpdates(at("a/"));
        QVERIFY(QDir().rename(currentVersion + ".away", currentVersion));
        QCOMPARE(m_helper->getAllInFolder(at("a")).join('|'), "sub");
    }

    // Around the mounted sticks: of two plain folders in a row only the first goes.
    void skipsTheFolderAfterOneThatIsNotMounted()
    {
        for (const char* name : {"a1", "a2", "Z1", "Z2", "Z3"})
            QVERIFY(QDir().mkpath(Dispenser::mediaFolder() + name));
        QCOMPARE(m_helper->findMediaDevices().join('|'), "a2|BACKUP|STICK|Z2");
    }

    void keepsTheQuotaTellsSizesAndReadsAFirstLine()
    {
        const QString shared = QStringLiteral("/opt/Merivon/Videos/Shared/");
        put({"1"});
        Dispenser::writeFile(shared + "sub/not counted", "x");
        QVERIFY(QFile::copy(at("1"), shared + "big.bin")
                && QFile::resize(shared + "big.bin", 10737418240 - m_helper->storageSpaceSize()));
        QCOMPARE(m_helper->storageSpaceSize(), 10737418239);
        QVERIFY(!m_helper->canCopyMediaFile(at("1")) && m_helper->canCopyMediaFile(at("gone")));
        QCOMPARE(m_helper->availableStorageMediaSize(), QString("1 B"));

        const qint64 tera = Q_INT64_C(1) << 40;
        const QMap<qint64, QString> texts {
            {0, "0 B"},        {1023, "1023 B"},         {1024, "1 KB"}, {1048575, "1023 KB"},
            {1048576, "1 MB"}, {5120 * tera, "5120 TB"}, {-5, "-4 B"},   {-tera, "-2147483648 B"}};
        for (auto text = texts.begin(); text != texts.end(); ++text)
            QCOMPARE(m_helper->sizeFormat(text.key()), text.value());
        Dispenser::writeScript(Dispenser::scriptsFolder + "getDiskSpace.sh", "echo 12G free");
        QCOMPARE(m_helper->availableDiskSize(), QString("12G free"));

        Dispenser::writeFile(at("line"), "caf\xC3\xA9\nrest");
        QCOMPARE(m_helper->readOneLineFile(at("line")), QStringLiteral("caf\u00E9\n"));
        Dispenser::writeFile(at("line"), QByteArray("ab\0cd\n", 6));
        QCOMPARE(m_helper->readOneLineFile(at("line")), QString("ab"));
        Dispenser::writeFile(at("line"), QByteArray(100000, 'x'));
        QCOMPARE(m_helper->readOneLineFile(at("line")).size(), 65536);
        QCOMPARE(mkfifo(QFile::encodeName(at("pipe")), 0666), 0);
        for (const QString& none : {at("gone"), m_folder->path(), at("pipe"), QString("/dev/zero")})
            QCOMPARE(m_helper->readOneLineFile(none), QString());
    }
};

DISPENSER_TEST_MAIN(TestFileHelper, QCoreApplication)

#include "tst_file_helper.moc"

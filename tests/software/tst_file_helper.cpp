#include "Dispenser.h"

#include "software/FileHelper.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace {

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
    FileHelper m_helper;

    QString at(const QString& name) const { return m_folder->filePath(name); }
    void put(const QStringList& files) const
    {
        for (const QString& file : files)
            Dispenser::writeFile(at(file), file.toUtf8());
    }

private slots:
    void init() { m_folder.reset(new QTemporaryDir); }

    void listsFoldersFirstThenBySuffixAndOncePerFilter()
    {
        put({"sub/x", "Zub/x", "a.hex", "B.hex", "A.HEX", "quillmark-x-1.0.tar.gz"});
        FileHelper chooser;
        chooser.setFilterNames({"*.hex", "quillmark*", "quillmark-*.tar.gz"});
        chooser.setCurrentPath(m_folder->path());
        const QString name = "quillmark-x-1.0.tar.gz";
        QCOMPARE(chooser.folderEntries(),
                 QStringList({"Zub", "sub", name, name, "B.hex", "a.hex"}));
    }

    // Some service pages count on it.
    void goesAboveATopFolderThatWasGivenWithASlash()
    {
        put({"a/x"});
        m_helper.setCurrentPath(at("a/"));
        m_helper.leaveFolder();
        QCOMPARE(m_helper.currentPath(), m_folder->path());
    }

    void copiesToTheEndAndTellsTheProgressOfTheChunkBefore()
    {
        const QTemporaryDir full("/run/small/XXXXXX"); // of one mebibyte
        put({"to/x"});
        Dispenser::writeFile(at("film"), QByteArray("0123456").repeated(3670016 / 7));
        for (const QString& folder : {at("to/"), full.path() + '/'})
            QCOMPARE(copied(at("film"), folder), "begun|28|57|85|100|completed|true");
        QCOMPARE(QProcess::execute("cmp", {at("film"), at("to/film")}), 0);
        QCOMPARE(copied(at("film"), at("to/")), "Warning: File already exists.|false");
    }

    void endsACopyWhoseItemIsDestroyedOnTheWay()
    {
        put({"to/x"});
        Dispenser::writeFile(at("film"), QByteArray(3 << 20, 'x'));
        auto* const helper = new FileHelper;
        connect(helper, &FileHelper::copyProgress, this, [helper] { delete helper; });
        QVERIFY(!helper->copyFile(at("film"), at("to/")));
    }

    void removesFilesOlderThanTheCurrentVersion()
    {
        put({"newer", "older", "same", "sub/x"});
        const quint32 time = m_helper.getFileTime("/opt/Merivon/Versions/Merivon-current");
        QDir::setCurrent(m_folder->path());
        const QString change = "touch -d @%1 older sub; touch -d @%2 same; touch -d @%3 newer";
        QCOMPARE(std::system(qPrintable(change.arg(time - 1).arg(time).arg(time + 1))), 0);
        m_helper.removeOldUpdates(QString());
        QVERIFY(QFile::exists("older"));
        m_helper.removeOldUpdates(m_folder->path() + '/');
        QCOMPARE(m_helper.getAllInFolder("."), QStringList({"newer", "same", "sub"}));
    }

    // Around the mounted sticks: of two plain folders in a row only the first goes.
    void skipsTheFolderAfterOneThatIsNotMounted()
    {
        for (const char* name : {"a1", "a2", "Z1", "Z2", "Z3"})
            QVERIFY(QDir().mkpath(Dispenser::mediaFolder() + name));
        QCOMPARE(m_helper.findMediaDevices(), QStringList({"a2", "BACKUP", "STICK", "Z2"}));
    }
};

DISPENSER_TEST_MAIN(TestFileHelper, QCoreApplication)

#include "tst_file_helper.moc"

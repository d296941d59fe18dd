#include "Dispenser.h"
#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/QtQuick2ApplicationViewer.h"
#include "app/QtQuick2ApplicationViewerPrivate.h"

#include <QProcess>
#include <QQuickItem>
#include <QRegularExpression>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <stdexcept>

namespace {

QString adjustedBy(const QString& program, const QString& path)
{
    QProcess child;
    child.start(program, {path});
    child.waitForFinished();
    return QDir::cleanPath(QString::fromUtf8(child.readAllStandardOutput()));
}

} // namespace

class tst_application : public QObject
{
    Q_OBJECT

private slots:
    void exceptionsFromSlotsAreLoggedAndTheProgramGoesOn()
    {
        QTest::ignoreMessage(QtDebugMsg, "Exception thrown: boom");
        QTest::ignoreMessage(QtDebugMsg, "... exception thrown");
        bool wentOn = false;
        QTimer::singleShot(0, this, [] { throw std::runtime_error("boom"); });
        QTimer::singleShot(0, this, [] { throw 42; });
        QTimer::singleShot(10, this, [&] { wentOn = true; });
        QTRY_VERIFY(wentOn);
    }

    void quitAppEndsRegisteredThreadsFirst()
    {
        auto* const app = static_cast<Application*>(QCoreApplication::instance());
        QThread worker;
        auto* const gone = new QThread;
        app->appendThread(gone);
        app->appendThread(&worker);
        delete gone;
        worker.start();
        QTest::ignoreMessage(QtDebugMsg, "quitting");
        QTest::ignoreMessage(QtDebugMsg, "shutting down threads");
        QTest::ignoreMessage(QtDebugMsg, QRegularExpression("^quitting thread 0x"));
        QTimer::singleShot(0, app, &SingleApplication::quitApp);
        QCOMPARE(QCoreApplication::exec(), 0);
        QVERIFY(worker.isFinished());
    }

    void developmentModeIsTheExactWordAnywhere()
    {
        const auto devMode = [](std::initializer_list<const char*> words) {
            return CommandLine::read(static_cast<int>(words.size()), words.begin()).devMode;
        };
        QVERIFY(devMode({"updater", "word", "--dev"}));
        QVERIFY(devMode({"updater", "--update", "--dev"}));
        QVERIFY(!devMode({"--dev", "--DEV", "--device", "--update"}));
    }

    void pathsAreLookedUpBesideTheProgramFolderFirst()
    {
        const QTemporaryDir home;
        const QString inside = home.path() + "/bin/scene.qml";
        const QString beside = home.path() + "/scene.qml";
        const QString program = home.path() + "/bin/program";
        QVERIFY(QDir(home.path()).mkdir("bin"));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        QCOMPARE(adjustedBy(program, "scene.qml"), "scene.qml");
        Dispenser::writeFile(inside, {});
        QCOMPARE(adjustedBy(program, "scene.qml"), inside);
        Dispenser::writeFile(beside, {});
        QCOMPARE(adjustedBy(program, "scene.qml"), beside);
    }

    void viewerLoadsFromTheWorkingFolderAndClosesOnQuit()
    {
        const QTemporaryDir folder;
        QDir::setCurrent(folder.path());
        Dispenser::writeFile(
            "view.qml",
            "import QtQuick 2.12\n"
            "Item { Timer { running: true; interval: 300; onTriggered: Qt.quit() } }");
        QtQuick2ApplicationViewer viewer;
        viewer.setMainQmlFile("view.qml");
        QCOMPARE(viewer.status(), QQuickView::Ready);
        viewer.resize(320, 240);
        viewer.showExpanded();
        QTRY_COMPARE(viewer.rootObject()->width(), 320.0);
        QTRY_VERIFY(!viewer.isVisible());
    }

    void viewerWithoutASizeTakesTheScreens()
    {
        const QTemporaryDir folder;
        Dispenser::writeFile(folder.filePath("view.qml"),
                             "import QtQuick 2.12\nItem { width: 0; height: 0 }");
        QtQuick2ApplicationViewer viewer;
        viewer.setMainQmlFile(folder.filePath("view.qml"));
        viewer.showExpanded();
        QTRY_COMPARE(viewer.rootObject()->size(), QSizeF(viewer.screen()->size()));
    }
};

// Started with the name of a QML file, the program tells where it is looked up.
int main(int argc, char** argv)
{
    const QString word = QString::fromLocal8Bit(argc == 2 ? argv[1] : "");
    Application app(argc, argv);
    if (word.endsWith(QLatin1String(".qml"))) {
        fputs(qPrintable(QtQuick2ApplicationViewerPrivate::adjustPath(word)), stdout);
        return 0;
    }
    tst_application test;
    return Dispenser::isHere() ? QTest::qExec(&test, argc, argv) : 1;
}

#include "tst_application.moc"

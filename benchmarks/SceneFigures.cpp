#include "Figures.h"
#include "Measure.h"
#include "Program.h"
#include "Scene.h"
#include "process/LaunchAsync.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTimerEvent>

#include <algorithm>
#include <stdexcept>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

// The longest time that the event loop took to come round again.
class StallWatch : public QObject
{
public:
    StallWatch() { startTimer(1, Qt::PreciseTimer); }

    void begin()
    {
        m_last = Clock::now();
        m_longest = {};
    }

    double longestSeconds()
    {
        look();
        return m_longest.count();
    }

protected:
    void timerEvent(QTimerEvent* /*event*/) override { look(); }

private:
    void look()
    {
        const Clock::time_point now = Clock::now();
        m_longest = std::max<std::chrono::duration<double>>(m_longest, now - m_last);
        m_last = now;
    }

    Clock::time_point m_last = Clock::now();
    std::chrono::duration<double> m_longest {};
};

void makeImportTakeSeconds(int seconds)
{
    QFile faults(QStringLiteral("/opt/Merivon/Simulation/faults"));
    if (!faults.open(QIODevice::WriteOnly)
        || faults.write("import delay " + QByteArray::number(seconds) + '\n') < 0)
        throw std::runtime_error("the import cannot be delayed");
}

// Opens the update screen and picks the first package that it finds; gives the screen.
QObject& choosePackage(Scene& scene)
{
    scene.call("showUpdatePanel");
    QObject& screen = scene.itemWith("listMedia");
    const auto firstPackage = [&screen] {
        return screen.property("softwareListModel").toStringList().filter("quillmark-").value(0);
    };
    Scene::runUntil([&] { return !firstPackage().isEmpty(); });
    scene.call("choose", firstPackage());
    Scene::runFor(std::chrono::seconds(1));
    return screen;
}

// From the touch of the install button to the import's end, with the message's fade-in.
double longestStallOfImport(Scene& scene)
{
    const auto launchers = choosePackage(scene).findChildren<LaunchAsync*>();
    bool ended = false;
    const QObject untilReturn;
    for (const LaunchAsync* const launcher : launchers)
        QObject::connect(launcher, &LaunchAsync::endLaunch, &untilReturn,
                         [&ended] { ended = true; });
    StallWatch watch;
    watch.begin();
    const double seconds = Measure::secondsOf([&] {
        scene.call("install");
        Scene::runUntil([&ended] { return ended; });
    });
    const double longest = watch.longestSeconds();
    if (seconds < 10)
        throw std::runtime_error("the import was not delayed");
    // The install that follows and its message.
    Scene::runFor(std::chrono::seconds(6));
    scene.call("showChoicePanel");
    return longest;
}

// In the store that the dispenser begins with are two already.
void addVersions(int count)
{
    for (int i = 0; i < count; ++i) {
        if (!QDir().mkpath(QStringLiteral("/opt/Merivon/Versions/kra-0.%1.00").arg(i + 10)))
            throw std::runtime_error("the versions cannot be made");
    }
}

// In a process of its own each time: what a screen is made of is made when it is opened first, and
// memory that was used once counts for ever.
double measuredApart(const QString& what, const QString& argument)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {what, argument});
    process.waitForFinished();
    bool measured = false;
    const double value = process.readAllStandardOutput().toDouble(&measured);
    if (!measured)
        throw std::runtime_error("not measured: " + what.toStdString());
    return value;
}

} // namespace

Figures stallFigures()
{
    makeImportTakeSeconds(10);
    Scene scene;
    std::vector<double> stalls(3);
    std::generate(stalls.begin(), stalls.end(), [&] { return longestStallOfImport(scene); });
    return {{"gui-stall", Measure::median(stalls) / 0.050, 0.3}};
}

Figures screenFigures()
{
    addVersions(28);
    return {{"advanced-screen",
             Measure::bestRatio(
                 12, [] { return measuredApart("open", "showAdvanceOptionsPanel"); },
                 [] { return measuredApart("open", "showUpdatePanel"); }),
             1.6}};
}

Figures listFigures()
{
    return {{"list-memory",
             Measure::bestRatio(
                 5, [] { return measuredApart("list", "20000"); },
                 [] { return measuredApart("list", "0"); }),
             1.3}};
}

double secondsToOpen(const char* function)
{
    Scene scene;
    bool shown = false;
    QObject::connect(&scene.window(), &QQuickWindow::frameSwapped, [&shown] { shown = true; });
    return Measure::secondsOf([&] {
        scene.call(function);
        while (!shown)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    });
}

double kibibytesToList(const char* packages)
{
    Scene scene;
    scene.call("showUpdatePanel");
    Scene::runFor(std::chrono::seconds(2)); // the screen's own scan is over
    QStringList paths;
    const int count = QByteArray(packages).toInt();
    for (int i = 0; i < count; ++i)
        paths << QStringLiteral("/media/technician/STICK/updates/quillmark-kra-1.%1.tar.gz").arg(i);
    scene.itemWith("listMedia").setProperty("softwareListModel", paths);
    Scene::runFor(std::chrono::seconds(1));
    return peakKibibytes(getpid());
}

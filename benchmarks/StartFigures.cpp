#include "Figures.h"
#include "Measure.h"
#include "Program.h"

#include <QProcess>
#include <QThread>

#include <optional>
#include <stdexcept>

namespace {

const QString updater = QStringLiteral(UPDATER_PROGRAM);
const QString emptyView = QStringLiteral(EMPTY_VIEW_PROGRAM);

// A program on its way to the first frame, which Qt's own timing line tells of: the updater is
// measured as it is shipped. Ends the program when it goes.
class Start : public QProcess
{
public:
    explicit Start(const QString& program)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_LOGGING_RULES", "qt.scenegraph.time.renderloop.debug=true");
        environment.insert("QT_FORCE_STDERR_LOGGING", "1");
        setProcessEnvironment(environment);
        setProcessChannelMode(MergedChannels);
        start(program, QStringList());
    }

    ~Start() override
    {
        terminate();
        waitForFinished();
        // Let the platform's stop, which the updater has launched, end before the next start.
        QThread::msleep(300);
    }

    void awaitFirstFrame()
    {
        while (!readLine().contains("Frame rendered")) {
            if (!canReadLine() && !waitForReadyRead(20000))
                throw std::runtime_error("no frame of " + program().toStdString());
        }
    }
};

double secondsToFirstFrame(const QString& program)
{
    std::optional<Start> start;
    return Measure::secondsOf([&] {
        start.emplace(program);
        start->awaitFirstFrame();
    });
}

double peakAtFirstFrame(const QString& program)
{
    Start start(program);
    start.awaitFirstFrame();
    return peakKibibytes(static_cast<pid_t>(start.processId()));
}

} // namespace

// The first round, which does not count, stores the settings that the dispenser does not have yet.
// While it starts the updater has work for two processors, the empty view for one: where one is
// always taken and scripts/bench may not go first, start-up reads a quarter more.
Figures startFigures()
{
    return {
        {"start-up",
         Measure::bestRatio(
             15, [] { return secondsToFirstFrame(updater); },
             [] { return secondsToFirstFrame(emptyView); }),
         2.2},
        {"memory",
         Measure::bestRatio(
             5, [] { return peakAtFirstFrame(updater); },
             [] { return peakAtFirstFrame(emptyView); }),
         1.4},
    };
}

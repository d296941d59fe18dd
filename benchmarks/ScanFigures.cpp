#include "Figures.h"
#include "Measure.h"
#include "Scene.h"

#include <QCoreApplication>
#include <QProcess>
#include <QQuickWindow>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int entries = 10000;
const fs::path slowFolder = "/media/technician/STICK/slow";

// A camera's pictures, ten of them packages: what is listed afterwards does not count here.
void fillSlowFolder()
{
    fs::create_directory(slowFolder);
    for (int i = 0; i < entries; ++i) {
        const std::string number = std::to_string(i);
        const std::string name = i % 1000 == 0 ? "quillmark-kra-2.00." + number + ".tar.gz"
                                               : "IMG_2024_" + number + ".jpeg";
        if (!std::ofstream(slowFolder / name).put('\n').flush())
            throw std::runtime_error("cannot write " + name);
    }
}

// In a process of its own, into which the library that slows the folder down is loaded.
double secondsOfScanGap()
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD", SLOW_FOLDER_LIBRARY);
    environment.insert("SLOW_FOLDER", QString::fromStdString(slowFolder));
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  {"scan", QString::fromStdString(slowFolder)});
    process.waitForFinished(-1);
    bool measured = false;
    const double seconds = process.readAllStandardOutput().toDouble(&measured);
    if (!measured)
        throw std::runtime_error("no scan: " + process.readAllStandardError().toStdString());
    return seconds;
}

} // namespace

Figures scanFigures()
{
    fillSlowFolder();
    std::vector<double> gaps(3);
    std::generate(gaps.begin(), gaps.end(), secondsOfScanGap);
    return {{"scan-gap", Measure::median(gaps) / 0.100, 1.0}};
}

double longestGapOfScan(const char* folder)
{
    Scene scene;
    scene.show("qrc:/Libs/VemloQT/qml/BusyBar.qml");
    Scene::runFor(std::chrono::seconds(1));
    Clock::time_point last = Clock::now();
    Clock::duration longest {};
    const auto look = [&] {
        const Clock::time_point now = Clock::now();
        longest = std::max(longest, now - std::exchange(last, now));
    };
    const QObject untilReturn;
    QObject::connect(&scene.window(), &QQuickWindow::frameSwapped, &untilReturn, look);
    QStringList found;
    const double seconds = Measure::secondsOf([&] {
        found = SoftwareManager().findAvailableSoftware();
        look();
    });
    if (found.filter(QString::fromUtf8(folder)).size() != 10 || seconds < entries / 1000)
        throw std::runtime_error("the slow folder was not scanned");
    return std::chrono::duration<double>(longest).count();
}

#include "Figures.h"
#include "app/Application.h"
#include "app/MessageHandler.h"
#include "app/StandardOutput.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <map>
#include <string>
#include <unistd.h>

namespace {

const std::map<std::string, Figures (*)()> themes {
    {"start", startFigures},    {"database", databaseFigures}, {"files", fileFigures},
    {"launch", launchFigures},  {"stall", stallFigures},       {"scan", scanFigures},
    {"screens", screenFigures}, {"list", listFigures},
};

const std::map<std::string, double (*)(const char*)> measurements {
    {"open", secondsToOpen},
    {"scan", longestGapOfScan},
    {"list", kibibytesToList},
};

// Everything that is measured logs as it does on the device, to where nobody reads it. Gives the
// descriptor of the standard output that was.
int sendLogAway()
{
    const int output = dup(STDOUT_FILENO);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
    return output;
}

// Whether all are within their limits.
bool print(const Figures& figures, int output)
{
    bool good = true;
    for (const Figure& figure : figures) {
        dprintf(output, "%s ratio %.3g limit %g\n", figure.name, figure.ratio, figure.limit);
        good = good && figure.ratio <= figure.limit;
    }
    return good;
}

// Gives the exit status.
int run(const std::string& name, const char* argument, int output)
{
    if (argument) {
        dprintf(output, "%g", measurements.at(name)(argument));
        return EXIT_SUCCESS;
    }
    return print(themes.at(name)(), output) ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

// updater_bench THEME: prints the theme's figures. Exit status 1 when one is over its limit, 2 when
// one cannot be measured. updater_bench MEASUREMENT ARGUMENT: prints the figure of one of those
// that have a process of their own.
int main(int argc, char** argv)
{
    const std::string name = argc > 1 ? argv[1] : "";
    const char* const argument = argc == 3 ? argv[2] : nullptr;
    const bool known = argument ? measurements.count(name) > 0 : themes.count(name) > 0;
    if (!known || access("/opt/dispenser", R_OK) != 0) {
        std::fputs("usage, inside the dispenser: updater_bench THEME\n", stderr);
        return 2;
    }
    const int output = sendLogAway();
    qInstallMessageHandler(myMessageHandler);
    Application app(argc, argv);
    int status = 2;
    try {
        status = run(name, argument, output);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s: %s\n", name.c_str(), failure.what());
    }
    // A launch that waits for ever still runs on its thread, and may use what would be destroyed.
    std::_Exit(status);
}

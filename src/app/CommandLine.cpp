#include "app/CommandLine.h"

#include "app/StandardOutput.h"

#include <QFile>

#include <cstring>

CommandLine CommandLine::read(int argc, const char* const* argv)
{
    CommandLine line;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--update") == 0) {
            line.exitAfterArguments = true;
            if (++i == argc)
                break;
            line.checkFirmware(argv[i]);
        }
        // The path after "--update" is looked at here as well: "--update --dev" names a file called
        // "--dev" and turns development mode on. Kept: service scripts may rely on it.
        if (std::strcmp(argv[i], "--dev") == 0)
            line.devMode = true;
    }
    return line;
}

void CommandLine::checkFirmware(const char* path)
{
    firmwareFile = QFileInfo(QFile::decodeName(path));
    const QString absolutePath = firmwareFile.absoluteFilePath();
    StandardOutput::write("Checking " + QFile::encodeName(absolutePath) + '\n');
    if (!firmwareFile.exists())
        StandardOutput::write("Firmware file doesn't exists\n");
    else if (absolutePath.endsWith(QLatin1String("hex")))
        firmwareValid = true;
    else
        StandardOutput::write("File isn't a firmware.\n");
}

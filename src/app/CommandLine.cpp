#include "app/CommandLine.h"

#include "app/StandardOutput.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <filesystem>

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

void CommandLine::choosePlatform(int argc, const char* const* argv)
{
    const auto isUpdate = [](const char* word) { return std::strcmp(word, "--update") == 0; };
    if (std::any_of(argv, argv + argc, isUpdate) && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen;minimal");
}

void CommandLine::checkFirmware(const char* path)
{
    // As bytes: QFileInfo finds no file whose name is not UTF-8.
    std::error_code error;
    const std::string absolutePath
        = std::filesystem::absolute(path, error).lexically_normal().string();
    firmwareFile = QFileInfo(QFile::decodeName(absolutePath.c_str()));
    StandardOutput::write("Checking " + QByteArray::fromStdString(absolutePath) + '\n');
    if (!std::filesystem::exists(absolutePath, error))
        StandardOutput::write("Firmware file doesn't exists\n");
    else if (QByteArray::fromStdString(absolutePath).endsWith("hex"))
        firmwareValid = true;
    else
        StandardOutput::write("File isn't a firmware.\n");
}

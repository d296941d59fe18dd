#include "app/CommandLine.h"

#include "app/StandardOutput.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace {

// What QFileInfo::absoluteFilePath() makes of a text, for bytes of any encoding: of all of them
// that only looks at "/" and ".".
QByteArray absolutePathOf(const char* path)
{
    std::error_code error;
    const std::string bytes = std::filesystem::absolute(path, error).string();
    return QFileInfo(QString::fromLatin1(bytes.c_str())).absoluteFilePath().toLatin1();
}

} // namespace

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
    if (std::any_of(argv, argv + argc, isUpdate) && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen;minimal");
}

void CommandLine::checkFirmware(const char* path)
{
    firmwareFile = QFileInfo(QFile::decodeName(path));
    const QByteArray absolutePath = absolutePathOf(path);
    StandardOutput::write("Checking " + absolutePath + '\n');
    // Of the path as it was given: "link/../x" is not "x". QFileInfo finds no name that is not
    // UTF-8.
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        StandardOutput::write("Firmware file doesn't exists\n");
    else if (absolutePath.endsWith("hex"))
        firmwareValid = true;
    else
        StandardOutput::write("File isn't a firmware.\n");
}

#include "Fuzz.h"

#include "Dispenser.h"

#include <QCoreApplication>

#include <filesystem>
#include <fstream>
#include <sys/stat.h>

void makeTree(const QString& folder, const QByteArrayList& lines)
{
    namespace fs = std::filesystem;
    const fs::path top(folder.toStdString());
    std::error_code failed; // also of a mount point, which stays, empty
    fs::create_directories(top, failed);
    for (const auto& entry : fs::directory_iterator(top))
        fs::remove_all(entry, failed);
    for (const QByteArray& line : lines) {
        const fs::path path = folder.toStdString() + '/' + line.mid(1).toStdString();
        // Kept: a name that begins with the mark of an encoding is told without it.
        if (line.contains("..") || line.contains('\0') || line.contains("\xef\xbb\xbf")
            || fs::exists(path, failed)) // to open a pipe would take for ever
            continue;
        fs::create_directories(line.startsWith('d') ? path : path.parent_path(), failed);
        if (line.startsWith('l'))
            fs::create_symlink("/opt", path, failed);
        else if (line.startsWith('p'))
            mkfifo(path.c_str(), 0666);
        else if (!line.startsWith('d'))
            std::ofstream {path};
    }
}

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** argv)
{
    static int one = 1; // the fuzzer's options are not the application's
    if (!Dispenser::isHere()) {
        std::fputs("run me inside sandbox/enter\n", stderr);
        std::exit(1);
    }
    static QCoreApplication application(one, *argv);
    // What the program logs is dropped: it would cost more than what is tried.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
        if (text.startsWith("NOT HELD"))
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    tryInput(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    return 0;
}

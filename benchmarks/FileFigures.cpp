#include "Figures.h"
#include "Measure.h"
#include "Program.h"
#include "software/FileHelper.h"
#include "software/SoftwareManager.h"

#include <QFile>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;

const fs::path media = "/media/technician";

void writeFile(const fs::path& path)
{
    if (!std::ofstream(path).put('\n').flush())
        throw std::runtime_error("cannot write " + path.string());
}

std::string numbered(const std::string& before, int number, const std::string& after = {})
{
    return before + std::to_string(number) + after;
}

// 50 folders with 39 more in each, 2,000 in all, with 25 files each; in every tenth folder one of
// them is a package.
void fillStick()
{
    for (int folder = 0; folder < 2000; ++folder) {
        const fs::path path = folder < 50
            ? media / "STICK" / numbered("folder", folder)
            : media / "STICK" / numbered("folder", folder % 50) / numbered("deeper", folder);
        fs::create_directories(path);
        const bool withPackage = folder % 10 == 0;
        if (withPackage)
            writeFile(path / numbered("quillmark-talvo-2.00.", folder, ".tar.gz"));
        for (int file = withPackage ? 1 : 0; file < 25; ++file)
            writeFile(path / numbered("IMG_2024_", folder * 100 + file, ".jpeg"));
    }
}

double discovery()
{
    for (const auto& stick : fs::directory_iterator(media)) {
        for (const auto& entry : fs::directory_iterator(stick))
            fs::remove_all(entry);
    }
    fillStick();
    SoftwareManager manager;
    return Measure::bestRatio(
        20,
        [&] {
            int found = 0;
            const double seconds
                = Measure::secondsOf([&] { found = manager.findAvailableSoftware().size(); });
            if (found != 200)
                throw std::runtime_error(numbered("the scan found ", found, " packages"));
            return seconds;
        },
        [] {
            return secondsOfProgram(
                {"find", media, "-iname", "quillmark-*-*.tar.gz", "-o", "-iname", "*MFV_V*.hex"});
        });
}

// In memory, as the folders that it is copied to: the disk is no matter of ours.
void fillWithMebibytes(const fs::path& path, int count)
{
    const std::string mebibyte(std::size_t {1024} * 1024, 'x');
    std::ofstream file(path);
    for (int i = 0; i < count; ++i)
        file.write(mebibyte.data(), static_cast<std::streamsize>(mebibyte.size()));
    if (!file.flush())
        throw std::runtime_error("cannot fill " + path.string());
}

double copyFile()
{
    const fs::path source = "/tmp/measured.tar.gz";
    const fs::path copy = "/tmp/copied/measured.tar.gz";
    fillWithMebibytes(source, 512);
    fs::create_directory(copy.parent_path());
    FileHelper helper;
    const double ratio = Measure::bestRatio(
        8,
        [&] {
            const double seconds = Measure::secondsOf([&] {
                helper.copyFile(QString::fromStdString(source),
                                QString::fromStdString(copy.parent_path()) + '/');
            });
            if (!fs::remove(copy))
                throw std::runtime_error("nothing was copied");
            return seconds;
        },
        [&] {
            const double seconds = secondsOfProgram({"cp", source, copy});
            fs::remove(copy);
            return seconds;
        });
    fs::remove(source);
    return ratio;
}

double folderListing()
{
    const fs::path folder = "/tmp/listed";
    for (int i = 0; i < 1000; ++i)
        fs::create_directories(folder / numbered("folder", i));
    for (int i = 0; i < 9000; ++i)
        writeFile(folder / numbered("IMG_", i * 7919 % 9000, i % 3 == 0 ? ".png" : ".jpeg"));
    FileHelper helper;
    helper.setFilterNames({QStringLiteral("*")});
    return Measure::bestRatio(
        30,
        [&] {
            const double seconds
                = Measure::secondsOf([&] { helper.setFolderPath(QString::fromStdString(folder)); });
            if (helper.folderEntries().size() != 10000)
                throw std::runtime_error("the listing is not whole");
            return seconds;
        },
        [&] {
            return secondsOfProgram({"ls", "--group-directories-first", "-X", folder},
                                    {"LC_ALL=C"});
        });
}

} // namespace

Figures fileFigures()
{
    return {
        {"discovery", discovery(), 0.9},
        {"copy-file", copyFile(), 1.1},
        {"folder-listing", folderListing(), 2.5},
    };
}

// To be preloaded into a program: reading an entry of the folder that the environment variable
// SLOW_FOLDER names (an absolute path), or of one below it, takes a millisecond longer, as on a
// stick that is worn out. Nothing else changes for the program.

#include <climits>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <string>
#include <unistd.h>

namespace {

std::string pathOf(DIR* folder)
{
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(dirfd(folder));
    const ssize_t length = readlink(link.c_str(), path, sizeof path);
    return {path, length > 0 ? static_cast<std::size_t>(length) : 0};
}

bool isSlow(DIR* folder)
{
    const char* const slow = std::getenv("SLOW_FOLDER");
    return slow && (pathOf(folder) + '/').rfind(std::string(slow) + '/', 0) == 0;
}

template <typename Entry> Entry* slowly(DIR* folder, const char* function)
{
    if (isSlow(folder))
        usleep(1000);
    return reinterpret_cast<Entry* (*)(DIR*)>(dlsym(RTLD_NEXT, function))(folder);
}

} // namespace

// Under both names: which of them a program calls depends on how it was built.
extern "C" dirent* readdir(DIR* folder)
{
    return slowly<dirent>(folder, "readdir");
}

extern "C" dirent64* readdir64(DIR* folder)
{
    return slowly<dirent64>(folder, "readdir64");
}

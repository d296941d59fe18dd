#include "app/Preload.h"

#include <dlfcn.h>
#include <system_error>
#include <thread>

namespace {

// The library belongs to the platform plug-ins, of which not all have use for it: nothing of ours
// is linked with it, and without it there is nothing to do.
void setUpFontconfig()
{
    void* const library = dlopen("libfontconfig.so.1", RTLD_LAZY);
    void* const setUp = library ? dlsym(library, "FcInit") : nullptr; // any thread may call it
    if (setUp)
        reinterpret_cast<int (*)()>(setUp)();
}

} // namespace

void Preload::fonts()
{
    // A single processor would do the same work twice, if the scene gets there meanwhile.
    if (std::thread::hardware_concurrency() < 2)
        return;
    try {
        std::thread(setUpFontconfig).detach();
    } catch (const std::system_error&) {
        return; // no thread to be had: the scene sets them up
    }
}

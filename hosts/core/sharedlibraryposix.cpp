#include "sharedlibrary.h"

#include <climits>
#include <dlfcn.h>
#include <unistd.h>

namespace vx3::core {

void* OpenLibrary(const std::string& path, std::string& error)
{
    // Bound at once and kept to itself: a missing symbol shows here, not in the middle of a run.
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library)
        if (const char* text = dlerror())
            error = text;
    return library;
}

void* FindSymbol(void* library, const char* name)
{
    return dlsym(library, name);
}

void CloseLibrary(void* library)
{
    dlclose(library);
}

std::string ProgramFolder()
{
    char buffer[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", buffer, sizeof buffer);
    const std::string file(buffer, length > 0 ? static_cast<size_t>(length) : 0);
    return file.substr(0, file.rfind('/') == std::string::npos ? 0 : file.rfind('/'));
}

} // namespace vx3::core

#include "sharedlibrary.h"

#include <dlfcn.h>

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

} // namespace vx3::core

// The sections for libraries and their items.

#include "host/librarystore.h"
#include "host/servicetable.h"

namespace browser {

namespace {

int32_t Register(VX3Url* location, const VX3String* name, const VX3Path* file)
{
    return RegisterLibrary(BrowserURL::Of(location), String::Of(name), FilePath::Of(file));
}

VX3Bool Unregister(int32_t id)
{
    return UnregisterLibrary(id);
}

int32_t IdOfUrl(VX3Url* url)
{
    return GetLibraryId(BrowserURL::Of(url));
}

VX3Bool Exists(VX3Url* url)
{
    return ItemExists(BrowserURL::Of(url));
}

VX3Bool Read(int32_t id, VX3Url* url, int32_t* type, VX3Container* settings, void** bytes, int64_t* length)
{
    Block data;
    if (!ReadItem(id, BrowserURL::Of(url), type, settings ? BaseContainer::Of(settings) : nullptr, bytes ? &data : nullptr))
        return 0;
    if (length)
        *length = data.Size();
    if (bytes)
        *bytes = data.Take();
    return 1;
}

VX3Bool Store(int32_t id, VX3Url* url, int32_t type, const VX3String* name, const void* bytes, int64_t length)
{
    return StoreItem(id, BrowserURL::Of(url), type, name ? &String::Of(name) : nullptr, bytes, length);
}

constexpr VX3LibraryFunctions librarySection = { Register, Unregister, IdOfUrl };
constexpr VX3ItemFunctions itemSection = { Exists, Read, Store };

} // namespace

const VX3LibraryFunctions* LibrarySection()
{
    return &librarySection;
}

const VX3ItemFunctions* ItemSection()
{
    return &itemSection;
}

} // namespace browser

// What the model and the nodes need of folders above them. Connected once at start by
// host/, before any other thread exists. A function that is none is not built into this
// module, and its callers take the path of a failed allocation.
#pragma once

#include "model/browserinterface.h"

namespace browser {

struct Upcalls {
    Preview* (*makeIcon)(Icon number, int32_t size) = nullptr;
    // Brings the volumes below the computer up to date; true if one came or went.
    bool (*listVolumes)(BrowserContentNode& computer) = nullptr;
    void (*stampDate)(BrowserContentNode& category, const FileDate& date) = nullptr;
    // Makes a stored link to `source` below a category or catalog.
    ErrorCode (*addLink)(BrowserContentNode& parent, ContentRef source, const String* name) = nullptr;
    // Makes a catalog folder below a category.
    ErrorCode (*addCatalogFolder)(BrowserContentNode& parent, const String& name, ContentRef* out) = nullptr;
    void (*listNetwork)(BrowserContentNode& root) = nullptr;
    void (*mountLibraries)() = nullptr;
    void (*mountCatalogs)() = nullptr;
    // Tells the open windows.
    void (*announceChange)(ContentRef node) = nullptr;
    // Tells the open libraries that everything below a URL has moved.
    void (*urlPrefixChanged)(const String& oldPrefix, const String& newPrefix) = nullptr;
    // Stores the order of children in their library entries.
    void (*storeOrder)(BrowserContentNode& parent) = nullptr;
};

extern Upcalls upcalls;

// An icon for a node, none without an icon service or memory.
Preview* MakeIcon(Icon number, int32_t size);

} // namespace browser

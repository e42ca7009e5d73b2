// Walks over a node and everything below it.
#pragma once

#include "model/browserinterface.h"

namespace browser {

enum class ListFolders : bool { No, Yes }; // list each folder on the way, so that all files count
enum class WalkEnd { Done, Cancelled, OutOfMemory };

// Reports each node to a progress callback, a folder in front of its children. Holds no
// lock between two nodes; what is moved or removed meanwhile changes nothing for the rest.
[[nodiscard]] WalkEnd WalkSubtree(BrowserContentNode& top, ChangeMode mode, Progress progress, ListFolders listFolders);

// While one of these lives, no folder of a subtree lists itself: their addresses change,
// and a listing in between would take every child for a stranger. Waits for listings
// that are under way, so no `contentLock` may be held.
class AddressChange
{
public:
    explicit AddressChange(BrowserContentNode& changed);
    ~AddressChange();
    AddressChange(const AddressChange&) = delete;
    AddressChange& operator=(const AddressChange&) = delete;

    bool IsReady() const { return isReady; } // false without memory
    // Calls UpdateUrlPrefix on all below the top, whose own address is right already.
    void MovePrefix(const String& oldPrefix, const String& newPrefix);

private:
    Array<NodeRef> nodes; // the top and all below it that is linked
    bool isReady = false;
};

} // namespace browser

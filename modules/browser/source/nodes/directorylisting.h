// One listing of a folder: the entries on disk are merged into the children that exist.
//
// Known children are found in a snapshot by the hash of their URL and then by name, or
// at once where the disk gives them in the order of the children. What was not met is
// removed at the end, unless the disk could not be read to its end.
#pragma once

#include "nodes/directorynode.h"

namespace browser {

class DirectoryListing
{
public:
    explicit DirectoryListing(DirectoryNode& listed)
        : folder(listed)
    {
    }
    // The caller holds the folder's `contentLock`.
    void Run();

private:
    struct Known {
        uint32_t hash;
        DirectoryNode* node; // held by `held`
    };

    [[nodiscard]] bool TakeSnapshot();
    [[nodiscard]] bool StartHash();
    void MarkKnown();
    void Merge(VX3FolderEntry& found);
    DirectoryNode* FindKnown(uint32_t hash, const String& name);
    void AddNew(DirectoryEntry&& entry);
    void Finish(bool sound);

    DirectoryNode& folder;
    FilePath folderPath;
    uint32_t prefixState = 0;  // of the hash of the folder's URL and the slash behind it
    uint32_t prefixLength = 0; // units of the same
    Array<NodeRef> held;       // in tree order
    Array<Known> known;        // by hash
    size_t expected = 0;       // the child that stands behind the last one found
    Array<NodeRef> added;
};

} // namespace browser

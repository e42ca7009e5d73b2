// A tree of files in memory: names, bytes, links, dates and marks.
//
// Knows no host, no lock and no clock; whoever holds it sees to threads and dates. Names
// are native bytes, paths are absolute. Entries are shared, so that an open file or a
// walk keeps what was taken out of the tree.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vx3/types.h"

namespace vx3::testing {

enum class EntryKind : uint8_t { Folder, File, Link, Special };

struct TreeEntry;
using EntryRef = std::shared_ptr<TreeEntry>;

constexpr int64_t neverFails = -1;

struct TreeEntry : std::enable_shared_from_this<TreeEntry> {
    std::string name;
    EntryKind kind = EntryKind::File;
    std::string bytes; // of a file; of a link its target
    VX3FileDate created = {};
    VX3FileDate modified = {};
    bool isReadOnly = false;
    bool isHidden = false;
    bool isBundle = false;
    bool isUnreadable = false;           // cannot be opened or listed
    int64_t listingFailsAt = neverFails; // a walk breaks off in front of this entry
    bool isMountPoint = false;
    bool hasWriter = false; // is open for writing; a copy of the entry is not

    TreeEntry* parent = nullptr;    // not owned; none: the root, or taken out
    std::vector<EntryRef> children; // in the order of a listing
    std::unordered_map<std::string, EntryRef> byName;
};

enum class LastLink { Follow, Keep };

class MemoryTree
{
public:
    MemoryTree();

    bool isCaseSensitive = true; // to be set while the tree is empty

    const EntryRef& Root() const { return root; }
    // None if nothing is there, or if links lead in a circle.
    EntryRef Find(std::string_view path, LastLink lastLink) const;
    EntryRef ChildOf(const TreeEntry& folder, std::string_view name) const;
    // The folder in which the last part of a path lies or would lie; `last` is empty for the root.
    EntryRef FolderFor(std::string_view path, std::string& last) const;

    void Insert(const EntryRef& folder, const EntryRef& child) const; // at the end of the listing
    void TakeOut(const EntryRef& child);
    EntryRef CopyOf(const TreeEntry& original) const; // with all below, not linked

    MemoryTree Clone() const;

    // The entry at whose place the volume is mounted.
    static const TreeEntry* VolumeOf(const TreeEntry& entry);
    static bool IsInside(const TreeEntry& entry, const TreeEntry& folder); // or the folder itself
    static std::string PathOf(const TreeEntry& entry);

private:
    EntryRef Walk(EntryRef from, std::string_view path, LastLink lastLink, int depth) const;
    EntryRef Follow(EntryRef link, int depth) const;
    std::string KeyOf(std::string_view name) const;

    EntryRef root;
};

} // namespace vx3::testing

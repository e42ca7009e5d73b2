#include "memorytree.h"

#include <algorithm>

namespace vx3::testing {

static constexpr int maximalLinkDepth = 40; // as on a disk

MemoryTree::MemoryTree()
    : root(std::make_shared<TreeEntry>())
{
    root->kind = EntryKind::Folder;
    root->isMountPoint = true;
}

std::string MemoryTree::KeyOf(std::string_view name) const
{
    std::string key(name);
    if (!isCaseSensitive) {
        for (char& byte : key) {
            if (byte >= 'A' && byte <= 'Z')
                byte = static_cast<char>(byte - 'A' + 'a');
        }
    }
    return key;
}

EntryRef MemoryTree::ChildOf(const TreeEntry& folder, std::string_view name) const
{
    const auto found = folder.byName.find(KeyOf(name));
    return found == folder.byName.end() ? nullptr : found->second;
}

EntryRef MemoryTree::Find(std::string_view path, LastLink lastLink) const
{
    if (path.empty() || path.front() != '/')
        return nullptr;
    return Walk(root, path, lastLink, 0);
}

EntryRef MemoryTree::Walk(EntryRef from, std::string_view path, LastLink lastLink, int depth) const
{
    EntryRef at = std::move(from);
    while (at && !path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string_view part = path.substr(0, slash);
        path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
        if (part.empty() || part == ".")
            continue;
        if (at->kind != EntryKind::Folder)
            return nullptr;
        if (part == "..") {
            at = at->parent ? at->parent->shared_from_this() : root;
            continue;
        }
        at = ChildOf(*at, part);
        const bool isLast = path.empty();
        if (at && at->kind == EntryKind::Link && (!isLast || lastLink == LastLink::Follow))
            at = Follow(at, depth);
    }
    return at;
}

EntryRef MemoryTree::Follow(EntryRef link, int depth) const
{
    if (depth >= maximalLinkDepth || link->bytes.empty())
        return nullptr;
    const bool isAbsolute = link->bytes.front() == '/';
    EntryRef from = isAbsolute || !link->parent ? root : link->parent->shared_from_this();
    return Walk(from, link->bytes, LastLink::Follow, depth + 1);
}

EntryRef MemoryTree::FolderFor(std::string_view path, std::string& last) const
{
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return nullptr;
    last = path.substr(slash + 1);
    const EntryRef folder = slash == 0 ? root : Find(path.substr(0, slash), LastLink::Follow);
    return folder && folder->kind == EntryKind::Folder ? folder : nullptr;
}

void MemoryTree::Insert(const EntryRef& folder, const EntryRef& child) const
{
    child->parent = folder.get();
    folder->children.push_back(child);
    folder->byName[KeyOf(child->name)] = child;
}

void MemoryTree::TakeOut(const EntryRef& child)
{
    TreeEntry* folder = child->parent;
    if (!folder)
        return;
    folder->byName.erase(KeyOf(child->name));
    const auto place = std::find(folder->children.begin(), folder->children.end(), child);
    if (place != folder->children.end())
        folder->children.erase(place);
    child->parent = nullptr;
}

EntryRef MemoryTree::CopyOf(const TreeEntry& original) const
{
    auto copy = std::make_shared<TreeEntry>(original);
    copy->parent = nullptr;
    copy->hasWriter = false;
    copy->children.clear();
    copy->byName.clear();
    for (const EntryRef& child : original.children)
        Insert(copy, CopyOf(*child));
    return copy;
}

MemoryTree MemoryTree::Clone() const
{
    MemoryTree clone;
    clone.isCaseSensitive = isCaseSensitive;
    clone.root = CopyOf(*root);
    return clone;
}

const TreeEntry* MemoryTree::VolumeOf(const TreeEntry& entry)
{
    const TreeEntry* at = &entry;
    while (at->parent && !at->isMountPoint)
        at = at->parent;
    return at;
}

bool MemoryTree::IsInside(const TreeEntry& entry, const TreeEntry& folder)
{
    for (const TreeEntry* at = &entry; at; at = at->parent) {
        if (at == &folder)
            return true;
    }
    return false;
}

std::string MemoryTree::PathOf(const TreeEntry& entry)
{
    if (!entry.parent)
        return "/";
    std::string path;
    for (const TreeEntry* at = &entry; at->parent; at = at->parent)
        path = "/" + at->name + path;
    return path;
}

} // namespace vx3::testing

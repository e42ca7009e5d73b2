#include "folderwalk.h"

#include <cerrno>
#include <cstring>
#include <new>

#include "values.h"

namespace vx3::core {

std::unique_ptr<FolderWalk> FolderWalk::Start(const std::string& native, uint32_t options)
{
    Descriptor folder(open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.IsOpen())
        return nullptr;
    std::unique_ptr<FolderWalk> walk(new FolderWalk(std::move(folder), native, options));
    return walk->Refill() || walk->isSound ? std::move(walk) : nullptr;
}

FolderWalk::FolderWalk(Descriptor open, const std::string& native, uint32_t walkOptions)
    : folder(std::move(open))
    , options(walkOptions)
    , fileSystem(ReadFileSystem(folder.Get()))
    , freshness(fileSystem.isServed ? Freshness::Asked : Freshness::Cached)
    , ancestors(native)
    , rights(fileSystem)
    , buffer(new char[bufferSize])
{
}

bool FolderWalk::Refill()
{
    ahead.End();
    ssize_t got = getdents64(folder.Get(), buffer.get(), bufferSize);
    isSound = isSound && got >= 0;
    filled = got > 0 ? static_cast<size_t>(got) : 0;
    at = 0;
    if (!fileSystem.isServed) // A server may never answer, and End would wait for it.
        ahead.Start(folder.Get(), buffer.get(), filled, rights);
    return filled > 0;
}

bool FolderWalk::Next(VX3FolderEntry& entry)
{
    while (at < filled || Refill()) {
        const auto& listed = *reinterpret_cast<const struct dirent64*>(buffer.get() + at);
        at += listed.d_reclen;
        if (Take(listed, entry))
            return true;
    }
    return false;
}

// False for an entry that is not told.
bool FolderWalk::Take(const struct dirent64& listed, VX3FolderEntry& entry)
{
    const char* name = listed.d_name;
    bool isHidden = name[0] == '.';
    if (isHidden && (!(options & VX3_WALK_HIDDEN) || name[1] == 0 || (name[1] == '.' && name[2] == 0)))
        return false;
    if (!Describe(listed, entry))
        return false;
    if ((entry.flags & VX3_ENTRY_READONLY) && !(options & VX3_WALK_READONLY))
        return false;
    if (isHidden)
        entry.flags |= VX3_ENTRY_HIDDEN;
    entry.reserved = 0;
    if (SetNativeName(entry.name, std::string_view(name, std::strlen(name))))
        return true;
    Spoil(); // no memory
    return false;
}

bool FolderWalk::Describe(const struct dirent64& listed, VX3FolderEntry& entry)
{
    const char* record = reinterpret_cast<const char*>(&listed);
    if (ahead.Take(static_cast<size_t>(record - buffer.get()), entry))
        return true;
    if (listed.d_type == DT_LNK)
        return DescribeLink(listed.d_name, entry);
    struct statx status;
    if (ReadStatus(folder.Get(), listed.d_name, false, status, freshness)) {
        if (listed.d_type == DT_UNKNOWN && S_ISLNK(status.stx_mode))
            return DescribeLink(listed.d_name, entry);
        DescribeStatus(status, rights, dates, entry);
        return true;
    }
    if (errno == ENOENT) // gone since it was listed
        return false;
    // There, but not to be looked at: the kind is known, nothing else.
    entry.size = 0;
    entry.flags = listed.d_type == DT_DIR ? VX3_ENTRY_FOLDER : listed.d_type == DT_REG ? 0 : VX3_ENTRY_SPECIAL;
    entry.flags |= VX3_ENTRY_READONLY;
    entry.created = {};
    entry.modified = {};
    return true;
}

bool FolderWalk::DescribeLink(const char* name, VX3FolderEntry& entry)
{
    struct statx status;
    FollowedStatus found = ReadFollowedStatus(folder.Get(), name, ancestors, status, freshness);
    if (found == FollowedStatus::Nothing)
        return false;
    DescribeStatus(status, rights, dates, entry);
    entry.flags |= VX3_ENTRY_LINK | (found == FollowedStatus::Broken ? VX3_ENTRY_BROKEN : 0);
    return true;
}

} // namespace vx3::core

#include <atomic>
#include <climits>
#include <vector>

#include <unistd.h>

#include "ancestors.h"
#include "copyfile.h"
#include "descriptor.h"
#include "fileoperations.h"
#include "treelisting.h"

namespace vx3::core {

namespace {

constexpr int mostTemporaryNames = 1000;

// Copies a tree name by name in open folders; holds two of them however deep it is.
class TreeCopier
{
public:
    explicit TreeCopier(OperationProgress& callerProgress)
        : progress(callerProgress)
    {
    }
    bool Copy(const std::string& from, const std::string& to);
    bool HasMadeAnything() const { return hasMade; } // else what has the name is another's

private:
    struct Level {
        struct statx status; // of the source, for the end
        FileIdentity sourceAbove;
        FileIdentity targetAbove;
        std::vector<ListedName> entries;
        size_t next = 0;
    };

    bool CopyEntry(const std::string& name, const std::string& newName);
    bool CopyFile(const std::string& name, const std::string& newName, const struct statx& status);
    bool CopyLink(const std::string& name, const std::string& newName, const struct statx& status);
    bool Enter(const std::string& name, const std::string& newName, const struct statx& status);
    bool Step();
    bool Leave();

    OperationProgress& progress;
    Descriptor source;
    Descriptor target;
    std::vector<Level> levels;
    bool hasMade = false;
};

bool TreeCopier::Copy(const std::string& from, const std::string& to)
{
    source = Descriptor(open(FolderOf(from).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    target = Descriptor(open(FolderOf(to).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!source.IsOpen() || !target.IsOpen() || !CopyEntry(LastOf(from), LastOf(to)))
        return false;
    while (!levels.empty())
        if (!Step())
            return false;
    return true;
}

bool TreeCopier::Step()
{
    Level& level = levels.back();
    if (level.next == level.entries.size())
        return Leave();
    const std::string name = level.entries[level.next++].name;
    return CopyEntry(name, name);
}

bool TreeCopier::CopyEntry(const std::string& name, const std::string& newName)
{
    struct statx status;
    constexpr unsigned fields = entryFields | STATX_ATIME;
    if (name.empty() || statx(source.Get(), name.c_str(), AT_SYMLINK_NOFOLLOW, fields, &status) != 0 || !progress.BeginElement(0))
        return false;
    if (S_ISDIR(status.stx_mode))
        return Enter(name, newName, status);
    if (S_ISREG(status.stx_mode))
        return CopyFile(name, newName, status);
    return S_ISLNK(status.stx_mode) && CopyLink(name, newName, status); // pipes and devices have no contents to copy
}

bool TreeCopier::CopyFile(const std::string& name, const std::string& newName, const struct statx& status)
{
    Descriptor from(openat(source.Get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct statx opened;
    if (!from.IsOpen() || !ReadOpenStatus(from.Get(), opened) || IdentityOf(opened) != IdentityOf(status))
        return false;
    Descriptor to(openat(target.Get(), newName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    hasMade = hasMade || to.IsOpen();
    return to.IsOpen() && CopyContents(from.Get(), to.Get(), progress) && CopyRightsAndDates(status, to.Get()) && to.Close();
}

bool TreeCopier::CopyLink(const std::string& name, const std::string& newName, const struct statx& status)
{
    char text[PATH_MAX];
    ssize_t length = readlinkat(source.Get(), name.c_str(), text, sizeof(text) - 1);
    if (length < 0)
        return false;
    text[length] = 0;
    struct timespec dates[2] = { { 0, UTIME_OMIT }, { status.stx_mtime.tv_sec, status.stx_mtime.tv_nsec } };
    if (symlinkat(text, target.Get(), newName.c_str()) != 0)
        return false;
    hasMade = true;
    return utimensat(target.Get(), newName.c_str(), dates, AT_SYMLINK_NOFOLLOW) == 0;
}

bool TreeCopier::Enter(const std::string& name, const std::string& newName, const struct statx& status)
{
    constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    struct statx sourceAbove;
    struct statx targetAbove;
    if (!ReadOpenStatus(source.Get(), sourceAbove) || !ReadOpenStatus(target.Get(), targetAbove))
        return false;
    Descriptor from(openat(source.Get(), name.c_str(), folderFlags));
    if (!from.IsOpen() || mkdirat(target.Get(), newName.c_str(), S_IRWXU) != 0)
        return false;
    hasMade = true;
    Descriptor to(openat(target.Get(), newName.c_str(), folderFlags));
    Level level = { status, IdentityOf(sourceAbove), IdentityOf(targetAbove), {}, 0 };
    if (!to.IsOpen() || !ListNames(from.Get(), level.entries))
        return false;
    levels.push_back(std::move(level));
    source = std::move(from);
    target = std::move(to);
    return true;
}

// Rights come last, since a read-only folder takes no entries.
bool TreeCopier::Leave()
{
    Level level = std::move(levels.back());
    levels.pop_back();
    Descriptor sourceAbove(OpenParent(source.Get(), level.sourceAbove, O_PATH));
    Descriptor targetAbove(OpenParent(target.Get(), level.targetAbove, levels.empty() ? O_PATH : O_RDONLY));
    if (!CopyRightsAndDates(level.status, target.Get()) || !sourceAbove.IsOpen() || !targetAbove.IsOpen())
        return false;
    source = std::move(sourceAbove);
    target = std::move(targetAbove);
    return true;
}

// `.<name>.vx3part-<number>`, with the name cut so that the whole is allowed.
std::string TemporaryPath(const std::string& to, int number)
{
    std::string tail = ".vx3part-" + std::to_string(number);
    std::string name = LastOf(to);
    size_t room = NAME_MAX - tail.size() - 1;
    if (name.size() > room) {
        constexpr unsigned char continuationMask = 0xC0;
        while (room > 0 && (static_cast<unsigned char>(name[room]) & continuationMask) == 0x80)
            --room; // not in the middle of a character
        name.resize(room);
    }
    std::string folder = FolderOf(to);
    return (folder == "/" ? "" : folder) + "/." + name + tail;
}

// No two threads get the same.
std::string FreeTemporaryPath(const std::string& to)
{
    static std::atomic<int> lastNumber = 0;
    for (int i = 0; i < mostTemporaryNames; ++i)
        if (std::string path = TemporaryPath(to, ++lastNumber); !FileExists(path))
            return path;
    return {};
}

// Copying a folder into itself would never end.
bool LiesInside(const std::string& to, const std::string& from)
{
    struct statx status;
    if (!ReadStatus(AT_FDCWD, from.c_str(), false, status) || !S_ISDIR(status.stx_mode))
        return false;
    return Ancestors(FolderOf(to)).Contain(IdentityOf(status));
}

} // namespace

bool CopyTree(const std::string& from, const std::string& to, OperationProgress& progress)
{
    if (from.empty() || LastOf(to).empty() || FileExists(to) || LiesInside(to, from))
        return false;
    // A pipe or device cannot be copied. Found late it would undo gigabytes, so look first;
    // what comes into the tree afterwards still fails where it is met.
    if (!HoldsNothingSpecial(from))
        return false;
    std::string temporary = FreeTemporaryPath(to);
    if (temporary.empty())
        return false;
    TreeCopier copier(progress);
    if (copier.Copy(from, temporary) && RenameWithoutReplacing(temporary, to))
        return true;
    if (copier.HasMadeAnything())
        RemoveOwnRemains(temporary);
    return false;
}

} // namespace vx3::core

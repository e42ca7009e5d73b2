#include <vector>

#include <unistd.h>

#include "descriptor.h"
#include "fileoperations.h"
#include "treelisting.h"

namespace vx3::core {

namespace {

enum class Rights { AsTheyAre, Taken };

// Takes a tree away from below. Works on names in open folders only, so that nobody can
// put a link in its way, and holds one folder open however deep the tree is.
class TreeRemover
{
public:
    TreeRemover(OperationProgress& callerProgress, Rights ownRights)
        : progress(callerProgress)
        , rights(ownRights)
    {
    }
    bool Remove(const std::string& path);

private:
    struct Level {
        std::string name; // in the folder above
        FileIdentity above;
        std::vector<ListedName> entries;
        size_t next = 0;
    };

    bool Enter(const std::string& name);
    bool Step();
    bool Leave();
    bool RemoveFile(const std::string& name);

    OperationProgress& progress;
    Rights rights;
    Descriptor folder; // the one that the last level lists, or that the tree stands in
    std::vector<Level> levels;
};

bool TreeRemover::Remove(const std::string& path)
{
    folder = Descriptor(open(FolderOf(path).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    std::string name = LastOf(path);
    struct statx status;
    if (!folder.IsOpen() || name.empty() || !ReadStatus(folder.Get(), name.c_str(), false, status))
        return false;
    if (!S_ISDIR(status.stx_mode))
        return RemoveFile(name);
    if (!Enter(name))
        return false;
    while (!levels.empty())
        if (!Step())
            return false;
    return true;
}

bool TreeRemover::Step()
{
    Level& level = levels.back();
    if (level.next == level.entries.size())
        return Leave();
    const ListedName entry = level.entries[level.next++];
    return entry.isFolder ? Enter(entry.name) : RemoveFile(entry.name);
}

// Changes the mode of the very folder that it holds, whatever gets its name meanwhile: a
// mode set by name would follow a link.
void TakeRights(const Descriptor& held)
{
    const std::string way = "/proc/self/fd/" + std::to_string(held.Get());
    chmod(way.c_str(), S_IRWXU); // if that fails the folder may be open to us nevertheless
}

bool TreeRemover::Enter(const std::string& name)
{
    constexpr int folderFlags = O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    struct statx above;
    struct statx expected;
    struct statx inside;
    Descriptor held(openat(folder.Get(), name.c_str(), O_PATH | folderFlags));
    if (!progress.BeginElement(0) || !ReadOpenStatus(folder.Get(), above) || !held.IsOpen() || !ReadOpenStatus(held.Get(), expected)
        || IsMountRoot(expected, IdentityOf(above).device))
        return false;
    if (rights == Rights::Taken)
        TakeRights(held);
    Descriptor entered(openat(folder.Get(), name.c_str(), O_RDONLY | folderFlags));
    if (!entered.IsOpen() || !ReadOpenStatus(entered.Get(), inside) || IdentityOf(inside) != IdentityOf(expected))
        return false;
    Level level = { name, IdentityOf(above), {}, 0 };
    if (!ListNames(entered.Get(), level.entries))
        return false;
    levels.push_back(std::move(level));
    folder = std::move(entered);
    return true;
}

bool TreeRemover::Leave()
{
    Level level = std::move(levels.back());
    levels.pop_back();
    folder = Descriptor(OpenParent(folder.Get(), level.above, O_PATH));
    return folder.IsOpen() && unlinkat(folder.Get(), level.name.c_str(), AT_REMOVEDIR) == 0;
}

bool TreeRemover::RemoveFile(const std::string& name)
{
    struct statx status = {};
    bool isSized = progress.IsWanted() && ReadStatus(folder.Get(), name.c_str(), false, status) && S_ISREG(status.stx_mode);
    return progress.BeginElement(isSized ? static_cast<int64_t>(status.stx_size) : 0) && unlinkat(folder.Get(), name.c_str(), 0) == 0;
}

} // namespace

bool IsMountPoint(const std::string& path)
{
    struct statx status;
    struct statx above;
    if (!ReadStatus(AT_FDCWD, path.c_str(), false, status) || !ReadStatus(AT_FDCWD, FolderOf(path).c_str(), true, above))
        return false;
    return path == "/" || IsMountRoot(status, IdentityOf(above).device);
}

bool RemoveTree(const std::string& path, OperationProgress& progress)
{
    return TreeRemover(progress, Rights::AsTheyAre).Remove(path);
}

void RemoveOwnRemains(const std::string& path)
{
    OperationProgress silent(nullptr, nullptr);
    TreeRemover(silent, Rights::Taken).Remove(path);
}

} // namespace vx3::core

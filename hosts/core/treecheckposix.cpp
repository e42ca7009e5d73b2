#include <vector>

#include "descriptor.h"
#include "treelisting.h"

namespace vx3::core {

namespace {

// Goes through the folders of a tree; holds one of them open however deep it is.
class TreeCheck
{
public:
    bool Run(Descriptor top);

private:
    struct Level {
        FileIdentity above;
        std::vector<ListedName> folders;
    };

    bool Enter(Descriptor entered, const FileIdentity& above);
    bool Step();
    bool Leave();

    Descriptor folder;
    std::vector<Level> levels;
};

bool TreeCheck::Run(Descriptor top)
{
    if (!Enter(std::move(top), {}))
        return false;
    while (!levels.back().folders.empty() || levels.size() > 1)
        if (!Step())
            return false;
    return true;
}

bool TreeCheck::Step()
{
    Level& level = levels.back();
    if (level.folders.empty())
        return Leave();
    const std::string name = std::move(level.folders.back().name);
    level.folders.pop_back();
    struct statx above;
    return ReadOpenStatus(folder.Get(), above)
        && Enter(Descriptor(openat(folder.Get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)), IdentityOf(above));
}

bool TreeCheck::Enter(Descriptor entered, const FileIdentity& above)
{
    Level level = { above, {} };
    if (!entered.IsOpen() || !ListNames(entered.Get(), level.folders))
        return false;
    for (const ListedName& name : level.folders)
        if (name.isSpecial)
            return false;
    std::erase_if(level.folders, [](const ListedName& name) { return !name.isFolder; });
    levels.push_back(std::move(level));
    folder = std::move(entered);
    return true;
}

bool TreeCheck::Leave()
{
    folder = Descriptor(OpenParent(folder.Get(), levels.back().above, O_PATH));
    levels.pop_back();
    return folder.IsOpen();
}

} // namespace

bool HoldsNothingSpecial(const std::string& path)
{
    struct statx status;
    if (!ReadStatus(AT_FDCWD, path.c_str(), false, status))
        return false;
    if (!S_ISDIR(status.stx_mode))
        return S_ISREG(status.stx_mode) || S_ISLNK(status.stx_mode);
    return TreeCheck().Run(Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)));
}

} // namespace vx3::core

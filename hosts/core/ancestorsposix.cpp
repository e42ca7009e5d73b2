#include <algorithm>

#include "ancestors.h"
#include "descriptor.h"

namespace vx3::core {

namespace {

constexpr int mostParents = 4096; // a circle of `..` cannot be, but nothing may hang

}

bool Ancestors::Contain(const FileIdentity& identity)
{
    if (!isCollected) {
        CollectAlongPath();
        CollectParents();
        isCollected = true; // not if there was no memory for all of them
    }
    return std::find(identities.begin(), identities.end(), identity) != identities.end();
}

void Ancestors::CollectAlongPath()
{
    struct statx status;
    for (std::string path = folder;; path = FolderOf(path)) {
        if (ReadStatus(AT_FDCWD, path.c_str(), true, status))
            identities.push_back(IdentityOf(status));
        if (path == "/" || path == ".")
            return;
    }
}

void Ancestors::CollectParents()
{
    Descriptor at(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    FileIdentity below;
    for (int i = 0; at.IsOpen() && i < mostParents; ++i) {
        struct statx status;
        if (!ReadStatus(at.Get(), "..", true, status) || IdentityOf(status) == below)
            return;
        below = IdentityOf(status);
        identities.push_back(below);
        at = Descriptor(openat(at.Get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
}

} // namespace vx3::core

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

#include "descriptor.h"
#include "filestatus.h"
#include "hoststate.h"
#include "sync.h"

namespace vx3::core {

namespace {

template <class Call>
bool Wait(Call call, int descriptor)
{
    int result = 0;
    do
        result = call(descriptor);
    while (result != 0 && errno == EINTR);
    return result == 0 || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP;
}

void SyncOrTell(const std::string& folder)
{
    if (!SyncFolder(folder))
        WriteConsoleLine("A renaming may not be on the disk yet: " + folder + " (" + std::strerror(errno) + ")");
}

} // namespace

bool SyncFile(int descriptor)
{
    return Wait(fdatasync, descriptor); // with the length, which is all that a reader needs
}

bool SyncFolder(const std::string& folder)
{
    Descriptor open(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return !open.IsOpen() || Wait(fsync, open.Get());
}

void SyncFoldersOf(const std::string& from, const std::string& to)
{
    if (!CurrentSettings().syncFiles)
        return;
    const std::string target = FolderOf(to);
    const std::string source = FolderOf(from);
    SyncOrTell(target); // first: in between the thing has two names rather than none
    if (source != target)
        SyncOrTell(source);
}

} // namespace vx3::core

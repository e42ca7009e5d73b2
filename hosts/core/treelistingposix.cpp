#include "treelisting.h"

#include <memory>

#include <dirent.h>
#include <unistd.h>

namespace vx3::core {

namespace {

bool IsDots(const char* name)
{
    return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

constexpr mode_t KindOf(const struct dirent64& listed)
{
    return DTTOIF(listed.d_type);
}

bool IsSpecial(mode_t mode)
{
    return !S_ISDIR(mode) && !S_ISREG(mode) && !S_ISLNK(mode);
}

ListedName Describe(int folder, const struct dirent64& listed)
{
    mode_t kind = KindOf(listed);
    struct statx status;
    if (listed.d_type == DT_UNKNOWN)
        kind = ReadStatus(folder, listed.d_name, false, status) ? status.stx_mode : S_IFREG; // gone since it was listed
    return { listed.d_name, S_ISDIR(kind), IsSpecial(kind) };
}

} // namespace

bool ListNames(int folder, std::vector<ListedName>& names)
{
    constexpr size_t bufferSize = 32 * 1024;
    auto buffer = std::make_unique<char[]>(bufferSize);
    for (;;) {
        ssize_t got = getdents64(folder, buffer.get(), bufferSize);
        if (got <= 0)
            return got == 0;
        for (ssize_t at = 0; at < got;) {
            const auto& listed = *reinterpret_cast<const struct dirent64*>(buffer.get() + at);
            at += listed.d_reclen;
            if (!IsDots(listed.d_name))
                names.push_back(Describe(folder, listed));
        }
    }
}

bool ReadOpenStatus(int descriptor, struct statx& status)
{
    return statx(descriptor, "", AT_EMPTY_PATH | AT_NO_AUTOMOUNT, entryFields, &status) == 0;
}

bool IsMountRoot(const struct statx& status, uint64_t device)
{
    if (status.stx_attributes & status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT)
        return true;
    return S_ISDIR(status.stx_mode) && IdentityOf(status).device != device;
}

int OpenParent(int folder, const FileIdentity& expected, int flags)
{
    int parent = openat(folder, "..", flags | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    struct statx status;
    if (parent < 0 || (ReadOpenStatus(parent, status) && IdentityOf(status) == expected))
        return parent;
    close(parent);
    return -1;
}

} // namespace vx3::core

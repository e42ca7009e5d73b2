#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>

#include "descriptor.h"
#include "mounttable.h"

namespace vx3::core {

namespace {

constexpr std::array<std::string_view, 12> networkTypes = { "nfs", "nfs4", "cifs",      "smb3",   "smbfs", "ncpfs",
                                                            "afs", "ceph", "glusterfs", "lustre", "9p",    "davfs" };
// With a disk behind them whose name need not be a device.
constexpr std::array<std::string_view, 5> diskTypes = { "zfs", "bcachefs", "virtiofs", "vboxsf", "vmhgfs" };

// What the kernel answers for out of its memory or from a disk of this machine.
constexpr std::array<std::string_view, 18> kernelTypes = { "ext2", "ext3",     "ext4",  "xfs",    "btrfs",   "zfs",
                                                           "f2fs", "bcachefs", "vfat",  "exfat",  "ntfs3",   "iso9660",
                                                           "udf",  "squashfs", "tmpfs", "rootfs", "overlay", "devtmpfs" };

constexpr std::string_view fusePrefix = "fuse.";
constexpr std::array<std::string_view, 7> fuseNetworks = { "sshfs", "rclone", "s3fs", "curlftpfs", "glusterfs", "ceph", "davfs" };
// Their sources are lists of folders, which look like a server and a place on it.
constexpr std::array<std::string_view, 4> fuseUnions = { "mergerfs", "unionfs", "unionfs-fuse", "mhddfs" };
// Doors of desktops and containers into what is told elsewhere, or nothing to browse at all.
constexpr std::array<std::string_view, 8> fuseControls = { "gvfsd-fuse",    "kio-fuse",          "portal",  "lxcfs", "vmware-vmblock",
                                                           "revokefs-fuse", "jetbrains-toolbox", "snapfuse" };
constexpr std::string_view imageSuffix = ".AppImage"; // a program that carries its own files

template <size_t count>
bool IsOneOf(const std::array<std::string_view, count>& list, std::string_view name)
{
    return std::find(list.begin(), list.end(), name) != list.end();
}

bool IsOctal(char digit)
{
    return digit >= '0' && digit <= '7';
}

// The table writes blanks, line ends and backslashes as \040 and the like.
std::string UnescapeOctal(std::string_view text)
{
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        bool isEscape = text[i] == '\\' && i + 3 < text.size() && IsOctal(text[i + 1]) && IsOctal(text[i + 2]) && IsOctal(text[i + 3]);
        if (!isEscape) {
            plain += text[i];
            continue;
        }
        plain += static_cast<char>((text[i + 1] - '0') << 6 | (text[i + 2] - '0') << 3 | (text[i + 3] - '0'));
        i += 3;
    }
    return plain;
}

// Takes the text up to the mark away. No streams here: they hide a lack of memory.
std::string_view TakeUpTo(std::string_view& text, char mark)
{
    const std::string_view taken = text.substr(0, text.find(mark));
    text.remove_prefix(std::min(taken.size() + 1, text.size()));
    return taken;
}

// number parent device root point options [tags…] - type source options
bool ParseLine(std::string_view line, Mount& mount)
{
    mount.number = TakeUpTo(line, ' ');
    mount.parent = TakeUpTo(line, ' ');
    mount.device = TakeUpTo(line, ' ');
    TakeUpTo(line, ' ');
    mount.point = UnescapeOctal(TakeUpTo(line, ' '));
    while (!line.empty() && TakeUpTo(line, ' ') != "-") { }
    mount.type = TakeUpTo(line, ' ');
    mount.source = UnescapeOctal(TakeUpTo(line, ' ')); // may be empty
    return mount.point.starts_with('/') && !mount.type.empty();
}

// Does `mounts[over]` hide `mounts[under]` from every path? Mounts in one parent hide what
// they stand above, or stand on the same folder later; a mount on a mount hides it.
bool Hides(const std::vector<Mount>& mounts, size_t over, size_t under)
{
    const Mount& upper = mounts[over];
    const Mount& lower = mounts[under];
    if (upper.point == lower.point)
        return upper.parent == lower.number || (upper.parent == lower.parent && over > under);
    return upper.parent == lower.parent && LiesBelow(lower.point, upper.point);
}

bool IsHidden(const std::vector<Mount>& mounts, size_t place)
{
    for (size_t i = 0; i < mounts.size(); ++i)
        if (i != place && Hides(mounts, i, place))
            return true;
    return false;
}

// What is mounted in something hidden is out of reach as well.
void EraseHidden(std::vector<Mount>& mounts)
{
    std::vector<std::string> hidden;
    for (size_t i = 0; i < mounts.size(); ++i)
        if (IsHidden(mounts, i))
            hidden.push_back(mounts[i].number);
    for (size_t i = 0; i < hidden.size(); ++i) {
        const std::string number = hidden[i];
        for (const Mount& mount : mounts) {
            bool isInside = mount.parent == number && std::find(hidden.begin(), hidden.end(), mount.number) == hidden.end();
            // Not the one that hides it.
            bool isCover = std::any_of(mounts.begin(), mounts.end(),
                                       [&](const Mount& lower) { return lower.number == number && lower.point == mount.point; });
            if (isInside && !isCover)
                hidden.push_back(mount.number);
        }
    }
    std::erase_if(mounts, [&](const Mount& mount) { return std::find(hidden.begin(), hidden.end(), mount.number) != hidden.end(); });
}

bool HasOwnAnswer(const Mount& mount)
{
    return IsOneOf(kernelTypes, mount.type);
}

} // namespace

bool LiesBelow(std::string_view path, std::string_view folder)
{
    if (folder == "/")
        return path.size() > 1 && path[0] == '/';
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

std::vector<Mount> ReadMounts(std::string_view table)
{
    std::vector<Mount> mounts;
    while (!table.empty())
        if (Mount mount; ParseLine(TakeUpTo(table, '\n'), mount))
            mounts.push_back(std::move(mount));
    EraseHidden(mounts);
    auto isRoot = [](const Mount& mount) { return mount.point == "/"; };
    if (std::none_of(mounts.begin(), mounts.end(), isRoot))
        mounts.push_back({ {}, {}, {}, "/", {}, {} });
    std::stable_partition(mounts.begin(), mounts.end(), isRoot);
    return mounts;
}

Descriptor OpenMountFile()
{
    return Descriptor(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC));
}

std::string ReadMountFile()
{
    Descriptor file = OpenMountFile();
    if (!file.IsOpen() && errno != ENOENT)
        throw std::runtime_error("the table of mounts cannot be opened");
    return file.IsOpen() ? ReadMountFile(file) : std::string();
}

std::string ReadMountFile(const Descriptor& file)
{
    constexpr size_t step = 64 * 1024;
    std::string table;
    for (ssize_t got = 1; got > 0;) {
        const size_t filled = table.size();
        table.resize(filled + step);
        do
            got = pread(file.Get(), table.data() + filled, step, static_cast<off_t>(filled));
        while (got < 0 && errno == EINTR);
        if (got < 0)
            throw std::runtime_error("the table of mounts cannot be read");
        table.resize(filled + static_cast<size_t>(got));
    }
    return table;
}

// The mounts on the way count as well, since the path leads through them.
bool IsOnThisMachine(const std::vector<Mount>& mounts, std::string_view path)
{
    auto isOnTheWay = [path](const Mount& mount) { return mount.point == path || LiesBelow(path, mount.point); };
    return std::none_of(mounts.begin(), mounts.end(), [&](const Mount& mount) { return isOnTheWay(mount) && !HasOwnAnswer(mount); });
}

bool AnswersAtOnce(const std::vector<Mount>& mounts, std::string_view path)
{
    auto isThere = [path](const Mount& mount) { return mount.point == path; };
    return std::any_of(mounts.begin(), mounts.end(), isThere) && IsOnThisMachine(mounts, path);
}

// The kernel tells each open file once of a change.
bool HaveMountsChanged(const Descriptor& file)
{
    struct pollfd question = { file.Get(), POLLPRI, 0 };
    return poll(&question, 1, 0) != 0;
}

bool HoldsMounts(const std::string& folder)
{
    for (const Mount& mount : ReadMounts(ReadMountFile()))
        if (LiesBelow(mount.point, folder))
            return true;
    return false;
}

bool IsFuseSource(const Mount& mount)
{
    if (!mount.type.starts_with(fusePrefix) || mount.type.ends_with(imageSuffix))
        return false;
    return !IsOneOf(fuseControls, std::string_view(mount.type).substr(fusePrefix.size()));
}

bool IsNetworkMount(const Mount& mount)
{
    if (IsOneOf(networkTypes, mount.type))
        return true;
    if (!IsFuseSource(mount))
        return false;
    const std::string_view program = std::string_view(mount.type).substr(fusePrefix.size());
    bool isServer = mount.source.find(':') != std::string::npos || mount.source.starts_with("//");
    return IsOneOf(fuseNetworks, program) || (isServer && !IsOneOf(fuseUnions, program));
}

bool IsDiskMount(const Mount& mount)
{
    return mount.source.starts_with("/dev/") || mount.type == "fuseblk" || IsOneOf(diskTypes, mount.type);
}

} // namespace vx3::core

#include "volumes.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string_view>

#include "vx3/folder.h"

namespace vx3::core {

namespace {

namespace files = std::filesystem;

constexpr std::array<std::string_view, 12> networkTypes = { "nfs", "nfs4", "cifs",      "smb3",   "smbfs", "ncpfs",
                                                            "afs", "ceph", "glusterfs", "lustre", "9p",    "davfs" };
// With a disk behind them whose name need not be a device.
constexpr std::array<std::string_view, 5> diskTypes = { "zfs", "bcachefs", "virtiofs", "vboxsf", "vmhgfs" };

// One line of the table.
struct Mount {
    std::string device; // "8:1"
    std::string point;
    std::string type;
    std::string source;
};

bool IsOctal(char digit)
{
    return digit >= '0' && digit <= '7';
}

// The table writes blanks, line ends and backslashes as \040 and the like.
std::string UnescapeOctal(const std::string& text)
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

// number parent device root point options [tags…] - type source options
bool ParseLine(const std::string& line, Mount& mount)
{
    std::istringstream fields(line);
    std::string skipped;
    std::string point;
    std::string source;
    if (!(fields >> skipped >> skipped >> mount.device >> skipped >> point >> skipped))
        return false;
    while (fields >> skipped && skipped != "-") { }
    if (!(fields >> mount.type))
        return false;
    fields >> source; // may be empty
    mount.point = UnescapeOctal(point);
    mount.source = UnescapeOctal(source);
    return !mount.point.empty();
}

template <size_t count>
bool IsOneOf(const std::array<std::string_view, count>& list, const std::string& name)
{
    return std::find(list.begin(), list.end(), name) != list.end();
}

bool IsNetworkMount(const Mount& mount)
{
    if (IsOneOf(networkTypes, mount.type))
        return true;
    bool isServer = mount.source.find(':') != std::string::npos || mount.source.starts_with("//");
    return mount.type.starts_with("fuse.") && isServer;
}

bool IsDiskMount(const Mount& mount)
{
    return mount.source.starts_with("/dev/") || mount.type == "fuseblk" || IsOneOf(diskTypes, mount.type);
}

uint32_t AttributesOf(const Mount& mount)
{
    if (IsNetworkMount(mount))
        return VX3_VOLUME_NETWORK;
    return IsDiskMount(mount) || mount.point == "/" ? 0 : VX3_VOLUME_LEAVE_OUT;
}

bool IsRemovable(const std::string& device)
{
    // A partition does not say so itself, the disk above it does.
    for (const char* place : { "/removable", "/../removable" }) {
        std::ifstream file("/sys/dev/block/" + device + place);
        char digit = 0;
        if (file >> digit)
            return digit == '1';
    }
    return false;
}

// A file can be mounted over a file; that is no volume. Only disks are asked: a server
// might not answer.
bool IsMountedFile(const Mount& mount)
{
    std::error_code failure;
    return IsDiskMount(mount) && files::exists(mount.point, failure) && !files::is_directory(mount.point, failure);
}

std::vector<Mount> ReadMounts(const std::string& table)
{
    std::vector<Mount> mounts;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        Mount mount;
        if (!ParseLine(line, mount))
            continue;
        std::erase_if(mounts, [&](const Mount& earlier) { return earlier.point == mount.point; });
        mounts.push_back(mount);
    }
    auto isRoot = [](const Mount& mount) { return mount.point == "/"; };
    if (std::none_of(mounts.begin(), mounts.end(), isRoot))
        mounts.push_back({ "", "/", "", "" });
    std::stable_partition(mounts.begin(), mounts.end(), isRoot);
    return mounts;
}

// The names below /dev/disk write unusual characters as \x20.
std::string UnescapeHex(const std::string& text)
{
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        bool isEscape = text.compare(i, 2, "\\x") == 0 && i + 3 < text.size() && std::isxdigit(static_cast<unsigned char>(text[i + 2]))
            && std::isxdigit(static_cast<unsigned char>(text[i + 3]));
        if (!isEscape) {
            plain += text[i];
            continue;
        }
        plain += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
        i += 3;
    }
    return plain;
}

// From the device to its label.
std::map<std::string, std::string> ReadLabels()
{
    std::map<std::string, std::string> labels;
    std::error_code failure;
    for (files::directory_iterator link("/dev/disk/by-label", failure), end; !failure && link != end; link.increment(failure)) {
        std::error_code unreadable;
        files::path device = files::canonical(link->path(), unreadable);
        if (!unreadable)
            labels[device.string()] = UnescapeHex(link->path().filename().string());
    }
    return labels;
}

} // namespace

std::vector<VolumeFacts> ReadMountTable(const std::string& table)
{
    std::vector<VolumeFacts> volumes;
    for (const Mount& mount : ReadMounts(table))
        volumes.push_back({ mount.point, {}, AttributesOf(mount) });
    return volumes;
}

std::vector<VolumeFacts> ListVolumes()
{
    std::ifstream file("/proc/self/mountinfo");
    std::stringstream table;
    table << file.rdbuf();
    std::map<std::string, std::string> labels = ReadLabels();
    std::vector<VolumeFacts> volumes;
    for (const Mount& mount : ReadMounts(table.str())) {
        if (IsMountedFile(mount))
            continue;
        VolumeFacts facts = { mount.point, {}, AttributesOf(mount) };
        if (auto label = labels.find(mount.source); label != labels.end())
            facts.label = label->second;
        if (IsDiskMount(mount) && IsRemovable(mount.device))
            facts.attributes |= VX3_VOLUME_REMOVABLE;
        volumes.push_back(std::move(facts));
    }
    return volumes;
}

} // namespace vx3::core

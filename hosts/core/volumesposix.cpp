#include "volumes.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <map>

#include "vx3/folder.h"

namespace vx3::core {

namespace {

namespace files = std::filesystem;

uint32_t AttributesOf(const Mount& mount)
{
    if (IsNetworkMount(mount))
        return VX3_VOLUME_NETWORK;
    return IsDiskMount(mount) || IsFuseSource(mount) || mount.point == "/" ? 0 : VX3_VOLUME_LEAVE_OUT;
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

std::vector<Mount> ReadShownMounts(const std::string& table)
{
    std::vector<Mount> mounts = ReadMounts(table);
    std::erase_if(mounts, [](const Mount& mount) { return AttributesOf(mount) & VX3_VOLUME_LEAVE_OUT; });
    return mounts;
}

std::vector<VolumeFacts> ListVolumes()
{
    std::map<std::string, std::string> labels = ReadLabels();
    std::vector<VolumeFacts> volumes;
    for (const Mount& mount : ReadMounts(ReadMountFile())) {
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

// The desktop's trash, as freedesktop.org lays it down (version 1.0): what is
// deleted moves to `files`, and a text beside it in `info` says where it came from.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <climits>
#include <unistd.h>

#include "descriptor.h"
#include "fileoperations.h"
#include "filestatus.h"
#include "hoststate.h"
#include "mounttable.h"

namespace vx3::core {

namespace {

constexpr const char* infoSuffix = ".trashinfo";
constexpr size_t longestName = NAME_MAX;
constexpr int mostTries = 10000; // of names that are taken

struct Trash {
    std::string folder;
    std::string top; // paths are told from here; empty: from the root
};

bool MakePrivateFolder(const std::string& path)
{
    struct stat status;
    if (mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        return false;
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

bool MakeFoldersAbove(const std::string& path)
{
    for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1))
        if (mkdir(path.substr(0, slash).c_str(), S_IRWXU) != 0 && errno != EEXIST)
            return false;
    return true;
}

bool MakeTrash(const std::string& folder)
{
    return MakePrivateFolder(folder) && MakePrivateFolder(folder + "/files") && MakePrivateFolder(folder + "/info");
}

std::string HomeTrash()
{
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data && *data == '/')
        return std::string(data) + "/Trash";
    const std::string& home = CurrentSettings().homeFolder;
    return home.empty() ? std::string() : home + "/.local/share/Trash";
}

// The highest folder above a path without a change of the volume.
std::string TopFolder(const std::string& path)
{
    std::string top = FolderOf(path);
    while (top != "/" && AreOnOneVolume(top, FolderOf(top)))
        top = FolderOf(top);
    return top;
}

// The folder that the administrator has made for all users; the rules say when it may be trusted.
bool IsSharedTrash(const std::string& folder)
{
    struct stat status;
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX);
}

// False if no trash may be used.
bool FindTrash(const std::string& path, Trash& trash)
{
    std::string home = HomeTrash();
    if (!home.empty() && MakeFoldersAbove(home) && MakeTrash(home) && AreOnOneVolume(home, FolderOf(path))) {
        trash = { home, {} };
        return true;
    }
    std::string top = TopFolder(path);
    std::string stem = top == "/" ? "" : top;
    std::string user = std::to_string(getuid());
    for (const std::string& folder : { stem + "/.Trash/" + user, stem + "/.Trash-" + user }) {
        bool isShared = folder.ends_with("/" + user);
        if ((isShared && !IsSharedTrash(stem + "/.Trash")) || !MakeTrash(folder))
            continue;
        trash = { folder, stem + "/" };
        return true;
    }
    return false;
}

std::string PercentEncoded(const std::string& path)
{
    constexpr const char* plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    constexpr const char* digits = "0123456789ABCDEF";
    std::string encoded;
    for (char letter : path) {
        auto byte = static_cast<unsigned char>(letter);
        if (std::string_view(plain).find(letter) != std::string_view::npos)
            encoded += letter;
        else
            encoded += { '%', digits[byte >> 4], digits[byte & 15] };
    }
    return encoded;
}

std::string InfoText(const std::string& path, const Trash& trash)
{
    VX3FileDate date = LocalDate(std::time(nullptr));
    char moment[48];
    std::snprintf(moment, sizeof(moment), "%04u-%02u-%02uT%02u:%02u:%02u", date.year, date.month, date.day, date.hour, date.minute,
                  date.second);
    std::string told = path.substr(path.starts_with(trash.top) ? trash.top.size() : 0);
    return "[Trash Info]\nPath=" + PercentEncoded(told) + "\nDeletionDate=" + moment + "\n";
}

// Number 1 is the name itself.
std::string NumberedName(const std::string& name, int number)
{
    std::string tail = number == 1 ? std::string() : "." + std::to_string(number);
    return name.substr(0, longestName - tail.size() - std::string_view(infoSuffix).size()) + tail;
}

enum class InfoResult { Written, Taken, Failed };

// The text comes first and reserves the name.
InfoResult WriteInfo(const std::string& file, const std::string& text)
{
    Descriptor info(open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!info.IsOpen())
        return errno == EEXIST ? InfoResult::Taken : InfoResult::Failed;
    if (write(info.Get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()))
        return InfoResult::Written;
    unlink(file.c_str());
    return InfoResult::Failed;
}

bool MoveInto(const Trash& trash, const std::string& path)
{
    const std::string text = InfoText(path, trash);
    for (int number = 1; number <= mostTries; ++number) {
        std::string name = NumberedName(LastOf(path), number);
        std::string info = trash.folder + "/info/" + name + infoSuffix;
        std::string file = trash.folder + "/files/" + name;
        InfoResult result = FileExists(file) ? InfoResult::Taken : WriteInfo(info, text);
        if (result == InfoResult::Taken)
            continue;
        if (result == InfoResult::Written && RenameWithoutReplacing(path, file))
            return true;
        if (result == InfoResult::Written)
            unlink(info.c_str());
        return false;
    }
    return false;
}

// Without links; empty if nothing is there.
std::string RealPath(const std::string& path)
{
    char* real = realpath(path.c_str(), nullptr);
    std::string copy = real ? real : "";
    std::free(real);
    return copy;
}

// Where a path stands to the trash that is to take it.
enum class Place { Outside, Inside, Itself };

// `Itself` is also what holds the trash and what the trash is made of.
Place PlaceOf(const std::string& path, const std::string& trash)
{
    if (path == trash || path == trash + "/files" || path == trash + "/info" || LiesBelow(trash, path))
        return Place::Itself;
    return LiesBelow(path, trash) ? Place::Inside : Place::Outside;
}

// What lies in the trash goes for good, as desktops do it, and then its text as well.
bool RemoveFromTrash(const std::string& path, const std::string& trash, OperationProgress& progress)
{
    if (!RemoveTree(path, progress))
        return false;
    if (FolderOf(path) == trash + "/files")
        unlink((trash + "/info/" + LastOf(path) + infoSuffix).c_str());
    return true;
}

} // namespace

bool MoveToTrash(const std::string& path, int64_t size, OperationProgress& progress)
{
    // The real folder: the text is read long after links on the way may have changed.
    const std::string folder = RealPath(FolderOf(path));
    if (folder.empty())
        return false;
    const std::string place = (folder == "/" ? "" : folder) + "/" + LastOf(path);
    Trash trash;
    if (!FileExists(place) || !FindTrash(place, trash))
        return false;
    const std::string realTrash = RealPath(trash.folder);
    if (realTrash.empty())
        return false;
    switch (PlaceOf(place, realTrash)) {
    case Place::Itself: return false;
    case Place::Inside: return RemoveFromTrash(place, realTrash, progress);
    case Place::Outside: break;
    }
    // A mount would come along unseen, and whoever empties the trash would empty the volume.
    return !HoldsMounts(place) && progress.BeginElement(size) && MoveInto(trash, place);
}

} // namespace vx3::core

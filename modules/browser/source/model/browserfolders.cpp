#include "model/browserfolders.h"

#include "services/resources.h"

namespace browser {

namespace {

// Written on the main thread during start or by the loader; a second writer writes the
// same value.
struct FolderState {
    bool cacheFolderMade = false;
    bool userFolderMade = false;
    bool systemFolderChecked = false;
    bool userBrowserFolderChecked = false;
    bool systemBrowserFolderChecked = false;
    bool restricted = false;
};

FolderState state;

bool Exists(const FilePath& path)
{
    return host->folder->exists(path.Value());
}

bool ExistsOrMade(const FilePath& path)
{
    return Exists(path) || host->folder->createFolder(path.Value());
}

// Host folder, empty if there is none.
FilePath HostFolder(int32_t number)
{
    FilePath path;
    (void)host->run->folder(number, path.Value());
    return path;
}

// A folder of the host may lie in folders that do not exist before the first start.
bool MakeWithParents(const FilePath& path)
{
    if (path.IsEmpty() || Exists(path))
        return !path.IsEmpty();
    return MakeWithParents(path.Directory()) && host->folder->createFolder(path.Value());
}

void MakeSubfolder(const FilePath& folder, const char* name)
{
    FilePath path(folder); // empty without memory: a name alone would lie in the working folder
    if (!path.IsEmpty() && path.Append(name))
        (void)ExistsOrMade(path);
}

} // namespace

void RememberRestriction()
{
    state.restricted = host->run->edition(VX3_EDITION_RESTRICTED, nullptr);
}

void ForgetFolders()
{
    state = {};
}

bool IsRunRestricted()
{
    return state.restricted;
}

void GetCacheFolder(CreateFolders create, FilePath& out)
{
    out = HostFolder(VX3_FOLDER_PREFERENCES);
    if (out.IsEmpty() || !out.Append("cache")) {
        out.Clear();
        return;
    }
    if (create == CreateFolders::No || state.cacheFolderMade)
        return;
    (void)MakeWithParents(out);
    MakeSubfolder(out, "image");
    MakeSubfolder(out, "tmp");
    state.cacheFolderMade = true;
}

void GetTempFolder(FilePath& out)
{
    if (state.restricted) {
        (void)host->run->place(VX3_PLACE_TEMPORARY, out.Value());
        return;
    }
    GetCacheFolder(CreateFolders::No, out);
    if (!out.IsEmpty() && !out.Append("tmp"))
        out.Clear();
}

void DeleteTempFolder()
{
    if (state.restricted)
        return; // It is the system's own.
    FilePath folder, cache;
    GetTempFolder(folder);
    GetCacheFolder(CreateFolders::No, cache);
    bool isOurs = !folder.IsEmpty() && !cache.IsEmpty() && folder.Directory() == cache;
    constexpr uint32_t bits = uint32_t(VX3_ENTRY_FOLDER) | VX3_REMOVE_FOR_GOOD;
    if (isOurs && Exists(folder))
        (void)host->folder->remove(folder.Value(), bits, 0, nullptr, nullptr, nullptr);
}

void GetUserLibraryFolder(FilePath& out)
{
    out = HostFolder(VX3_FOLDER_USER_LIBRARY);
    if (out.IsEmpty())
        return;
    if (!state.userFolderMade)
        state.userFolderMade = MakeWithParents(out);
    if (!out.Append("browser")) {
        out.Clear();
        return;
    }
    if (state.userBrowserFolderChecked)
        return;
    state.userBrowserFolderChecked = ExistsOrMade(out);
    if (!state.userBrowserFolderChecked)
        WriteConsole("CB: Creating user library/browser directory failed");
}

bool GetSystemLibraryFolder(FilePath* out)
{
    FilePath user;
    GetUserLibraryFolder(user);
    FilePath folder = HostFolder(VX3_FOLDER_APPLICATION_LIBRARY);
    bool isSeparate = !(folder == HostFolder(VX3_FOLDER_USER_LIBRARY));
    if (!isSeparate)
        state.systemFolderChecked = state.userFolderMade;
    if (!state.systemFolderChecked)
        state.systemFolderChecked = !folder.IsEmpty() && Exists(folder);
    if (out)
        out->Clear();
    if (!isSeparate || !state.systemFolderChecked || !folder.Append("browser"))
        return false;
    if (!state.systemBrowserFolderChecked)
        state.systemBrowserFolderChecked = Exists(folder);
    if (!state.systemBrowserFolderChecked) {
        WriteConsole("CB: system library/browser directory does not exist");
        return false;
    }
    if (out)
        *out = std::move(folder);
    return true;
}

bool IsContentToolEnabled()
{
    FilePath marker;
    return host->run->place(VX3_PLACE_STARTUP, marker.Value()) && marker.Append("vx3_enablecontenttool.txt") && Exists(marker);
}

} // namespace browser

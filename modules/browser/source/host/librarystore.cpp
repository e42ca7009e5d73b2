#include "host/librarystore.h"

#include "host/librarymount.h"
#include "model/browserfolders.h"
#include "model/contenttree.h"
#include "model/urlresolver.h"
#include "services/resources.h"
#include "services/texts.h"
#include "storage/browserdatabaseitem.h"

namespace browser {

namespace {

constexpr const char* defaultsUrl = "preset://defaultobject.libvx";
constexpr const char* userUrl = "preset://user.libvx";
constexpr const char* userFile = "User.libvx";

// A handle for the length of a scope. What was changed is written when it goes.
class ItemHandle
{
public:
    explicit ItemHandle(BrowserDatabaseItem* handle)
        : item(handle)
    {
    }
    ~ItemHandle()
    {
        if (item)
            item->Release();
    }
    ItemHandle(const ItemHandle&) = delete;
    ItemHandle& operator=(const ItemHandle&) = delete;
    explicit operator bool() const { return item != nullptr; }
    BrowserDatabaseItem* operator->() const { return item; }

private:
    BrowserDatabaseItem* item;
};

BrowserDatabase* OpenOwn(const FilePath& folder, const char* name, uint32_t flags)
{
    FilePath path;
    if (folder.IsEmpty() || !path.Set(folder) || !path.Append(name))
        return nullptr;
    BrowserDatabase* library = MakeOwnedLibrary(path, String(), flags);
    if (library)
        (void)library->Load(); // at the first start there is no file
    return library;
}

// The folder of a system library, or one below it.
bool IsInSystemFolder(const FilePath& file)
{
    FilePath system, folder, above;
    if (!GetSystemLibraryFolder(&system) || !file.GetDirectory(folder))
        return false;
    while (!folder.IsEmpty() && !(folder == system)) {
        if (!folder.GetDirectory(above) || above == folder)
            return false;
        folder = above;
    }
    return !folder.IsEmpty();
}

bool MakeRegistered(BrowserDatabase& library, BrowserURL& location, const String& name)
{
    return library.SetLocalizedName(name) && library.SetLibraryName(location.GetText()) && library.Flush(Force::Yes);
}

// One that was there gets what it lacks.
bool NameRegistered(BrowserDatabase& library, BrowserURL& location, const String& name)
{
    if (library.GetDisplayName(false).IsEmpty() && !library.SetLocalizedName(name))
        return false;
    return library.GetLibraryName().StartsWith("preset:/") || library.SetLibraryName(location.GetText());
}

LibraryRef MakeUserLibrary()
{
    FilePath folder, path;
    GetUserLibraryFolder(folder);
    if (folder.IsEmpty() || !path.SetJoined(folder, String(userFile)))
        return {};
    BrowserDatabase* library = MakeOwnedLibrary(path, String(), LibraryUser);
    if (!library)
        return {};
    const bool isThere = library->Load();
    if ((isThere || library->CreateEmptyFile()) && library->SetLibraryName(String(userUrl)))
        return GetLibrary(userSlot);
    CloseLibrary(library);
    return {};
}

LibraryRef DemandLibrary(int32_t id)
{
    LibraryRef library = GetLibrary(id);
    return library || id != userSlot ? std::move(library) : MakeUserLibrary();
}

} // namespace

BrowserDatabase* MakeOwnedLibrary(const FilePath& path, const String& subFolder, uint32_t flags)
{
    BrowserDatabase* library = MakeLibrary(path, subFolder, flags);
    if (library && library->GetSlot() == noSlot)
        CloseLibrary(std::exchange(library, nullptr));
    return library;
}

bool NameDataFolder(const FilePath& file, String& name)
{
    return name.Set("data ") && name.Append(file.Last());
}

void OpenOwnLibraries()
{
    FilePath folder;
    GetCacheFolder(CreateFolders::Yes, folder);
    contentTree.mainDatabase = OpenOwn(folder, "BrowserDB", LibraryMain | LibraryExternal);
    GetUserLibraryFolder(folder);
    contentTree.defaultsDatabase = OpenOwn(folder, "default.libvx", 0);
    if (contentTree.defaultsDatabase)
        (void)contentTree.defaultsDatabase->MoveLibrary(String(defaultsUrl));
}

void ForgetOwnLibraries()
{
    contentTree.mainDatabase = contentTree.defaultsDatabase = nullptr;
}

int32_t RegisterLibrary(BrowserURL& location, const String& name, const FilePath& file)
{
    String subFolder;
    if (!NameDataFolder(file, subFolder))
        return noLibrary;
    BrowserDatabase* library = MakeOwnedLibrary(file, subFolder, LibraryExternal);
    if (!library)
        return noLibrary;
    const bool isNamed = library->Load() ? NameRegistered(*library, location, name) : MakeRegistered(*library, location, name);
    if (!isNamed) {
        CloseLibrary(library);
        return noLibrary;
    }
    if (IsInSystemFolder(file))
        library->MarkReadOnly();
    return library->GetSlot();
}

bool UnregisterLibrary(int32_t id)
{
    if (id == mainSlot) {
        WriteConsole("Unregistering the main database is not allowed!");
        return false;
    }
    BrowserDatabase* library = GetLibrary(id).Get(); // closing is this thread's alone
    if (!library)
        return false;
    const bool isWritten = library->Flush();
    if (library->AttachCount() != 0)
        return false;
    CloseLibrary(library);
    return isWritten;
}

int32_t GetLibraryId(BrowserURL& url)
{
    const String text = url.GetText();
    if (text.StartsWith("preset:/"))
        LoadLibraries();
    if (const LibraryRef library = FindLibraryForPath(text, false))
        return library->GetSlot();
    return StartsWithFolded(text, String(userUrl)) ? userSlot : noLibrary;
}

// An item whose address differs in case alone is found by the tree.
bool ItemExists(BrowserURL& url)
{
    const String text = url.GetText();
    if (BrowserDatabaseItem* item = FindItem(text)) {
        const bool isSame = item->GetPath() == text;
        delete item;
        if (isSame)
            return true;
    }
    ContentRef presets(contentTree.Presets()), node;
    FindNodeByUrl(url, FindPlain, presets, node);
    if (node)
        WriteConsole("CB: Case sensitivity issue!");
    return static_cast<bool>(node);
}

bool StoreItem(int32_t id, BrowserURL& url, int32_t type, const String* name, const void* data, int64_t length)
{
    const LibraryRef library = DemandLibrary(id);
    if (!library)
        return false;
    const ItemHandle item(library->OpenItem(url.GetText()));
    if (!item || !item->SetType(type) || (name && !item->SetName(*name)))
        return false;
    return (!data || item->SetData(data, length, true)) && item->SetChanged(CurrentDate());
}

bool ReadItem(int32_t id, BrowserURL& url, int32_t* type, BaseContainer* settings, Block* data)
{
    const LibraryRef library = GetLibrary(id);
    const ItemHandle item(library ? FindItem(url.GetText()) : nullptr);
    if (!item || &item->Library() != library.Get())
        return false;
    if (type)
        *type = item->GetType();
    if (settings)
        (void)item->GetSettings(*settings);
    if (data)
        (void)item->GetData(*data);
    return true;
}

void TellOfDamagedLibraries(bool clear)
{
    String names;
    if (!ListChangedNames(names, clear))
        return;
    String text = ResourceText(Texts::DamagedLibraries);
    if (text.Append(names))
        host->message->showText(text.Value());
}

} // namespace browser

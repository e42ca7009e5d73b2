#include "host/librarytool.h"

#include "host/librarystore.h"

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;
constexpr const char* scheme = "preset://";
constexpr int64_t littleMemory = 4096; // whoever does not get that has none

// What `inspect` tells of a path; 0 if nothing is there.
bool InspectFlags(const FilePath& path, uint32_t& flags)
{
    VX3FolderEntry entry = {};
    if (!host->folder->inspect(path.Value(), &entry))
        return false;
    host->text->destruct(&entry.name);
    flags = entry.flags;
    return true;
}

bool IsFolder(const FilePath& path)
{
    uint32_t flags = 0;
    return InspectFlags(path, flags) && (flags & (VX3_ENTRY_FOLDER | VX3_ENTRY_BUNDLE));
}

bool IsProtected(const FilePath& path)
{
    uint32_t flags = 0;
    return InspectFlags(path, flags) && (flags & VX3_ENTRY_READONLY);
}

LibraryOutcome WhyNotRead()
{
    return IsMemoryShort(littleMemory) ? LibraryOutcome::NoMemory : LibraryOutcome::Unreadable;
}

// Before the module looks at it: it would take any file for an empty library, and write over it.
LibraryOutcome Examine(const FilePath& file)
{
    uint32_t flags = 0;
    if (!InspectFlags(file, flags))
        return LibraryOutcome::NotFound;
    if (flags & (VX3_ENTRY_FOLDER | VX3_ENTRY_BUNDLE))
        return LibraryOutcome::Folder;
    BinaryFile opened;
    BrowserDatabaseChunk head;
    if ((flags & VX3_ENTRY_SPECIAL) || !opened.Open(file, OpenMode::Read))
        return WhyNotRead();
    const int64_t length = opened.Length();
    if (length < 0 || (length >= chunkHeaderSize && !ReadChunkHeader(opened, head)))
        return WhyNotRead();
    return head.tag == ChunkTag::FileHead ? LibraryOutcome::Ok : LibraryOutcome::NoLibrary;
}

// With its payloads outside, if there is a folder for them.
BrowserDatabase* MakeFor(const FilePath& file)
{
    FilePath folder;
    String name;
    if (!NameDataFolder(file, name) || !file.GetDirectory(folder) || !folder.Append(name))
        return nullptr;
    const bool isOutside = IsFolder(folder);
    return MakeOwnedLibrary(file, isOutside ? name : String(), isOutside ? static_cast<uint32_t>(LibraryExternal) : 0u);
}

LibraryOutcome TakeOver(BrowserDatabase* library, LibraryTool*& tool)
{
    tool = Make<LibraryTool>()(*library);
    if (tool)
        return LibraryOutcome::Ok;
    CloseLibrary(library);
    return LibraryOutcome::NoMemory;
}

LibraryOutcome Abandon(BrowserDatabase* library, LibraryOutcome outcome)
{
    CloseLibrary(library);
    return outcome;
}

// Behind a load, which gives another name to one whose own is taken.
bool WasNameTaken(BrowserDatabase& library)
{
    const ReadGuard guard(library.Lock(), rank);
    return library.State().readOnly && library.State().infoDirty;
}

LibraryOutcome Load(BrowserDatabase& library, LibraryAccess access)
{
    if (access == LibraryAccess::Read)
        library.MarkProtected(); // first, since an old file is brought up to date by its load
    if (!library.Load())
        return WhyNotRead();
    const bool isTaken = access == LibraryAccess::Change && WasNameTaken(library);
    return isTaken ? LibraryOutcome::NameTaken : LibraryOutcome::Ok;
}

// The place for a new file, and the address that its name makes.
LibraryOutcome FindPlace(const FilePath& file, FilePath& folder, String& address)
{
    if (host->folder->exists(file.Value()))
        return IsFolder(file) ? LibraryOutcome::Folder : LibraryOutcome::Exists;
    if (!file.GetDirectory(folder) || !address.Set(scheme) || !address.Append(file.Last()))
        return LibraryOutcome::NoMemory;
    if (!IsFolder(folder))
        return LibraryOutcome::NotFound;
    if (FindLibraryByFile(file))
        return LibraryOutcome::InUse; // its file is made when there is something to keep
    return FindLibraryByName(address, nullptr) ? LibraryOutcome::NameTaken : LibraryOutcome::Ok;
}

// Nothing stays of a file that could not be written.
LibraryOutcome WriteNew(BrowserDatabase& library, const FilePath& file, const FilePath& folder)
{
    if (library.IsReadOnly())
        return LibraryOutcome::ReadOnly;
    if (library.Flush(Force::Yes))
        return LibraryOutcome::Ok;
    if (library.HasFile()) // ours; another program's is left alone
        (void)RemoveFile(file);
    if (IsProtected(folder))
        return LibraryOutcome::Protected;
    return IsMemoryShort(littleMemory) ? LibraryOutcome::NoMemory : LibraryOutcome::NotWritten;
}

} // namespace

bool IsMemoryShort(int64_t size)
{
    Block probe;
    return !probe.Alloc(size);
}

// --- Opening and closing ---

LibraryOutcome LibraryTool::Create(const FilePath& file, const String* name, LibraryTool*& tool)
{
    FilePath folder;
    String address;
    if (const LibraryOutcome outcome = FindPlace(file, folder, address); outcome != LibraryOutcome::Ok)
        return outcome;
    BrowserDatabase* library = MakeFor(file);
    if (!library)
        return LibraryOutcome::NoMemory;
    if (!library->SetLibraryName(address) || (name && !library->SetLocalizedName(*name)))
        return Abandon(library, LibraryOutcome::NoMemory);
    const LibraryOutcome outcome = WriteNew(*library, file, folder);
    return outcome == LibraryOutcome::Ok ? TakeOver(library, tool) : Abandon(library, outcome);
}

LibraryOutcome LibraryTool::Open(const FilePath& file, LibraryAccess access, LibraryTool*& tool)
{
    if (const LibraryOutcome outcome = Examine(file); outcome != LibraryOutcome::Ok)
        return outcome;
    if (access == LibraryAccess::Change && FindLibraryByFile(file))
        return LibraryOutcome::InUse;
    BrowserDatabase* library = MakeFor(file);
    if (!library)
        return LibraryOutcome::NoMemory;
    const LibraryOutcome outcome = browser::Load(*library, access);
    return outcome == LibraryOutcome::Ok ? TakeOver(library, tool) : Abandon(library, outcome);
}

LibraryOutcome LibraryTool::Close(LibraryTool* tool)
{
    if (!tool)
        return LibraryOutcome::Ok;
    LibraryOutcome outcome = tool->Flush();
    if (const LibraryOutcome end = tool->EndHold(); outcome == LibraryOutcome::Ok)
        outcome = end;
    CloseLibrary(tool->library);
    Destroy(tool);
    return outcome;
}

// --- Writing ---

LibraryOutcome LibraryTool::BeginChange()
{
    if (library->IsReadOnly())
        return LibraryOutcome::ReadOnly;
    if (!isChanged && library->IsDamaged()) {
        FilePath backup;
        if (!MakeSibling(library->GetFilePath(), ".bak", backup))
            return LibraryOutcome::NoMemory;
        if (host->folder->exists(backup.Value()))
            return LibraryOutcome::BackupThere;
    }
    if (!isHeld && !library->HoldFile())
        return WhyNotHeld();
    isHeld = isChanged = true;
    return LibraryOutcome::Ok;
}

LibraryOutcome LibraryTool::EndHold()
{
    if (!std::exchange(isHeld, false) || library->ReleaseFile())
        return LibraryOutcome::Ok;
    return LibraryOutcome::NotWritten;
}

// Of what writes the library itself. Whether it may be written is told by opening it.
LibraryOutcome LibraryTool::BeginWhole()
{
    if (!library->IsReadOnly() && library->IsDamaged())
        return LibraryOutcome::Damaged;
    if (const LibraryOutcome outcome = BeginChange(); outcome != LibraryOutcome::Ok)
        return outcome;
    return EndHold();
}

// What was half written is not in the file any more, so a second try, with the file opened anew,
// is worth its while.
LibraryOutcome LibraryTool::Flush()
{
    if (!isChanged || library->Flush())
        return LibraryOutcome::Ok;
    const LibraryOutcome outcome = WhyNotStored();
    return library->Flush() ? LibraryOutcome::Ok : outcome;
}

LibraryOutcome LibraryTool::WhyNotHeld() const
{
    const FilePath file = library->GetFilePath();
    const FileStamp now = StampOf(file);
    {
        const ReadGuard guard(library->Lock(), rank);
        if (!(now == library->State().stamp))
            return LibraryOutcome::Changed;
    }
    if (IsProtected(file))
        return LibraryOutcome::Protected;
    if (IsMemoryShort(littleMemory))
        return LibraryOutcome::NoMemory;
    BinaryFile probe;
    return probe.Open(file, OpenMode::Update) ? LibraryOutcome::NotWritten : LibraryOutcome::InUse;
}

// A file that has failed once fails until it is opened anew; where it has not, only memory was
// missing.
LibraryOutcome LibraryTool::WhyNotStored()
{
    bool isDiskSound = false;
    {
        const ReadGuard guard(library->Lock(), rank);
        isDiskSound = isHeld && library->State().dataInFile && library->State().file.IsUsable();
    }
    if (isDiskSound || IsMemoryShort(littleMemory))
        return LibraryOutcome::NoMemory;
    (void)EndHold();
    return LibraryOutcome::NotWritten;
}

LibraryOutcome LibraryTool::SetName(const String& name)
{
    if (const LibraryOutcome outcome = BeginChange(); outcome != LibraryOutcome::Ok)
        return outcome;
    return library->SetLocalizedName(name) ? LibraryOutcome::Ok : LibraryOutcome::NoMemory;
}

LibraryOutcome LibraryTool::Freeze()
{
    if (const LibraryOutcome outcome = BeginWhole(); outcome != LibraryOutcome::Ok)
        return outcome;
    return library->FreezeReadOnly(false) ? LibraryOutcome::Ok : WhyNotStored();
}

LibraryOutcome LibraryTool::Compact()
{
    if (const LibraryOutcome outcome = BeginWhole(); outcome != LibraryOutcome::Ok)
        return outcome;
    return library->Compact() ? LibraryOutcome::Ok : WhyNotStored();
}

} // namespace browser

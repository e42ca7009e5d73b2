#include "storage/librarytable.h"

namespace browser {

namespace {

constexpr size_t firstCapacity = 16;
constexpr int32_t firstFreeSlot = 2;

struct LibraryTable {
    ReadWriteLock lock;
    BrowserDatabase** libraries = nullptr;
    size_t capacity = 0;
    int32_t count = 0; // one behind the last slot that was ever used; 2 from the first library on
};

LibraryTable table;

bool Reserve(int32_t wanted)
{
    if (static_cast<size_t>(wanted) <= table.capacity)
        return true;
    const size_t larger = table.capacity < firstCapacity ? firstCapacity : table.capacity * 2;
    auto* grown = static_cast<BrowserDatabase**>(HostAlloc(larger * sizeof(BrowserDatabase*), SourcePlace::Here(), Clear::Yes));
    if (!grown)
        return false;
    for (int32_t i = 0; i < table.count && static_cast<size_t>(i) < table.capacity; i++)
        grown[i] = table.libraries[i];
    HostFree(std::exchange(table.libraries, grown));
    table.capacity = larger;
    return true;
}

int32_t WantedSlot(uint32_t flags)
{
    if (flags & LibraryMain)
        return table.libraries[mainSlot] ? noSlot : mainSlot;
    if (flags & LibraryUser)
        return table.libraries[userSlot] ? noSlot : userSlot;
    int32_t slot = firstFreeSlot;
    while (slot < table.count && table.libraries[slot])
        slot++;
    return slot;
}

bool IsEmpty()
{
    for (int32_t i = 0; i < table.count; i++)
        if (table.libraries[i])
            return false;
    return true;
}

// The first library that the question is true for. The table's lock is not held while it is
// asked, since the library's own is needed for that.
template <class Question>
LibraryRef FindLibrary(Question isWanted)
{
    for (int32_t slot = 0; slot < LibrarySlots(); slot++)
        if (LibraryRef library = GetLibrary(slot); library && isWanted(*library.Get()))
            return library;
    return {};
}

bool IsBelow(const String& path, const String& name)
{
    if (name.IsEmpty() || !StartsWithFolded(path, name))
        return false;
    return path.Length() == name.Length() || path.View()[static_cast<size_t>(name.Length())] == '/';
}

} // namespace

BrowserDatabase* MakeLibrary(const FilePath& path, const String& subFolder, uint32_t flags)
{
    return Make<BrowserDatabase>()(path, subFolder, flags);
}

void CloseLibrary(BrowserDatabase* library)
{
    delete library;
}

int32_t TakeSlot(BrowserDatabase& library, uint32_t flags)
{
    const WriteGuard guard(table.lock, LockRank::LibraryTable);
    if (table.count == 0 && !Reserve(firstFreeSlot))
        return noSlot;
    table.count = table.count ? table.count : firstFreeSlot;
    const int32_t slot = WantedSlot(flags);
    if (slot == noSlot || !Reserve(slot + 1))
        return noSlot;
    table.libraries[slot] = &library;
    table.count = slot >= table.count ? slot + 1 : table.count;
    return slot;
}

void GiveSlot(int32_t slot)
{
    const WriteGuard guard(table.lock, LockRank::LibraryTable);
    if (slot != noSlot)
        table.libraries[slot] = nullptr;
}

void FreeTableIfEmpty()
{
    {
        const WriteGuard guard(table.lock, LockRank::LibraryTable);
        if (!IsEmpty())
            return;
        HostFree(std::exchange(table.libraries, nullptr));
        table.capacity = 0;
        table.count = 0;
    }
    DestroyIndex();
}

int32_t LibrarySlots()
{
    const ReadGuard guard(table.lock, LockRank::LibraryTable);
    return table.count;
}

LibraryRef GetLibrary(int32_t slot)
{
    const ReadGuard guard(table.lock, LockRank::LibraryTable);
    BrowserDatabase* library = slot >= 0 && slot < table.count ? table.libraries[slot] : nullptr;
    if (library)
        library->CountHandle(1);
    return LibraryRef(library);
}

LibraryRef GetFirstLibrary()
{
    return GetLibrary(mainSlot);
}

LibraryRef FindLibraryByFile(const FilePath& path)
{
    return FindLibrary([&path](const BrowserDatabase& library) { return library.GetFilePath() == path; });
}

LibraryRef FindLibraryByName(const String& name, const BrowserDatabase* except)
{
    return FindLibrary([&](const BrowserDatabase& library) { return &library != except && library.GetLibraryName() == name; });
}

LibraryRef FindLibraryForPath(const String& path, bool useFallback)
{
    if (path.StartsWith("file:/"))
        return GetFirstLibrary();
    if (LibraryRef found = FindLibrary([&path](const BrowserDatabase& library) { return IsBelow(path, library.GetLibraryName()); }))
        return found;
    return useFallback ? GetFirstLibrary() : LibraryRef();
}

String GetLibraryName(const String& path)
{
    const LibraryRef library = FindLibraryForPath(path, true);
    return library ? library->GetDisplayName(false) : String();
}

bool ListChangedNames(String& text, bool clear)
{
    bool isAny = false;
    for (int32_t slot = 0; slot < LibrarySlots(); slot++) {
        const LibraryRef library = GetLibrary(slot);
        if (!library || !library->TakeDamaged(clear))
            continue;
        if (!text.IsEmpty())
            (void)text.Append(", ");
        (void)text.Append(library->GetDisplayName(true));
        isAny = true;
    }
    return isAny;
}

bool CompactAll()
{
    bool areCompact = true;
    for (int32_t slot = 0; slot < LibrarySlots(); slot++)
        if (const LibraryRef library = GetLibrary(slot))
            areCompact = library->Compact() && areCompact;
    return areCompact;
}

void CloseAll(bool flush, bool compact)
{
    for (int32_t slot = LibrarySlots() - 1; slot >= 0; slot--) {
        BrowserDatabase* library = GetLibrary(slot).Get(); // closing is this thread's alone
        if (library && flush)
            (void)library->FlushAtEnd(compact);
        CloseLibrary(library);
    }
}

} // namespace browser

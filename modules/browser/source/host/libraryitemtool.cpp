// What a tool does with the items of its library.

#include "host/librarytool.h"

#include <algorithm>
#include <iterator>

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;
constexpr VX3Unit slash = '/';
constexpr VX3Unit firstPrintable = 0x20;
constexpr VX3Unit deleteCharacter = 0x7F;

Units WithoutSlashes(Units units)
{
    while (!units.empty() && units.front() == slash)
        units = units.subspan(1);
    while (!units.empty() && units.back() == slash)
        units = units.first(units.size() - 1);
    return units;
}

bool IsPart(Units part)
{
    const bool areDots = std::all_of(part.begin(), part.end(), [](VX3Unit unit) { return unit == '.'; });
    return !part.empty() && !(areDots && part.size() <= 2)
        && std::none_of(part.begin(), part.end(), [](VX3Unit unit) { return unit < firstPrintable || unit == deleteCharacter; });
}

bool IsItemPath(Units path)
{
    for (;; path = path.subspan(1)) {
        const auto length = static_cast<size_t>(std::find(path.begin(), path.end(), slash) - path.begin());
        if (!IsPart(path.first(length)))
            return false;
        path = path.subspan(length);
        if (path.empty())
            return true;
    }
}

// In a library that lost its address, whole addresses tell where they belong.
bool IsAddress(Units units)
{
    constexpr VX3Unit mark[] = { ':', '/' };
    return std::search(units.begin(), units.end(), std::begin(mark), std::end(mark)) != units.end();
}

// How much of an item's address is the library's, slash included.
int32_t PrefixLength(const String& address, const String& libraryName)
{
    const int32_t length = libraryName.Length();
    if (length == 0 || !StartsWithFolded(address, libraryName) || address.Length() <= length)
        return 0;
    return address.View()[static_cast<size_t>(length)] == slash ? length + 1 : 0;
}

// False without memory, where an empty name would say something else.
bool CopyName(BrowserDatabase& library, String& name)
{
    const ReadGuard guard(library.Lock(), rank);
    return name.Set(library.State().libraryName);
}

int32_t ModeOf(const BrowserDatabaseItem& item)
{
    const ReadGuard guard(item.Library().Lock(), rank);
    const BaseContainer* data = item.Record().values.GetContainer(ItemData);
    return data ? data->GetInt32(DataMode, 0) : static_cast<int32_t>(VX3_STORED_NONE);
}

int32_t CountPreviews(const BrowserDatabaseItem& item)
{
    const ReadGuard guard(item.Library().Lock(), rank);
    const BaseContainer* previews = item.Record().values.GetContainer(ItemPreviews);
    return previews ? previews->Count() : 0;
}

// The next live record from a place on, as a handle; none at the end, or without memory.
BrowserDatabaseItem* HandleFrom(BrowserDatabase& library, int32_t& place, bool& isEnd)
{
    ItemRecord* record = nullptr;
    {
        const ReadGuard guard(library.Lock(), rank);
        const ItemList& items = library.State().items;
        while (!record && static_cast<size_t>(place) < items.PlaceCount()) {
            record = items.At(static_cast<size_t>(place++));
            BrowserHashNode* node = record && record->state == ItemState::Live ? record->node.load(std::memory_order_acquire) : nullptr;
            if (node)
                node->AddUses(*record, 1);
            else
                record = nullptr;
        }
    }
    isEnd = !record;
    if (isEnd)
        return nullptr;
    if (auto* handle = Make<BrowserDatabaseItem>()(library, *record))
        return handle;
    const BrowserDatabaseItem givenBack(library, *record);
    return nullptr;
}

} // namespace

// --- Finding ---

LibraryOutcome LibraryTool::FindAddress(const String& path, String& address) const
{
    String name;
    if (!CopyName(*library, name))
        return LibraryOutcome::NoMemory;
    const auto prefix = static_cast<size_t>(PrefixLength(path, name));
    const Units inside = WithoutSlashes(path.View().subspan(prefix));
    if (name.IsEmpty() ? !IsAddress(path.View()) : !IsItemPath(inside))
        return LibraryOutcome::BadPath;
    String tail;
    if (!tail.Set(name.IsEmpty() ? path.View() : inside) || !address.Set(name))
        return LibraryOutcome::NoMemory;
    const bool isMade = (name.IsEmpty() || address.Append("/")) && address.Append(tail);
    return isMade ? LibraryOutcome::Ok : LibraryOutcome::NoMemory;
}

// An address of another library's item is not this one's.
LibraryOutcome LibraryTool::OpenOwn(const String& path, ToolItem& item) const
{
    String address;
    if (const LibraryOutcome outcome = FindAddress(path, address); outcome != LibraryOutcome::Ok)
        return outcome;
    item.Reset(browser::FindItem(address));
    if (item && &item->Library() != library)
        item.Reset();
    if (item)
        return LibraryOutcome::Ok;
    return IsMemoryShort(sizeof(BrowserDatabaseItem)) ? LibraryOutcome::NoMemory : LibraryOutcome::NotFound;
}

LibraryOutcome LibraryTool::Describe(const BrowserDatabaseItem& item, VX3LibraryItem& out) const
{
    String name;
    if (!CopyName(*library, name))
        return LibraryOutcome::NoMemory;
    const String address = item.GetPath();
    const int32_t prefix = PrefixLength(address, name);
    const String inside = address.Part(prefix);
    if (inside.Length() != address.Length() - prefix || !String::Of(&out.path).Set(inside))
        return LibraryOutcome::NoMemory;
    out.id = item.GetId();
    out.type = item.GetType();
    out.mode = ModeOf(item);
    out.dataSize = item.GetDataSize(true);
    out.storedSize = item.GetDataSize(false);
    out.previews = CountPreviews(item);
    return LibraryOutcome::Ok;
}

LibraryOutcome LibraryTool::FindItem(const String& path, VX3LibraryItem& out) const
{
    ToolItem item;
    const LibraryOutcome outcome = OpenOwn(path, item);
    return outcome == LibraryOutcome::Ok ? Describe(*item, out) : outcome;
}

LibraryOutcome LibraryTool::NextItem(int32_t& place, VX3LibraryItem& out) const
{
    if (place < 0)
        return LibraryOutcome::NotFound;
    ToolItem item;
    bool isEnd = false;
    int32_t next = place;
    item.Reset(HandleFrom(*library, next, isEnd));
    if (!item)
        return isEnd ? LibraryOutcome::NotFound : LibraryOutcome::NoMemory;
    const LibraryOutcome outcome = Describe(*item, out);
    if (outcome == LibraryOutcome::Ok)
        place = next;
    return outcome;
}

// --- Changing ---

LibraryOutcome LibraryTool::Demand(const String& path, ToolItem& item, bool& isNew)
{
    String address;
    if (const LibraryOutcome outcome = FindAddress(path, address); outcome != LibraryOutcome::Ok)
        return outcome;
    if (const LibraryOutcome outcome = BeginChange(); outcome != LibraryOutcome::Ok)
        return outcome;
    const int32_t before = library->CountItems();
    item.Reset(library->OpenItem(address));
    isNew = library->CountItems() > before;
    if (item)
        return &item->Library() == library ? LibraryOutcome::Ok : LibraryOutcome::NameTaken;
    const ReadGuard guard(library->Lock(), rank);
    return library->State().nextItemId < firstItemId ? LibraryOutcome::Full : LibraryOutcome::NoMemory;
}

// The data come last, as only they cannot be put back.
LibraryOutcome LibraryTool::Fill(BrowserDatabaseItem& item, int32_t type, const void* bytes, int64_t length)
{
    int32_t oldSubtype = 0;
    const int32_t oldType = item.GetType(&oldSubtype);
    const FileDate oldDate = item.GetChanged();
    const int32_t newType = type == VX3_LIBRARY_KEEP_TYPE ? oldType : type;
    if (!item.SetChanged(CurrentDate()))
        return LibraryOutcome::NoMemory;
    const bool isTyped = newType == oldType || item.SetType(newType);
    if (isTyped && item.SetData(bytes, length, true))
        return LibraryOutcome::Ok;
    (void)item.SetType(oldType, oldSubtype);
    (void)item.SetChanged(oldDate);
    return isTyped ? WhyNotStored() : LibraryOutcome::NoMemory;
}

LibraryOutcome LibraryTool::PutData(const String& path, int32_t type, const void* bytes, int64_t length)
{
    if (length < 0 || static_cast<uint64_t>(length) > mostPayload)
        return LibraryOutcome::TooLarge;
    ToolItem item;
    bool isNew = false;
    if (const LibraryOutcome outcome = Demand(path, item, isNew); outcome != LibraryOutcome::Ok)
        return outcome;
    LibraryOutcome outcome = LibraryOutcome::NoMemory;
    if (!isNew || item->SetCreated(CurrentDate()))
        outcome = Fill(*item, type, bytes, length);
    if (outcome != LibraryOutcome::Ok && isNew)
        (void)library->DeleteItem(item->GetPath());
    return outcome;
}

LibraryOutcome LibraryTool::GetData(const String& path, Block& data) const
{
    ToolItem item;
    if (const LibraryOutcome outcome = OpenOwn(path, item); outcome != LibraryOutcome::Ok)
        return outcome;
    if (ModeOf(*item) == VX3_STORED_NONE)
        return LibraryOutcome::NoData;
    if (item->GetData(data))
        return LibraryOutcome::Ok;
    const int64_t stored = item->GetDataSize(false), unpacked = item->GetDataSize(true);
    const bool isThere = stored >= 0 && unpacked >= 0 && static_cast<uint64_t>(unpacked) <= mostPayload;
    return isThere && IsMemoryShort(stored + unpacked) ? LibraryOutcome::NoMemory : LibraryOutcome::Damaged;
}

LibraryOutcome LibraryTool::RemoveItem(const String& path)
{
    ToolItem item;
    if (const LibraryOutcome outcome = OpenOwn(path, item); outcome != LibraryOutcome::Ok)
        return outcome;
    if (const LibraryOutcome outcome = BeginChange(); outcome != LibraryOutcome::Ok)
        return outcome;
    return library->DeleteItem(item->GetPath()) ? LibraryOutcome::Ok : LibraryOutcome::NoMemory;
}

LibraryOutcome LibraryTool::MoveItem(const String& from, const String& to)
{
    ToolItem item;
    String target;
    if (const LibraryOutcome outcome = OpenOwn(from, item); outcome != LibraryOutcome::Ok)
        return outcome;
    if (const LibraryOutcome outcome = FindAddress(to, target); outcome != LibraryOutcome::Ok)
        return outcome;
    ToolItem other;
    other.Reset(browser::FindItem(target));
    if (other && &other->Record() != &item->Record())
        return LibraryOutcome::Exists;
    if (const LibraryOutcome outcome = BeginChange(); outcome != LibraryOutcome::Ok)
        return outcome;
    return library->MoveItem(item->GetPath(), target) ? LibraryOutcome::Ok : LibraryOutcome::NoMemory;
}

} // namespace browser

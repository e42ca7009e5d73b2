#include "storage/browserdatabaseitem.h"

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;

} // namespace

BrowserDatabaseItem::BrowserDatabaseItem(BrowserDatabase& library, ItemRecord& item)
    : record(&item)
    , database(&library)
    , id(item.id)
{
    library.CountHandle(1);
}

// The library may be gone as soon as the handle is not counted any more.
BrowserDatabaseItem::~BrowserDatabaseItem()
{
    if (!GiveBackUse())
        EndUse();
    database->CountHandle(-1);
}

// False for an item whose deletion waits for its last handle, and for one that is on its way
// from one node to another: both are for the lock of the library.
bool BrowserDatabaseItem::GiveBackUse()
{
    BrowserHashNode* node = record->node.load(std::memory_order_acquire);
    return node && node->GiveBackUse(*record) == GivenBack::Yes;
}

// The last one makes it a deleted item, which is still to be written.
void BrowserDatabaseItem::EndUse()
{
    const WriteGuard guard(database->Lock(), rank);
    BrowserHashNode* node = record->node.load(std::memory_order_acquire);
    if (node && node->ReleaseEntry(*record))
        database->NoteChanged(*record);
}

void BrowserDatabaseItem::Release()
{
    database->FlushDirty();
    delete this;
}

// --- What many operations need ---

int32_t BrowserDatabaseItem::NumberIn(int32_t key, int32_t nestedKey, int32_t fallback) const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* nested = record->values.GetContainer(key);
    return nested ? nested->GetInt32(nestedKey, fallback) : fallback;
}

bool BrowserDatabaseItem::CopyContainer(int32_t key, BaseContainer& copy) const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* stored = record->values.GetContainer(key);
    return stored && copy.Set(*stored);
}

bool BrowserDatabaseItem::SetWholeContainer(int32_t key, const BaseContainer& value)
{
    return Apply([&](BaseContainer& values) { return values.SetContainer(key, value); });
}

bool BrowserDatabaseItem::SetDate(int32_t key, const FileDate& date)
{
    BaseContainer packed;
    return PackDate(date, packed) && SetWholeContainer(key, packed);
}

// --- Identity ---

bool BrowserDatabaseItem::IsWritable() const
{
    return !database->State().readOnly;
}

String BrowserDatabaseItem::GetPath() const
{
    const ReadGuard guard(database->Lock(), rank);
    return record->GetPath();
}

uint32_t BrowserDatabaseItem::GetPathHash() const
{
    const ReadGuard guard(database->Lock(), rank);
    return record->GetPathHash();
}

int32_t BrowserDatabaseItem::GetType(int32_t* subtype) const
{
    const ReadGuard guard(database->Lock(), rank);
    if (subtype)
        *subtype = record->values.GetInt32(ItemSubtype, 0);
    return record->values.GetInt32(ItemType, 0);
}

bool BrowserDatabaseItem::SetType(int32_t type, int32_t subtype)
{
    return Apply([&](BaseContainer& values) {
        const int32_t old = values.GetInt32(ItemType, 0);
        if (!values.SetInt32(ItemType, type))
            return false;
        if (subtype == 0)
            return (void)values.Remove(ItemSubtype), true;
        return values.SetInt32(ItemSubtype, subtype) || (values.SetInt32(ItemType, old), false);
    });
}

// --- Dates ---

FileDate BrowserDatabaseItem::GetChanged() const
{
    const ReadGuard guard(database->Lock(), rank);
    return UnpackDate(record->values.GetContainer(ItemChanged));
}

bool BrowserDatabaseItem::SetChanged(const FileDate& date)
{
    return SetDate(ItemChanged, date);
}

FileDate BrowserDatabaseItem::GetCreated() const
{
    const ReadGuard guard(database->Lock(), rank);
    return UnpackDate(record->values.GetContainer(ItemCreated));
}

bool BrowserDatabaseItem::SetCreated(const FileDate& date)
{
    return SetDate(ItemCreated, date);
}

// --- Other ---

bool BrowserDatabaseItem::GetSettings(BaseContainer& settings) const
{
    return CopyContainer(ItemSettings, settings);
}

bool BrowserDatabaseItem::SetSettings(const BaseContainer& settings)
{
    return SetWholeContainer(ItemSettings, settings);
}

bool BrowserDatabaseItem::GetSource(BaseContainer& source) const
{
    return CopyContainer(ItemSource, source);
}

bool BrowserDatabaseItem::SetSource(const BaseContainer& source)
{
    return SetWholeContainer(ItemSource, source);
}

bool BrowserDatabaseItem::GetWords(BaseContainer& words) const
{
    return CopyContainer(ItemWords, words);
}

int32_t BrowserDatabaseItem::GetScanState() const
{
    constexpr int32_t neverScanned = -1;
    const ReadGuard guard(database->Lock(), rank);
    return record->values.GetInt32(ItemScanState, neverScanned);
}

bool BrowserDatabaseItem::SetScanState(int32_t state)
{
    return Apply([state](BaseContainer& values) { return values.SetInt32(ItemScanState, state); });
}

String BrowserDatabaseItem::GetLink(bool* isRelative) const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* path = record->values.GetContainer(ItemPath);
    if (isRelative)
        *isRelative = path && path->GetBool(PathLinkIsRelative);
    return path ? path->GetText(PathLinkTarget) : String();
}

bool BrowserDatabaseItem::SetLink(const String& target, bool isRelative)
{
    return ApplyTo(ItemPath, [&](BaseContainer& path) {
        return path.SetText(PathLinkTarget, target) && path.SetBool(PathLinkIsRelative, isRelative);
    });
}

// --- How it is shown ---

int32_t BrowserDatabaseItem::GetViewFlags() const
{
    return NumberIn(ItemView, ViewFlags, 0);
}

bool BrowserDatabaseItem::SetViewFlags(int32_t flags)
{
    return ApplyTo(ItemView, [flags](BaseContainer& view) { return view.SetInt32(ViewFlags, flags); });
}

int32_t BrowserDatabaseItem::GetViewOrder() const
{
    return NumberIn(ItemView, ViewOrder, unordered);
}

bool BrowserDatabaseItem::SetViewOrder(int32_t order)
{
    return ApplyTo(ItemView, [order](BaseContainer& view) { return view.SetInt32(ViewOrder, order); });
}

int32_t BrowserDatabaseItem::GetViewValue() const
{
    return NumberIn(ItemView, ViewValue, 0);
}

bool BrowserDatabaseItem::SetViewValue(int32_t value)
{
    return ApplyTo(ItemView, [value](BaseContainer& view) { return view.SetInt32(ViewValue, value); });
}

// A packed date, but with keys of the view.
FileDate BrowserDatabaseItem::GetViewDate() const
{
    BaseContainer packed;
    const bool isPacked = packed.SetInt32(0, NumberIn(ItemView, ViewDate, 0)) && packed.SetInt32(1, NumberIn(ItemView, ViewTime, 0));
    return UnpackDate(isPacked ? &packed : nullptr);
}

bool BrowserDatabaseItem::SetViewDate(const FileDate& date)
{
    BaseContainer packed;
    return PackDate(date, packed) && ApplyTo(ItemView, [&](BaseContainer& view) {
               return view.SetInt32(ViewDate, packed.GetInt32(0, 0)) && view.SetInt32(ViewTime, packed.GetInt32(1, 0))
                   && view.SetInt32(ViewFlags, view.GetInt32(ViewFlags, 0) | viewHasDate);
           });
}

bool BrowserDatabaseItem::GetViewPosition(int32_t view, ViewPosition& position) const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* state = record->values.GetContainer(ItemView);
    const BaseContainer* positions = state ? state->GetContainer(ViewPositions) : nullptr;
    const auto first = view * static_cast<int32_t>(position.size());
    if (!positions || !positions->Has(first))
        return false;
    for (size_t i = 0; i < position.size(); i++)
        position[i] = positions->GetInt32(first + static_cast<int32_t>(i), 0);
    return true;
}

bool BrowserDatabaseItem::SetViewPosition(int32_t view, const ViewPosition& position)
{
    return ApplyTo(ItemView, [&](BaseContainer& state) {
        BaseContainer* positions = state.DemandContainer(ViewPositions);
        const auto first = view * static_cast<int32_t>(position.size());
        bool isSet = positions != nullptr;
        for (size_t i = 0; isSet && i < position.size(); i++)
            isSet = positions->SetInt32(first + static_cast<int32_t>(i), position[i]);
        return isSet;
    });
}

} // namespace browser

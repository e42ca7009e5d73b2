// A handle on one item of a library: short-lived, owned by whoever asked for it.
//
// It keeps the record alive and holds no lock; operations take the library's as they need it.
// One that changes something is refused, with false or null, by a read-only library. Any
// thread, one at a time for one handle.
#pragma once

#include <array>

#include "services/filedate.h"
#include "storage/browserdatabase.h"

namespace browser {

struct PreviewInfo {
    int32_t number = -1; // -1: none
    int32_t width = 0;
    int32_t height = 0;
    int32_t grade = -1;
    FileDate date = {};
};

// What FindPreview takes, bounds included.
struct PreviewRange {
    int32_t gradeMin = 0;
    int32_t widthMin = 0;
    int32_t heightMin = 0;
    int32_t gradeMax = 0x7FFFFFFF;
    int32_t widthMax = 0x7FFFFFFF;
    int32_t heightMax = 0x7FFFFFFF;
};

// Where an item stands on a screen; what the numbers are is the view's business.
using ViewPosition = std::array<int32_t, 4>;

constexpr int32_t unordered = 0x7FFFFFFF;
constexpr int32_t viewHasDate = 4; // of the flags; the other bits belong to the views

class BrowserDatabaseItem
{
public:
    // Takes over one use of the record's entry.
    BrowserDatabaseItem(BrowserDatabase& library, ItemRecord& item);
    ~BrowserDatabaseItem();
    static void operator delete(void* block) { HostFree(block); }
    BrowserDatabaseItem(const BrowserDatabaseItem&) = delete;
    BrowserDatabaseItem& operator=(const BrowserDatabaseItem&) = delete;

    // Writes what has changed in its library, and goes. `delete` goes without that.
    void Release();

    // --- Identity ---
    int32_t GetId() const { return id; }
    bool IsWritable() const;
    String GetPath() const;
    uint32_t GetPathHash() const;
    int32_t GetType(int32_t* subtype = nullptr) const;
    bool SetType(int32_t type, int32_t subtype = 0); // a subtype of 0 is not stored

    // --- Text (itemnames.cpp) ---
    String GetName(bool useFallback) const; // in the user's language if there is one; the path's last part as fallback
    bool SetName(const String& name);       // in the user's language
    String GetNameIn(int32_t language) const;
    bool SetNameIn(int32_t language, const String& name);
    bool HasSeveralNames() const;
    bool NameAt(int32_t place, int32_t& language, String& name) const;
    String GetDescription() const;
    bool SetDescription(const String& text); // an empty one on an item without any changes nothing

    // --- Dates ---
    FileDate GetChanged() const;
    bool SetChanged(const FileDate& date);
    FileDate GetCreated() const;
    bool SetCreated(const FileDate& date);

    // --- Data (itemdata.cpp) ---
    bool SetData(const void* bytes, int64_t size, bool compress);
    bool GetData(Block& data) const;
    bool SetStoredData(const void* bytes, int64_t size, StorageMode mode, int64_t unpackedSize);
    bool GetStoredData(Block& data, StorageMode& mode, int64_t& unpackedSize) const;
    int64_t GetDataSize(bool unpacked) const; // -1 without data
    bool CopyDataFrom(const BrowserDatabaseItem& source);
    bool DeleteData();

    // --- Previews (itempreviews.cpp) ---
    bool AddPreview(const VX3Bitmap* bitmap, int32_t number, int32_t grade, const FileDate& date, bool lossless);
    bool AddPreviewBytes(const void* bytes, int64_t size, const PreviewInfo& info);
    bool GetPreviewBytes(int32_t number, Block& bytes) const;
    HostBitmap GetPreview(int32_t number);
    VX3Bitmap* GetSharedPreview(int32_t number); // in use until ReleasePreview
    void ReleasePreview(int32_t number);
    bool DeletePreview(int32_t number);
    bool DeleteAllPreviews();
    bool CopyPreviewsFrom(const BrowserDatabaseItem& source);
    PreviewInfo FindPreview(const PreviewRange& range) const;
    bool PreviewAt(int32_t place, PreviewInfo& info) const;

    // --- Other ---
    bool GetSettings(BaseContainer& settings) const;
    bool SetSettings(const BaseContainer& settings);
    bool GetSource(BaseContainer& source) const;
    bool SetSource(const BaseContainer& source);
    int32_t GetScanState() const;
    bool SetScanState(int32_t state);
    String GetLink(bool* isRelative) const;
    bool SetLink(const String& target, bool isRelative);
    bool GetWords(BaseContainer& words) const; // for searches; their count under 0, texts from 2 on

    // --- How it is shown ---
    int32_t GetViewFlags() const;
    bool SetViewFlags(int32_t flags);
    int32_t GetViewOrder() const; // among its neighbours; unordered if none was set
    bool SetViewOrder(int32_t order);
    int32_t GetViewValue() const;
    bool SetViewValue(int32_t value);
    FileDate GetViewDate() const;
    bool SetViewDate(const FileDate& date); // and the flag that tells of one
    bool GetViewPosition(int32_t view, ViewPosition& position) const;
    bool SetViewPosition(int32_t view, const ViewPosition& position);

    BrowserDatabase& Library() const { return *database; }
    const ItemRecord& Record() const { return *record; }

private:
    bool GiveBackUse();
    void EndUse();
    int32_t NumberIn(int32_t key, int32_t nestedKey, int32_t fallback) const;
    bool CopyContainer(int32_t key, BaseContainer& copy) const;
    bool SetWholeContainer(int32_t key, const BaseContainer& value);
    bool SetDate(int32_t key, const FileDate& date);
    template <class Change>
    bool Apply(Change change);
    template <class Change>
    bool ApplyTo(int32_t key, Change change);
    bool RemovePreview(int32_t number);

    ItemRecord* const record;
    BrowserDatabase* const database;
    const int32_t id;
};

template <class Change>
bool BrowserDatabaseItem::Apply(Change change)
{
    const WriteGuard guard(database->Lock(), LockRank::Library);
    if (database->State().readOnly || !change(record->values))
        return false;
    database->NoteChanged(*record);
    return true;
}

// Changes a copy of one container, which takes its place if all went well.
template <class Change>
bool BrowserDatabaseItem::ApplyTo(int32_t key, Change change)
{
    return Apply([&](BaseContainer& values) {
        BaseContainer changed;
        const BaseContainer* old = values.GetContainer(key);
        return (old ? changed.Set(*old) : !values.HoldsContainer(key)) && change(changed) && values.SetContainer(key, changed);
    });
}

} // namespace browser

// One item of a library: what is stored of it, under keys that are named here once, and
// what is known of it while the library is open.
//
// Owned by the library's list of items and guarded by the library's lock; it stays where it
// is as long as it is in that list. What a search looks at, its path and whether it is alive,
// changes only under the lock of its node as well, or while it is out of the index.
#pragma once

#include <atomic>

#include "services/basecontainer.h"
#include "services/filedate.h"

namespace browser {

class BrowserDatabase;
class BrowserHashNode;

enum ItemKey : int32_t {
    ItemType = 1,
    ItemWords = 2,
    ItemDescription = 3, // its 0: text
    ItemSource = 4,
    ItemPreviews = 5, // by number: a container of PreviewKey
    ItemPath = 6,     // of PathKey
    ItemView = 10,    // of ViewKey
    ItemChanged = 11, // a packed date
    ItemCreated = 13, // a packed date
    ItemData = 14,    // of DataKey
    ItemSettings = 15,
    ItemNames = 16, // text by packed language code
    ItemSubtype = 17,
    ItemScanState = 21,
    ItemScanSizes = 22, // 0 and 1: int32, 2: number
};

enum PathKey : int32_t {
    PathText = 0,
    PathOldPreviews = 1, // of files below version 5
    PathHashValue = 2,
    PathLinkTarget = 3,
    PathLinkIsRelative = 4,
};

enum DataKey : int32_t {
    DataOffset = 0,   // int64 of the chunk; 0: none in the file
    DataMode = 1,     // StorageMode
    DataUnpacked = 2, // int64, bytes
};

enum class StorageMode : int32_t {
    Raw = 0,
    OldPacked = 1, // as Packed, but for the size in front, which is put there before unpacking
    Packed = 2,    // deflated, behind its unpacked size in 32 bits
};

enum PreviewKey : int32_t {
    PictureFile = 0, // name below the folder of pictures, if it is no chunk
    PictureWidth = 1,
    PictureHeight = 2,
    PictureGrade = 3,
    PictureDate = 4,   // a packed date
    PictureOffset = 5, // int64 of the chunk
};

enum ViewKey : int32_t {
    ViewFlags = 0,
    ViewPositions = 6, // of view n: 4 n to 4 n + 3
    ViewOrder = 10,
    ViewValue = 11,
    ViewDate = 12, // packed, day
    ViewTime = 13, // packed, time of day
};

enum class ItemState : int32_t {
    Live = 0,
    Deleted = -1,       // its chunks become dead ones at the next write
    DeletePending = -2, // somebody still holds it
};

class ItemRecord
{
public:
    ItemRecord(int32_t itemId, BrowserDatabase* database)
        : id(itemId)
        , owner(database)
    {
    }
    ItemRecord(const ItemRecord&) = delete;
    ItemRecord& operator=(const ItemRecord&) = delete;

    const String& GetPath() const { return path; }
    uint32_t GetPathHash() const { return pathHash; }
    bool HasPath(const String& other, bool exactly) const;
    [[nodiscard]] bool SetPath(const String& newPath, uint32_t hash);
    // What was read of it.
    [[nodiscard]] bool SetValues(const BaseContainer& read);

    const int32_t id; // the key in the list; at least 1
    ItemState state = ItemState::Live;
    BrowserDatabase* const owner;
    std::atomic<BrowserHashNode*> node = nullptr; // of the index; none while it is not in it
    uint64_t chunk = 0;                           // offset of what is stored; 0: it never was
    BaseContainer values;
    mutable std::atomic<int64_t> dataLength = -1; // of its data in the file; -1 while nobody has asked
    bool isChanged = false;                       // since it was stored

private:
    friend class ItemList;
    friend class BrowserHashNode;
    friend class ItemPlace;

    bool isNoted = false;
    uint32_t place = 0;      // in the list
    uint32_t entryPlace = 0; // where its entry was last seen
    uint32_t pathHash = 0;   // both as `values` has them
    String path;
};

// Another path for a record. All memory is taken first, so that it can take its place under
// the lock of a node.
class ItemPlace
{
public:
    [[nodiscard]] bool Prepare(ItemRecord& moved, const String& newPath, uint32_t newHash);
    void Take();

private:
    ItemRecord* record = nullptr;
    BaseContainer* target = nullptr;
    BaseContainer values;
    String path;
    uint32_t hash = 0;
};

// False without memory; a text that is not there is an empty one.
[[nodiscard]] bool ReadText(const BaseContainer& container, int32_t key, String& text);

// Years to days under 0, hours to seconds under 1.
[[nodiscard]] bool PackDate(const FileDate& date, BaseContainer& packed);
FileDate UnpackDate(const BaseContainer* packed); // zero for none

// `a` and `b` are the same but for case.
bool IsSameFolded(const String& a, const String& b);
// `text` begins with `prefix`, without case.
bool StartsWithFolded(const String& text, const String& prefix);

} // namespace browser

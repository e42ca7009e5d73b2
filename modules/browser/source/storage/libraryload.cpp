#include "storage/libraryload.h"

#include <algorithm>

#include "services/resources.h"
#include "storage/infokeys.h"

namespace browser {

namespace {

constexpr int32_t versionWithUrls = 4; // old files may hold items that belong to no library

class Scan
{
public:
    Scan(LibraryState& scanned, BrowserDatabase* database)
        : library(scanned)
        , owner(database)
    {
    }

    bool Run();

private:
    void Reset();
    void ReadHead();
    void ReadChunks();
    bool ReadChunk();
    bool ReadItem();
    bool ReadOldItem();
    bool ReadOldItems();
    bool ReadOldRecord(int64_t& left);
    bool StoreOldRecord(BaseContainer& values);
    bool ReadInfo();
    bool ReadCategory();
    bool SkipPayload();
    bool ReadPayload(uint64_t length, BaseContainer& container);
    bool Succeeded(bool isDone);
    uint64_t BytesLeft() const;
    bool SeekBehindHeader() { return file.SeekTo(static_cast<int64_t>(position + chunkHeaderSize)); }
    ItemRecord* AddItem(int32_t id);
    void CountItem(int32_t id);
    void Conclude();

    LibraryState& library;
    BrowserDatabase* owner;
    BinaryFile file;
    uint64_t fileLength = 0;
    uint64_t position = 0; // of the chunk
    uint64_t next = 0;     // of the one behind it
    BrowserDatabaseChunk chunk;
    Block payload; // read last
    bool isSound = true;
    bool hasFailed = false; // not for what stands in the file
    bool isOver = false;    // the closing chunk was met
    uint64_t deadBytes = 0;
    uint64_t liveBytes = 0;
    int32_t infoChunks = 0;
    int32_t highestId = 0;
};

bool Scan::Run()
{
    if (library.openCount != 0 || !file.Open(library.filePath, OpenMode::Read))
        return false;
    const int64_t length = file.Length();
    fileLength = length > 0 ? static_cast<uint64_t>(length) : 0;
    Reset();
    ReadHead();
    ReadChunks();
    if (hasFailed || !file.IsUsable()) {
        Reset();
        return false;
    }
    Conclude();
    (void)file.Close();
    library.stamp = StampOf(library.filePath);
    library.isDetached = false;
    return true;
}

bool Scan::ReadPayload(uint64_t length, BaseContainer& container)
{
    if (length > BytesLeft())
        return false;
    const Reading reading = ReadContainerPayload(file, length, payload, container);
    return Succeeded(reading != Reading::Failed) && reading == Reading::Done;
}

uint64_t Scan::BytesLeft() const
{
    const int64_t start = file.Position();
    return start < 0 ? 0 : fileLength - std::min(static_cast<uint64_t>(start), fileLength);
}

// Of what can only fail for memory.
bool Scan::Succeeded(bool isDone)
{
    hasFailed = hasFailed || !isDone;
    return isDone;
}

void Scan::Reset()
{
    library.rewriteWanted = library.damaged = library.hasCategory = false;
    library.readOnly = false;
    library.items.Clear();
    library.itemCount = 0;
    library.libraryName.Clear();
    library.localizedNames.Clear();
    library.category.Clear();
    library.endOffset = library.infoOffset = library.categoryOffset = library.legacyOffset = library.headLength = 0;
    library.version = currentVersion;
}

// A first chunk of another kind makes an empty, damaged library, over whose file a new one is made.
void Scan::ReadHead()
{
    isSound = ReadChunkHeader(file, chunk) && chunk.tag == ChunkTag::FileHead;
    if (!isSound)
        return;
    library.endOffset = position = chunkHeaderSize;
    isSound = FindNextChunk(0, chunk.length, fileLength, next);
    if (!isSound)
        return;
    library.headLength = chunk.length;
    library.endOffset = position = next;
    liveBytes = next;
}

void Scan::ReadChunks()
{
    while (isSound && !isOver && file.SeekTo(static_cast<int64_t>(position)) && ReadChunkHeader(file, chunk)) {
        const bool fits = FindNextChunk(position, chunk.length, fileLength, next);
        isSound = ReadChunk();
        if (!isSound || isOver)
            return;
        // Kept: behind an item with a negative id follows what its payload holds.
        const bool isSkipped = chunk.tag == ChunkTag::Item && chunk.id < 0;
        if (!isSkipped && !fits) {
            isSound = false;
            return;
        }
        (chunk.tag == ChunkTag::Dead ? deadBytes : liveBytes) += isSkipped ? chunkHeaderSize : next - position;
        position = isSkipped ? position + chunkHeaderSize : next;
    }
}

bool Scan::ReadChunk()
{
    switch (chunk.tag) {
    case ChunkTag::FileEnd:
        library.endOffset = position;
        liveBytes += chunkHeaderSize;
        isOver = true;
        return true;
    case ChunkTag::None: return false;
    case ChunkTag::OldItems: return ReadOldItems();
    case ChunkTag::Item: return chunk.id < 0 || (chunk.id > 0 ? ReadItem() : ReadOldItem());
    case ChunkTag::Info: return ReadInfo();
    case ChunkTag::Category: return ReadCategory();
    case ChunkTag::Dead: return true;
    default: return SkipPayload();
    }
}

// Where a payload lies behind the end of the file, the chunk tells of nothing.
bool Scan::SkipPayload()
{
    if (chunk.length > mostPayload || !FindNextChunk(position, chunk.length, fileLength, next))
        return false;
    library.endOffset = next;
    return true;
}

ItemRecord* Scan::AddItem(int32_t id)
{
    ItemRecord* record = library.items.Add(id, owner);
    if (Succeeded(record != nullptr))
        CountItem(id);
    return record;
}

void Scan::CountItem(int32_t id)
{
    library.itemCount++;
    highestId = std::max(highestId, id);
}

// One whose payload cannot be read stays as an empty record, so that its id is not given again.
bool Scan::ReadItem()
{
    ItemRecord* record = AddItem(chunk.id);
    if (!record)
        return false;
    record->chunk = position;
    BaseContainer values;
    if (!ReadPayload(chunk.length, values))
        return false;
    library.endOffset = next;
    return Succeeded(record->SetValues(values));
}

// Of old files: the id stands in the container alone.
bool Scan::ReadOldItem()
{
    BaseContainer values;
    if (!ReadPayload(chunk.length, values))
        return false;
    library.endOffset = next;
    const int32_t id = values.GetId();
    if (id < firstItemId)
        return true;
    ItemRecord* record = AddItem(id);
    if (!record)
        return false;
    record->chunk = position;
    return Succeeded(record->SetValues(values));
}

// Kept: a dead record makes what is left of the chunk longer, so that the run ends behind it.
bool Scan::ReadOldItems()
{
    auto left = static_cast<int64_t>(chunk.length);
    if (left < 0)
        return false;
    while (left > 0)
        if (!ReadOldRecord(left))
            return false;
    if (!FindNextChunk(position, chunk.length, fileLength, next))
        return false;
    library.legacyOffset = position;
    library.endOffset = next;
    return true;
}

bool Scan::ReadOldRecord(int64_t& left)
{
    uint32_t word = 0;
    if (BytesLeft() < sizeof(word) || !file.ReadWord(word)) // a read that is cut would be a failure of the disk
        return false;
    const auto length = static_cast<int64_t>(static_cast<int32_t>(word));
    left -= length + static_cast<int64_t>(sizeof(word));
    if (length < 0)
        return file.Position() - length <= static_cast<int64_t>(fileLength) && file.SeekTo(file.Position() - length);
    BaseContainer values;
    return left >= 0 && ReadPayload(static_cast<uint64_t>(length), values) && StoreOldRecord(values);
}

bool Scan::StoreOldRecord(BaseContainer& values)
{
    const BaseContainer* path = values.GetContainer(ItemPath);
    const bool isHomeless =
        library.libraryName.IsEmpty() && library.version < versionWithUrls && path && path->GetText(PathText).StartsWith("preset:/");
    const int32_t id = values.GetId();
    if (isHomeless || id < firstItemId)
        return true;
    ItemRecord* record = AddItem(id);
    return record && Succeeded(record->SetValues(values));
}

bool Scan::ReadInfo()
{
    BaseContainer info;
    library.infoOffset = position;
    if (!ReadPayload(chunk.length, info))
        return false;
    infoChunks++;
    library.version = info.GetInt32(InfoVersion, 0);
    if (!Succeeded(ReadText(info, InfoName, library.libraryName)))
        return false;
    library.readOnly = info.GetInt32(InfoReadOnly, 0) != 0;
    const BaseContainer* names = info.GetContainer(InfoNames);
    return Succeeded(names ? library.localizedNames.Set(*names) : !info.HoldsContainer(InfoNames));
}

bool Scan::ReadCategory()
{
    BaseContainer category;
    library.hasCategory = true;
    library.categoryOffset = position;
    if (!ReadPayload(chunk.length, category))
        return false;
    if (!Succeeded(ReadText(category, CategoryText, library.category)))
        return false;
    const BaseContainer* names = category.GetContainer(CategoryNames);
    return Succeeded(names ? library.localizedNames.Set(*names) : !category.HoldsContainer(CategoryNames));
}

// An info or category chunk behind the end of the log would be covered by the next write:
// another one is written then.
void Scan::Conclude()
{
    if (library.infoOffset >= library.endOffset)
        library.infoOffset = 0;
    if (library.categoryOffset >= library.endOffset && library.categoryOffset != 0) {
        library.categoryOffset = 0;
        library.categoryDirty = true;
    }
    library.nextItemId = static_cast<int32_t>(static_cast<uint32_t>(highestId) + 1);
    library.readOnly = library.readOnly || library.protectedLibrary;
    library.rewriteWanted = deadBytes > liveBytes;
    library.damaged = !isSound || infoChunks != 1;
    library.needsBackup = library.damaged || library.legacyOffset != 0;
    library.loadedVersion = library.version;
}

} // namespace

bool ScanLibrary(LibraryState& library, BrowserDatabase* owner)
{
    return Scan(library, owner).Run();
}

} // namespace browser

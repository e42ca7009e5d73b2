// The previews of an item.

#include "services/preferences.h"
#include "storage/browserdatabaseitem.h"
#include "storage/libraryfile.h"
#include "storage/payloadio.h"

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;

const BaseContainer* PreviewOf(const ItemRecord& record, int32_t number)
{
    const BaseContainer* previews = record.values.GetContainer(ItemPreviews);
    return previews ? previews->GetContainer(number) : nullptr;
}

PayloadReference ChunkOf(ItemRecord& record, int32_t number, const BaseContainer& preview)
{
    return { &record, PayloadKind::Preview, number, static_cast<uint64_t>(preview.GetInt64(PictureOffset, 0)) };
}

PreviewInfo InfoOf(int32_t number, const BaseContainer& preview)
{
    return { number, preview.GetInt32(PictureWidth, 0), preview.GetInt32(PictureHeight, 0), preview.GetInt32(PictureGrade, 0),
             UnpackDate(preview.GetContainer(PictureDate)) };
}

// Kept: the name ends in .jpg whatever the format; codecs look at the bytes.
bool NameFile(int32_t id, int32_t number, BaseContainer& entry)
{
    String name, numberText;
    return name.SetInteger(id) && name.Append("_") && numberText.SetInteger(number) && name.Append(numberText) && name.Append(".jpg")
        && entry.SetText(PictureFile, name);
}

bool MakeEntry(const PreviewInfo& info, BaseContainer& entry)
{
    BaseContainer date;
    return entry.SetId(info.number) && entry.SetInt32(PictureWidth, info.width) && entry.SetInt32(PictureHeight, info.height)
        && entry.SetInt32(PictureGrade, info.grade) && PackDate(info.date, date) && entry.SetContainer(PictureDate, date);
}

bool Encode(const VX3Bitmap* bitmap, bool lossless, Block& bytes)
{
    FilePath path;
    BaseContainer settings;
    if (!host->path->setMemoryWriting(path.Value()) || (!lossless && !settings.SetInt32(VX3_SAVE_QUALITY, PreviewQuality())))
        return false;
    const int32_t format = lossless ? VX3_FORMAT_LOSSLESS : VX3_FORMAT_JPEG;
    if (host->bitmap->save(bitmap, path.Value(), format, lossless ? nullptr : settings.Value(), host->bitmap->hasAlpha(bitmap))
        != VX3_IMAGE_OK)
        return false;
    void* block = nullptr;
    int64_t size = 0;
    if (!host->path->takeMemory(path.Value(), &block, &size))
        return false;
    bytes.Adopt(block, size);
    return true;
}

HostBitmap Decode(const Block& bytes)
{
    FilePath path;
    if (!host->path->setMemoryReading(path.Value(), bytes.Bytes(), bytes.Size()))
        return {};
    return HostBitmap::Load(path);
}

bool ReadPreview(PayloadFile& file, const LibraryState& library, const PayloadReference& payload, const BaseContainer& preview,
                 Block& bytes)
{
    if (payload.offset != 0)
        return file.Read(payload, bytes);
    FilePath path;
    return PreviewPath(library, preview, path) && ReadWholeFile(path, bytes);
}

bool WriteOutside(const LibraryState& library, int32_t id, int32_t number, const void* bytes, int64_t size, BaseContainer& entry)
{
    FilePath path;
    return NameFile(id, number, entry) && PreviewPath(library, entry, path) && WriteWholeFile(path, bytes, size);
}

bool IsTaken(const PreviewInfo& info, const PreviewRange& range, const PreviewInfo& best)
{
    return info.grade >= range.gradeMin && info.grade <= range.gradeMax && info.grade >= best.grade && info.width >= range.widthMin
        && info.width <= range.widthMax && info.height >= range.heightMin && info.height <= range.heightMax;
}

// What a picture was decoded from. It is kept only if that is still the preview then.
struct PreviewOrigin {
    uint64_t offset = 0;
    FileDate date = {};
};

PreviewOrigin OriginOf(ItemRecord& record, int32_t number, const BaseContainer& preview)
{
    return { ChunkOf(record, number, preview).offset, UnpackDate(preview.GetContainer(PictureDate)) };
}

bool IsStill(ItemRecord& record, int32_t number, const PreviewOrigin& origin)
{
    const BaseContainer* preview = PreviewOf(record, number);
    if (!preview)
        return false;
    const PreviewOrigin now = OriginOf(record, number, *preview);
    return now.offset == origin.offset && CompareDates(now.date, origin.date) == 0;
}

// Decoded without a lock.
HostBitmap DecodePreview(BrowserDatabase& library, ItemRecord& record, int32_t number, PreviewOrigin& origin)
{
    Block bytes;
    const bool isRead = ReadPayloads(library, [&](PayloadFile& file) {
        const BaseContainer* preview = PreviewOf(record, number);
        if (!preview)
            return false;
        origin = OriginOf(record, number, *preview);
        return ReadPreview(file, library.State(), ChunkOf(record, number, *preview), *preview, bytes);
    });
    return isRead ? Decode(bytes) : HostBitmap();
}

} // namespace

// --- Storing ---

bool BrowserDatabaseItem::AddPreview(const VX3Bitmap* bitmap, int32_t number, int32_t grade, const FileDate& date, bool lossless)
{
    Block bytes;
    if (!bitmap || !IsWritable() || !Encode(bitmap, lossless, bytes))
        return false;
    return AddPreviewBytes(bytes.Bytes(), bytes.Size(), { number, host->bitmap->width(bitmap), host->bitmap->height(bitmap), grade, date });
}

bool BrowserDatabaseItem::AddPreviewBytes(const void* bytes, int64_t size, const PreviewInfo& info)
{
    BaseContainer entry;
    if (!CanBePayload(bytes, size) || info.number < 0 || !MakeEntry(info, entry))
        return false;
    const WriteGuard guard(database->Lock(), rank);
    LibraryState& state = database->State();
    if (state.readOnly)
        return false;
    ContainerSlot slot(record->values.DemandContainer(ItemPreviews), info.number);
    if (!slot
        || !(state.dataInFile ? AppendPayload(state, PayloadKind::Preview, id, bytes, size, entry)
                              : WriteOutside(state, id, info.number, bytes, size, entry)))
        return false;
    slot.Fill(entry);
    (void)state.bitmapCache.Forget(id, info.number);
    database->NoteChanged(*record);
    return true;
}

bool BrowserDatabaseItem::CopyPreviewsFrom(const BrowserDatabaseItem& source)
{
    BaseContainer sizes;
    if (source.CopyContainer(ItemScanSizes, sizes) && !SetWholeContainer(ItemScanSizes, sizes))
        return false;
    bool areCopied = IsWritable();
    PreviewInfo info;
    for (int32_t place = 0; areCopied && source.PreviewAt(place, info); place++) {
        Block bytes;
        areCopied = source.GetPreviewBytes(info.number, bytes) && AddPreviewBytes(bytes.Bytes(), bytes.Size(), info);
    }
    return areCopied;
}

// --- Deleting ---

// With the lock held. The bitmap goes first, and the record only if the bytes are gone.
bool BrowserDatabaseItem::RemovePreview(int32_t number)
{
    LibraryState& state = database->State();
    BaseContainer* previews = record->values.FindContainer(ItemPreviews);
    const BaseContainer* preview = PreviewOf(*record, number);
    if (!preview)
        return previews && previews->Remove(number);
    (void)state.bitmapCache.Forget(id, number);
    const PayloadReference payload = ChunkOf(*record, number, *preview);
    FilePath path;
    if (payload.offset != 0 && !KillPayload(state, payload))
        return false;
    if (payload.offset == 0 && PreviewPath(state, *preview, path) && !RemoveFile(path))
        return false;
    return previews->Remove(number);
}

bool BrowserDatabaseItem::DeletePreview(int32_t number)
{
    const WriteGuard guard(database->Lock(), rank);
    if (database->State().readOnly || !RemovePreview(number))
        return false;
    database->NoteChanged(*record);
    return true;
}

bool BrowserDatabaseItem::DeleteAllPreviews()
{
    const WriteGuard guard(database->Lock(), rank);
    LibraryState& state = database->State();
    if (state.readOnly)
        return false;
    (void)record->values.Remove(ItemScanSizes);
    const BaseContainer* previews = record->values.GetContainer(ItemPreviews);
    const bool isHeld = state.dataInFile && previews && previews->Count() > 0 && OpenForUpdate(state); // once for all of them
    bool areGone = true;
    int32_t number = 0, type = 0;
    while (areGone && previews && previews->EntryAt(0, number, type))
        areGone = RemovePreview(number);
    if (isHeld)
        areGone = CloseAfterUpdate(state) && areGone;
    database->NoteChanged(*record);
    return areGone;
}

// --- Reading ---

bool BrowserDatabaseItem::GetPreviewBytes(int32_t number, Block& bytes) const
{
    return ReadPayloads(*database, [&](PayloadFile& file) {
        const BaseContainer* preview = PreviewOf(*record, number);
        return preview && ReadPreview(file, database->State(), ChunkOf(*record, number, *preview), *preview, bytes);
    });
}

HostBitmap BrowserDatabaseItem::GetPreview(int32_t number)
{
    DatabaseBitmapCache& cache = database->State().bitmapCache;
    if (HostBitmap known = cache.Get(id, number))
        return known;
    PreviewOrigin origin;
    HostBitmap decoded = DecodePreview(*database, *record, number, origin);
    const ReadGuard guard(database->Lock(), rank); // nobody replaces it meanwhile
    if (decoded && IsStill(*record, number, origin))
        (void)cache.Store(id, number, decoded.Get());
    return decoded;
}

VX3Bitmap* BrowserDatabaseItem::GetSharedPreview(int32_t number)
{
    DatabaseBitmapCache& cache = database->State().bitmapCache;
    if (VX3Bitmap* known = cache.GetShared(id, number))
        return known;
    PreviewOrigin origin;
    HostBitmap decoded = DecodePreview(*database, *record, number, origin);
    const ReadGuard guard(database->Lock(), rank);
    if (!decoded || !IsStill(*record, number, origin))
        return nullptr;
    return cache.StoreShared(id, number, std::move(decoded), DatabaseBitmapCache::Pin::Yes);
}

void BrowserDatabaseItem::ReleasePreview(int32_t number)
{
    (void)database->State().bitmapCache.Release(id, number);
}

// --- Which there are ---

// A later one wins where both are as good.
PreviewInfo BrowserDatabaseItem::FindPreview(const PreviewRange& range) const
{
    PreviewInfo best, info;
    PreviewRange wanted = range;
    for (int32_t place = 0; PreviewAt(place, info); place++)
        if (IsTaken(info, wanted, best)) {
            best = info;
            wanted.widthMin = info.width;
            wanted.heightMin = info.height;
        }
    return best;
}

bool BrowserDatabaseItem::PreviewAt(int32_t place, PreviewInfo& info) const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* previews = record->values.GetContainer(ItemPreviews);
    int32_t number = 0, type = 0;
    if (!previews || !previews->EntryAt(place, number, type))
        return false;
    const BaseContainer* preview = previews->GetContainer(number);
    info = preview ? InfoOf(number, *preview) : PreviewInfo();
    return true;
}

} // namespace browser

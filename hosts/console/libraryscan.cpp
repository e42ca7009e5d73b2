#include "libraryscan.h"

#include <algorithm>
#include <iterator>

#include "core/bigendian.h"
#include "core/services.h"
#include "librarykeys.h"

namespace vx3::console {

namespace {

constexpr size_t mostFindings = 1000;
constexpr const char* oldPresets = "preset:/";

std::vector<LibraryPreview> PreviewsOf(ContainerView previews)
{
    std::vector<LibraryPreview> result;
    for (int32_t place = 0; place < previews.Count(); ++place) {
        int32_t number = previews.KeyAt(place);
        if (ContainerView preview = previews.Nested(number))
            result.push_back({ number, preview.Int32(key::previewWidth), preview.Int32(key::previewHeight),
                               preview.Int32(key::previewGrade), preview.Int64(key::previewOffset),
                               preview.Text(key::previewFile).Utf8() });
    }
    return result;
}

LibraryItem ItemOf(int32_t id, uint64_t chunk, ContainerView record)
{
    LibraryItem item;
    ContainerView path = record.Nested(key::itemPath);
    item.id = id;
    item.chunk = chunk;
    item.pathUnits = path.Text(key::pathText);
    item.path = item.pathUnits.Utf8();
    item.pathHash = static_cast<uint32_t>(path.Int32(key::pathHash));
    item.type = record.Int32(key::itemType);
    item.subtype = record.Int32(key::itemSubtype);
    item.created = UnpackDate(record.Nested(key::itemCreated));
    item.changed = UnpackDate(record.Nested(key::itemChanged));
    if (ContainerView data = record.Nested(key::itemData))
        item.data = { data.Int64(key::dataOffset), data.Int32(key::dataMode), data.Int64(key::dataUnpacked) };
    item.previews = PreviewsOf(record.Nested(key::itemPreviews));
    item.oldPreviews = PreviewsOf(path.Nested(key::pathOldPreviews));
    return item;
}

class Scan
{
public:
    explicit Scan(LibraryFile& newFile)
        : file(newFile)
        , walk(newFile)
    {
        scan.fileLength = newFile.Length();
    }

    LibraryScan Run();

private:
    bool TakeChunk(const Chunk& chunk);
    bool TakeInfo(const Chunk& chunk);
    bool TakeCategory(const Chunk& chunk);
    bool TakeItem(const Chunk& chunk);
    bool TakeItemWithoutId(const Chunk& chunk);
    bool TakeOldItems(const Chunk& chunk);
    bool TakeOldRecord(uint64_t& position, int64_t& left);
    bool Decode(const Chunk& chunk, LibraryContainer& container);
    void AddItem(LibraryItem item);
    void TakeNames(ContainerView names);
    void NoteOther(const Chunk& chunk);
    void Count(const Chunk& chunk);
    void Conclude();
    void ConcludeEnd();
    void ConcludeInfo();

    LibraryFile& file;
    ChunkWalk walk;
    LibraryScan scan;
    int32_t highestId = 0;
};

LibraryScan Scan::Run()
{
    Chunk chunk;
    while (!scan.isUnreadable && walk.Next(chunk)) {
        scan.stop = chunk.offset;
        scan.isUnreadable = !TakeChunk(chunk);
        if (!scan.isUnreadable)
            Count(chunk);
    }
    Conclude();
    return std::move(scan);
}

bool Scan::TakeChunk(const Chunk& chunk)
{
    if (!chunk.isWhole && chunk.tag != tag::end && chunk.tag != tag::none)
        scan.findings.Damage("payload-cut", chunk.offset,
                             ChunkText(chunk) + " tells of " + std::to_string(chunk.length) + " bytes and the file has "
                                 + std::to_string(file.Length() - chunk.PayloadOffset()),
                             chunk.tag == tag::item ? std::max(chunk.id, 0) : 0);
    switch (chunk.tag) {
    case tag::info: return TakeInfo(chunk);
    case tag::category: return TakeCategory(chunk);
    case tag::item: return TakeItem(chunk);
    case tag::oldItems: return TakeOldItems(chunk);
    default: NoteOther(chunk); return true;
    }
}

bool Scan::Decode(const Chunk& chunk, LibraryContainer& container)
{
    std::vector<uint8_t> payload;
    if (!chunk.isWhole)
        return false;
    PayloadState state = file.ReadPayload(chunk, payload) ? container.Decode(payload) : PayloadState::Unreadable;
    int32_t item = chunk.tag == tag::item ? std::max(chunk.id, 0) : 0;
    if (state == PayloadState::Longer)
        scan.findings.Damage("container-longer", chunk.offset, "bytes stand behind the container in " + ChunkText(chunk), item);
    if (state == PayloadState::Unreadable)
        scan.findings.Damage("container-unreadable", chunk.offset, ChunkText(chunk) + " holds no container that can be read", item);
    return state != PayloadState::Unreadable;
}

void Scan::TakeNames(ContainerView names)
{
    if (!names)
        return;
    scan.names.clear();
    for (int32_t place = 0; place < names.Count(); ++place)
        scan.names.emplace_back(static_cast<uint32_t>(names.KeyAt(place)), names.Text(names.KeyAt(place)).Utf8());
}

bool Scan::TakeInfo(const Chunk& chunk)
{
    LibraryContainer container;
    scan.infoOffset = chunk.offset;
    if (!Decode(chunk, container))
        return false;
    if (++scan.infoChunks > 1)
        scan.findings.Damage("info-twice", chunk.offset,
                             "this is info chunk number " + std::to_string(scan.infoChunks) + "; the last one counts");
    ContainerView info = container.View();
    scan.version = info.Int32(key::infoVersion);
    scan.name = info.Text(key::infoName);
    scan.isReadOnly = info.Int32(key::infoReadOnly) != 0;
    TakeNames(info.Nested(key::infoNames));
    return true;
}

bool Scan::TakeCategory(const Chunk& chunk)
{
    LibraryContainer container;
    if (scan.categoryOffset)
        scan.findings.Damage("category-twice", chunk.offset, "there is more than one category chunk; the last one counts");
    scan.categoryOffset = chunk.offset;
    if (!Decode(chunk, container))
        return false;
    scan.category = container.View().Text(key::categoryText).Utf8();
    TakeNames(container.View().Nested(key::categoryNames));
    return true;
}

// The later one of two takes the place of the earlier one.
void Scan::AddItem(LibraryItem item)
{
    highestId = std::max(highestId, item.id);
    auto [place, isNew] = scan.places.emplace(item.id, scan.items.size());
    if (isNew) {
        scan.items.push_back(std::move(item));
        return;
    }
    LibraryItem& earlier = scan.items[place->second];
    scan.findings.Damage(
        "item-twice", item.chunk,
        "item " + std::to_string(item.id) + " stands at " + std::to_string(earlier.chunk) + " already; the later one counts", item.id);
    earlier = std::move(item);
}

bool Scan::TakeItem(const Chunk& chunk)
{
    if (chunk.id < 0) {
        scan.findings.Damage("item-id", chunk.offset,
                             "an item has the id " + std::to_string(chunk.id) + "; what follows is read as chunks");
        return true;
    }
    if (chunk.id == 0)
        return TakeItemWithoutId(chunk);
    LibraryContainer container;
    bool isRead = Decode(chunk, container);
    ContainerView record = container.View();
    if (isRead && record.Id() != chunk.id)
        scan.findings.Damage("item-id-differs", chunk.offset,
                             "the header tells of item " + std::to_string(chunk.id) + ", its record of item " + std::to_string(record.Id()),
                             chunk.id);
    LibraryItem item = ItemOf(chunk.id, chunk.offset, record);
    item.isEmpty = !isRead;
    AddItem(std::move(item));
    return isRead;
}

// Of old files: the id stands in the record alone.
bool Scan::TakeItemWithoutId(const Chunk& chunk)
{
    LibraryContainer container;
    if (!Decode(chunk, container))
        return false;
    int32_t id = container.View().Id();
    if (id < 1)
        scan.findings.Note("item-skipped", chunk.offset, "an item without an id is passed over");
    else
        AddItem(ItemOf(id, chunk.offset, container.View()));
    return true;
}

bool Scan::TakeOldItems(const Chunk& chunk)
{
    if (!chunk.isWhole)
        return false;
    scan.hasOldItems = true;
    uint64_t position = chunk.PayloadOffset();
    auto left = static_cast<int64_t>(chunk.length);
    while (left > 0) {
        uint64_t record = position;
        if (TakeOldRecord(position, left))
            continue;
        scan.findings.Damage("old-record", record, "a record in the old chunk of items cannot be read");
        return false;
    }
    return true;
}

// A dead record makes what is left of the chunk longer, as it always did.
bool Scan::TakeOldRecord(uint64_t& position, int64_t& left)
{
    uint8_t word[sizeof(uint32_t)];
    if (!file.Read(position, word, sizeof word))
        return false;
    auto length = static_cast<int64_t>(static_cast<int32_t>(core::LoadBig<uint32_t>(word)));
    position += sizeof word;
    left -= length + static_cast<int64_t>(sizeof word);
    if (length < 0) {
        position += static_cast<uint64_t>(-length);
        return position <= file.Length();
    }
    std::vector<uint8_t> payload;
    LibraryContainer container;
    if (left < 0 || static_cast<uint64_t>(length) > file.Length() - position)
        return false;
    payload.resize(static_cast<size_t>(length));
    if (!file.Read(position, payload.data(), payload.size()) || container.Decode(payload) == PayloadState::Unreadable)
        return false;
    LibraryItem item = ItemOf(container.View().Id(), position - sizeof word, container.View());
    position += static_cast<uint64_t>(length);
    bool isHomeless = scan.name.Units().empty() && scan.version < versionWithUrls && item.path.rfind(oldPresets, 0) == 0;
    if (item.id >= 1 && !isHomeless)
        AddItem(std::move(item));
    return true;
}

void Scan::NoteOther(const Chunk& chunk)
{
    bool isKnown = chunk.tag == tag::data || chunk.tag == tag::image || chunk.tag == tag::dead || chunk.tag == tag::end
        || (chunk.tag == tag::head && chunk.offset == 0);
    if (chunk.tag == tag::none)
        scan.findings.Damage("no-tag", chunk.offset, "a chunk has no tag; nothing behind it is read");
    else if (!isKnown)
        scan.findings.Note("unknown-chunk", chunk.offset, "a chunk of a kind that is not known: '" + TagText(chunk.tag) + "'");
    bool isLong = chunk.isWhole && chunk.length > longestPayload && chunk.offset > 0;
    if (isLong && chunk.tag != tag::dead && chunk.tag != tag::none && chunk.tag != tag::end)
        scan.findings.Damage("payload-long", chunk.offset, ChunkText(chunk) + " is longer than a reader passes over");
}

void Scan::Count(const Chunk& chunk)
{
    constexpr uint32_t known[] = {
        tag::head, tag::info, tag::category, tag::item, tag::data, tag::image, tag::dead, tag::oldItems, tag::end
    };
    bool isBehindPayload = chunk.tag == tag::item && chunk.id < 0;
    if (!chunk.isWhole && !isBehindPayload && chunk.tag != tag::end)
        return;
    uint64_t bytes = isBehindPayload || chunk.tag == tag::end ? chunkHeaderSize : chunk.End() - chunk.offset;
    bool isKnown = std::find(std::begin(known), std::end(known), chunk.tag) != std::end(known);
    ChunkCount& count = scan.chunks[isKnown ? chunk.tag : tag::none];
    ++count.chunks;
    count.bytes += bytes;
    (chunk.tag == tag::dead ? scan.deadBytes : scan.liveBytes) += bytes;
    scan.stop = chunk.offset + bytes;
}

void Scan::Conclude()
{
    scan.end = walk.End();
    scan.nextItemId = static_cast<int32_t>(static_cast<uint32_t>(highestId) + 1);
    for (LibraryItem& item : scan.items)
        if (scan.version < versionWithPreviewPlace && !item.oldPreviews.empty())
            item.previews = std::move(item.oldPreviews);
    if (!scan.isUnreadable)
        ConcludeEnd();
    if (scan.IsLibrary() && scan.end != WalkEnd::Interrupted)
        ConcludeInfo();
}

void Scan::ConcludeEnd()
{
    uint64_t left = scan.fileLength - std::min(scan.fileLength, scan.stop);
    if (scan.end == WalkEnd::NoLibrary)
        scan.findings.Damage("no-library", 0, scan.fileLength ? "this is no library file" : "the file is empty");
    else if (scan.end == WalkEnd::CutHeader)
        scan.findings.Note("open-end", scan.stop,
                           "the closing chunk is missing, and at the end stands less than a header: "
                               + Counted(static_cast<int64_t>(left), "byte"));
    else if (scan.end == WalkEnd::Open)
        scan.findings.Note("open-end", scan.stop, "the closing chunk is missing, as after a crash; nothing is lost by that");
    else if (scan.end == WalkEnd::Closed && left > 0)
        scan.findings.Note("tail", scan.stop, "bytes behind the closing chunk: " + std::to_string(left));
}

void Scan::ConcludeInfo()
{
    if (scan.infoChunks == 0 && scan.items.empty() && scan.fileLength == 2 * chunkHeaderSize)
        scan.findings.Damage("info-missing", 0, "the library is new, and nothing was written to it yet");
    else if (scan.infoChunks == 0)
        scan.findings.Damage("info-missing", 0, "there is no info chunk, so the library has no name");
    else if (scan.version != currentVersion)
        scan.findings.Note("version", *scan.infoOffset, "the file is of version " + std::to_string(scan.version));
    if (scan.hasOldItems)
        scan.findings.Note("old-items", 0, "items are kept in one chunk, as old versions did");
    if (scan.nextItemId < 1)
        scan.findings.Note("no-id-left", 0, "the highest id is in use: no item can be added");
}

} // namespace

void Findings::Add(Finding finding)
{
    damageCount += finding.severity == Severity::Damage ? 1 : 0;
    if (findings.size() < mostFindings)
        findings.push_back(std::move(finding));
    else
        ++leftOut;
}

void Findings::Note(const char* code, uint64_t offset, const std::string& sentence, int32_t item)
{
    Add({ code, Severity::Note, offset, item, sentence });
}

void Findings::Damage(const char* code, uint64_t offset, const std::string& sentence, int32_t item)
{
    Add({ code, Severity::Damage, offset, item, sentence });
}

bool LibraryScan::IsDamaged() const
{
    bool isSound = end == WalkEnd::Closed || end == WalkEnd::Open || end == WalkEnd::CutHeader;
    return !isSound || isUnreadable || infoChunks != 1;
}

const LibraryItem* LibraryScan::FindItem(int32_t id) const
{
    auto found = places.find(id);
    return found == places.end() ? nullptr : &items[found->second];
}

std::string LibraryScan::PathInside(const LibraryItem& item) const
{
    const VX3TextServices& texts = *core::TextServices();
    int32_t length = texts.length(name.Get());
    if (length == 0 || !texts.matchesAt(item.pathUnits.Get(), 0, name.Get(), 1))
        return item.path;
    std::u16string units = item.pathUnits.Units().substr(static_cast<size_t>(length));
    if (!units.empty() && units[0] != u'/')
        return item.path;
    return core::Text(std::u16string_view(units).substr(units.empty() ? 0 : 1)).Utf8();
}

LibraryScan ScanLibrary(LibraryFile& file)
{
    return Scan(file).Run();
}

std::string LanguageText(uint32_t packed)
{
    std::string text;
    for (int shift = 24; shift >= 0 && (packed >> shift & 0xFF) != 0; shift -= 8)
        text += static_cast<char>(packed >> shift);
    return text;
}

VX3FileDate UnpackDate(ContainerView packed)
{
    auto day = static_cast<uint32_t>(packed.Int32(key::dateDay));
    auto time = static_cast<uint32_t>(packed.Int32(key::dateTime));
    VX3FileDate date = {};
    date.year = static_cast<uint16_t>(day >> 16);
    date.month = static_cast<uint16_t>(day >> 8 & 0xFF);
    date.day = static_cast<uint16_t>(day & 0xFF);
    date.hour = static_cast<uint16_t>(time >> 26);
    date.minute = static_cast<uint16_t>(time >> 20 & 0x3F);
    date.second = static_cast<uint16_t>(time >> 14 & 0x3F);
    return date;
}

std::string Counted(int64_t count, const char* what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string ChunkText(const Chunk& chunk)
{
    bool hasItem = chunk.tag == tag::item || chunk.tag == tag::data || chunk.tag == tag::image;
    return "the chunk '" + TagText(chunk.tag) + "'" + (hasItem ? " of item " + std::to_string(chunk.id) : "");
}

} // namespace vx3::console

#include "librarycheck.h"

#include <zlib.h>

#include <algorithm>
#include <array>

#include "core/bigendian.h"
#include "core/codec.h"
#include "core/services.h"
#include "progressbar.h"
#include "vx3/bitmap.h"

namespace vx3::console {

namespace {

constexpr size_t pieceSize = 65536;
constexpr size_t sizePrefix = 4; // of packed data: its unpacked size

// Inflates a stream of the file piece by piece, and keeps nothing of what comes out.
class StreamMeasure
{
public:
    StreamMeasure(LibraryFile& newFile, uint64_t newOffset, uint64_t newLength)
        : file(newFile)
        , offset(newOffset)
        , left(newLength)
    {
        isOpen = inflateInit(&stream) == Z_OK;
    }
    ~StreamMeasure()
    {
        if (isOpen)
            inflateEnd(&stream);
    }
    StreamMeasure(const StreamMeasure&) = delete;
    StreamMeasure& operator=(const StreamMeasure&) = delete;

    // True if the stream is whole, ends with the payload and gives so many bytes.
    bool Gives(uint64_t wanted)
    {
        int result = isOpen ? Z_OK : Z_MEM_ERROR;
        while (result == Z_OK && produced <= wanted) {
            if (stream.avail_in == 0 && !Refill())
                return false;
            stream.next_out = output.data();
            stream.avail_out = static_cast<uInt>(output.size());
            result = inflate(&stream, Z_NO_FLUSH);
            produced += output.size() - stream.avail_out;
        }
        return result == Z_STREAM_END && produced == wanted && stream.avail_in == 0 && left == 0;
    }

private:
    bool Refill()
    {
        size_t count = static_cast<size_t>(std::min<uint64_t>(input.size(), left));
        if (count == 0 || IsInterrupted() || !file.Read(offset, input.data(), count))
            return false;
        offset += count;
        left -= count;
        stream.next_in = input.data();
        stream.avail_in = static_cast<uInt>(count);
        return true;
    }

    LibraryFile& file;
    uint64_t offset;
    uint64_t left;
    uint64_t produced = 0;
    bool isOpen = false;
    z_stream stream = {};
    std::array<uint8_t, pieceSize> input;
    std::array<uint8_t, pieceSize> output;
};

struct Reference {
    uint64_t offset;
    const LibraryItem* item;

    bool operator<(const Reference& other) const { return offset < other.offset; }
};

class Check
{
public:
    Check(LibraryFile& newFile, LibraryScan& newScan)
        : file(newFile)
        , scan(newScan)
    {
    }

    LibraryCheck Run();

private:
    void CheckItem(const LibraryItem& item);
    void CheckPath(const LibraryItem& item);
    void CheckSamePaths();
    void CheckData(const LibraryItem& item);
    void CheckRaw(const LibraryItem& item, const Chunk& chunk);
    void CheckPacked(const LibraryItem& item, const Chunk& chunk);
    void CheckPreview(const LibraryItem& item, const LibraryPreview& preview);
    void CheckPicture(const LibraryItem& item, const LibraryPreview& preview, const Chunk& chunk);
    void CheckPlaces();
    bool FindPayload(const LibraryItem& item, int64_t offset, uint32_t wanted, const std::string& what, Chunk& chunk);
    void Damage(const LibraryItem& item, const char* code, uint64_t offset, const std::string& sentence);
    void Note(const LibraryItem& item, const char* code, uint64_t offset, const std::string& sentence);

    LibraryFile& file;
    LibraryScan& scan;
    LibraryCheck check;
    std::vector<Reference> references;
};

std::string Of(const LibraryScan& scan, const LibraryItem& item)
{
    return "item " + std::to_string(item.id) + " " + Quoted(scan.PathInside(item)) + ": ";
}

void Check::Damage(const LibraryItem& item, const char* code, uint64_t offset, const std::string& sentence)
{
    scan.findings.Damage(code, offset, Of(scan, item) + sentence, item.id);
}

void Check::Note(const LibraryItem& item, const char* code, uint64_t offset, const std::string& sentence)
{
    scan.findings.Note(code, offset, Of(scan, item) + sentence, item.id);
}

LibraryCheck Check::Run()
{
    for (const LibraryItem& item : scan.items) {
        if (IsInterrupted())
            break;
        size_t before = scan.findings.DamageCount();
        CheckItem(item);
        check.soundItems += !item.isEmpty && scan.findings.DamageCount() == before ? 1 : 0;
    }
    CheckSamePaths();
    CheckPlaces();
    LibraryCheck unused = CountUnused(file, scan);
    check.unusedPayloads = unused.unusedPayloads;
    check.unusedBytes = unused.unusedBytes;
    check.isInterrupted = IsInterrupted();
    return check;
}

void Check::CheckItem(const LibraryItem& item)
{
    if (item.isEmpty)
        return;
    CheckPath(item);
    if (item.data && item.data->offset != 0)
        CheckData(item);
    for (const LibraryPreview& preview : item.previews)
        CheckPreview(item, preview);
}

void Check::CheckPath(const LibraryItem& item)
{
    if (item.path.empty())
        return Damage(item, "path-missing", item.chunk, "it has no path, so it cannot be found");
    if (scan.version >= currentVersion && item.pathHash != PathHash(item.pathUnits))
        Damage(item, "path-hash", item.chunk,
               "the hash of its path is stored as " + HexText(item.pathHash) + " and is " + HexText(PathHash(item.pathUnits)));
    if (scan.infoChunks > 0 && scan.PathInside(item) == item.path)
        Note(item, "path-elsewhere", item.chunk, "its path does not begin with the library's URL");
}

// Two items of one path are allowed, and only the first is ever found.
void Check::CheckSamePaths()
{
    std::vector<const LibraryItem*> items;
    for (const LibraryItem& item : scan.items)
        if (!item.path.empty())
            items.push_back(&item);
    auto compare = [](const LibraryItem* a, const LibraryItem* b) {
        return core::TextServices()->compareFolding(a->pathUnits.Get(), b->pathUnits.Get());
    };
    std::stable_sort(items.begin(), items.end(), [&](auto* a, auto* b) { return compare(a, b) < 0; });
    for (size_t index = 1; index < items.size(); ++index)
        if (compare(items[index - 1], items[index]) == 0)
            Note(*items[index], "path-twice", items[index]->chunk, "item " + std::to_string(items[index - 1]->id) + " has the same path");
}

// The chunk that a record names, if it is what the record takes it for.
bool Check::FindPayload(const LibraryItem& item, int64_t offset, uint32_t wanted, const std::string& what, Chunk& chunk)
{
    auto place = static_cast<uint64_t>(offset);
    if (offset < static_cast<int64_t>(chunkHeaderSize) || !file.ReadChunk(place, chunk)) {
        Damage(item, "payload-outside", item.chunk, what + " is told to stand at " + std::to_string(offset) + ", which is not in the file");
        return false;
    }
    bool hasId = scan.version < versionWithIds || chunk.id == item.id;
    if (chunk.tag == wanted && hasId && chunk.isWhole && chunk.length <= longestPayload) {
        references.push_back({ place, &item });
        ++check.payloads;
        check.payloadBytes += chunk.length;
        return true;
    }
    if (chunk.tag == tag::dead)
        Damage(item, "payload-dead", place, what + " is a dead chunk");
    else if (chunk.tag != wanted)
        Damage(item, "payload-kind", place, what + " is not a chunk '" + TagText(wanted) + "' but '" + TagText(chunk.tag) + "'");
    else if (!hasId)
        Damage(item, "payload-id", place, what + " belongs to item " + std::to_string(chunk.id));
    else
        Damage(item, "payload-cut", place, what + " reaches over the end of the file");
    return false;
}

void Check::CheckData(const LibraryItem& item)
{
    Chunk chunk;
    if (!FindPayload(item, item.data->offset, tag::data, "its data", chunk))
        return;
    switch (item.data->mode) {
    case StorageRaw: return CheckRaw(item, chunk);
    case StorageOldPacked:
    case StoragePacked: return CheckPacked(item, chunk);
    default: Damage(item, "data-mode", chunk.offset, "its data is stored in a mode that is not known: " + std::to_string(item.data->mode));
    }
}

// Nothing tells of changed bytes here, but the disk may fail to give them.
void Check::CheckRaw(const LibraryItem& item, const Chunk& chunk)
{
    if (static_cast<uint64_t>(item.data->unpacked) != chunk.length)
        Damage(item, "data-size", chunk.offset,
               "its data has " + std::to_string(chunk.length) + " bytes and should have " + std::to_string(item.data->unpacked));
    std::array<uint8_t, pieceSize> piece;
    for (uint64_t done = 0; done < chunk.length && !IsInterrupted();) {
        size_t count = static_cast<size_t>(std::min<uint64_t>(piece.size(), chunk.length - done));
        if (!file.Read(chunk.PayloadOffset() + done, piece.data(), count))
            return Damage(item, "data-unreadable", chunk.offset, "its data cannot be read");
        done += count;
    }
}

void Check::CheckPacked(const LibraryItem& item, const Chunk& chunk)
{
    uint8_t prefix[sizePrefix];
    auto wanted = static_cast<uint64_t>(item.data->unpacked);
    if (chunk.length < sizePrefix || !file.Read(chunk.PayloadOffset(), prefix, sizeof prefix))
        return Damage(item, "data-packed", chunk.offset, "its packed data is too short");
    uint32_t told = core::LoadBig<uint32_t>(prefix);
    if (item.data->mode == StoragePacked && told != wanted)
        Damage(item, "data-size", chunk.offset,
               "its packed data tells of " + std::to_string(told) + " bytes and its record of " + std::to_string(item.data->unpacked));
    else if (!StreamMeasure(file, chunk.PayloadOffset() + sizePrefix, chunk.length - sizePrefix).Gives(wanted) && !IsInterrupted())
        Damage(item, "data-packed", chunk.offset, "its data cannot be unpacked to " + std::to_string(item.data->unpacked) + " bytes");
}

void Check::CheckPreview(const LibraryItem& item, const LibraryPreview& preview)
{
    std::string what = "its preview " + std::to_string(preview.number);
    Chunk chunk;
    if (preview.offset == 0 && preview.file.empty())
        Damage(item, "preview-missing", item.chunk, what + " names neither a chunk nor a file");
    if (preview.offset == 0 || !FindPayload(item, preview.offset, tag::image, what, chunk))
        return;
    CheckPicture(item, preview, chunk);
}

void Check::CheckPicture(const LibraryItem& item, const LibraryPreview& preview, const Chunk& chunk)
{
    using core::PictureFormat;
    std::string what = "its preview " + std::to_string(preview.number);
    std::vector<uint8_t> bytes;
    if (!file.ReadPayload(chunk, bytes))
        return Damage(item, "preview-unreadable", chunk.offset, what + " cannot be read");
    size_t headLength = std::min(bytes.size(), core::headerSize);
    PictureFormat format = core::TellPicture(core::Header(reinterpret_cast<const char*>(bytes.data()), headLength));
    if (format == PictureFormat::None)
        return Damage(item, "preview-picture", chunk.offset, what + " is no picture");
    if (format != PictureFormat::Jpeg && format != PictureFormat::Tiff && format != PictureFormat::Png)
        return Note(item, "preview-format", chunk.offset, what + " is neither a JPEG nor a TIFF picture and was not tested");
    core::Path path;
    core::Pixels pixels;
    core::PathServices()->setMemoryReading(path.Get(), bytes.data(), static_cast<int64_t>(bytes.size()));
    int32_t result = core::LoadPicture(*path.Get(), 0, pixels);
    if (result == VX3_IMAGE_NO_MEMORY)
        Note(item, "preview-format", chunk.offset, what + " is too large to be tested");
    else if (result != VX3_IMAGE_OK)
        Damage(item, "preview-picture", chunk.offset, what + " is a damaged picture");
    else if (pixels.Width() != preview.width || pixels.Height() != preview.height)
        Note(item, "preview-size", chunk.offset,
             what + " has " + std::to_string(pixels.Width()) + " x " + std::to_string(pixels.Height()) + " pixels and is told to have "
                 + std::to_string(preview.width) + " x " + std::to_string(preview.height));
}

// Every payload is a chunk of the log, and belongs to one item only.
void Check::CheckPlaces()
{
    std::stable_sort(references.begin(), references.end());
    for (size_t index = 1; index < references.size(); ++index)
        if (references[index - 1].offset == references[index].offset)
            Damage(*references[index].item, "payload-shared", references[index].offset,
                   "item " + std::to_string(references[index - 1].item->id) + " names the same payload");
    ChunkWalk walk(file);
    Chunk chunk;
    size_t index = 0;
    auto tellThoseBefore = [&](uint64_t offset) {
        for (; index < references.size() && references[index].offset < offset; ++index)
            Damage(*references[index].item, "payload-inside", references[index].offset, "it names a payload inside of another chunk");
    };
    while (walk.Next(chunk) && chunk.offset < scan.stop) {
        tellThoseBefore(chunk.offset);
        while (index < references.size() && references[index].offset == chunk.offset)
            ++index;
    }
    if (walk.End() != WalkEnd::Interrupted)
        tellThoseBefore(scan.stop);
}

} // namespace

ChunkUse::ChunkUse(const LibraryScan& scan)
{
    if (scan.infoOffset)
        offsets.push_back(*scan.infoOffset);
    if (scan.categoryOffset)
        offsets.push_back(*scan.categoryOffset);
    for (const LibraryItem& item : scan.items) {
        offsets.push_back(item.chunk);
        if (item.data && item.data->offset != 0)
            offsets.push_back(static_cast<uint64_t>(item.data->offset));
        for (const LibraryPreview& preview : item.previews)
            offsets.push_back(static_cast<uint64_t>(preview.offset));
    }
    std::sort(offsets.begin(), offsets.end());
}

bool ChunkUse::IsUsed(const Chunk& chunk) const
{
    if (chunk.tag == tag::head || chunk.tag == tag::end || chunk.tag == tag::oldItems)
        return true;
    return chunk.tag != tag::dead && chunk.tag != tag::none && std::binary_search(offsets.begin(), offsets.end(), chunk.offset);
}

LibraryCheck CheckLibrary(LibraryFile& file, LibraryScan& scan)
{
    return Check(file, scan).Run();
}

LibraryCheck CountUnused(LibraryFile& file, const LibraryScan& scan)
{
    LibraryCheck check;
    ChunkUse use(scan);
    ChunkWalk walk(file);
    Chunk chunk;
    while (walk.Next(chunk) && chunk.offset < scan.stop) {
        if ((chunk.tag != tag::data && chunk.tag != tag::image) || !chunk.isWhole || use.IsUsed(chunk))
            continue;
        ++check.unusedPayloads;
        check.unusedBytes += chunk.End() - chunk.offset;
    }
    return check;
}

uint32_t PathHash(const core::Text& path)
{
    std::u16string units = path.Units();
    std::vector<VX3Unit> lower(units.begin(), units.end());
    core::TextServices()->lowerUnits(lower.data(), lower.data(), static_cast<int32_t>(lower.size()));
    std::vector<uint8_t> bytes(lower.size() * sizeof(VX3Unit));
    for (size_t index = 0; index < lower.size(); ++index)
        core::StoreBig(lower[index], bytes.data() + index * sizeof(VX3Unit));
    return static_cast<uint32_t>(crc32_z(0, bytes.data(), bytes.size()));
}

} // namespace vx3::console

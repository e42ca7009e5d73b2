// What a tool does with the previews of an item.

#include "host/librarytool.h"

#include <algorithm>

#include "services/hostbitmap.h"

namespace browser {

namespace {

// How the files begin that a preview is stored as.
constexpr uint8_t jpegHead[] = { 0xFF, 0xD8, 0xFF };
constexpr uint8_t littleTiffHead[] = { 'I', 'I', 42, 0 };
constexpr uint8_t bigTiffHead[] = { 'M', 'M', 0, 42 };

bool BeginsWith(std::span<const uint8_t> file, std::span<const uint8_t> head)
{
    return file.size() >= head.size() && std::equal(head.begin(), head.end(), file.begin());
}

bool IsStoredFormat(std::span<const uint8_t> file)
{
    return BeginsWith(file, jpegHead) || BeginsWith(file, littleTiffHead) || BeginsWith(file, bigTiffHead);
}

LibraryOutcome Decode(const void* bytes, int64_t length, HostBitmap& decoded)
{
    FilePath path;
    decoded = HostBitmap::Create(1, 1);
    if (!decoded || !host->path->setMemoryReading(path.Value(), bytes, length))
        return LibraryOutcome::NoMemory;
    switch (host->bitmap->load(decoded.Get(), path.Value(), 0)) {
    case VX3_IMAGE_OK: return LibraryOutcome::Ok;
    case VX3_IMAGE_NO_MEMORY: return LibraryOutcome::NoMemory;
    default: return LibraryOutcome::NoPicture;
    }
}

bool FindPreview(const BrowserDatabaseItem& item, int32_t number)
{
    PreviewInfo info;
    int32_t place = 0;
    while (item.PreviewAt(place, info) && info.number != number)
        place++;
    return info.number == number;
}

bool Store(BrowserDatabaseItem& item, const HostBitmap& picture, PreviewInfo info, const void* bytes, int64_t length)
{
    info.width = picture.Width();
    info.height = picture.Height();
    if (IsStoredFormat({ static_cast<const uint8_t*>(bytes), static_cast<size_t>(length) }))
        return item.AddPreviewBytes(bytes, length, info);
    const bool hasAlpha = host->bitmap->hasAlpha(picture.Get());
    return item.AddPreview(picture.Get(), info.number, info.grade, info.date, hasAlpha);
}

} // namespace

LibraryOutcome LibraryTool::PutPreview(const String& path, int32_t number, int32_t grade, const void* bytes, int64_t length)
{
    if (number < 0)
        return LibraryOutcome::BadPath;
    if (length < 0 || static_cast<uint64_t>(length) > mostPayload)
        return LibraryOutcome::TooLarge;
    ToolItem item;
    if (const LibraryOutcome outcome = OpenOwn(path, item); outcome != LibraryOutcome::Ok)
        return outcome;
    HostBitmap picture;
    if (const LibraryOutcome outcome = Decode(bytes, length, picture); outcome != LibraryOutcome::Ok)
        return outcome;
    if (const LibraryOutcome outcome = BeginChange(); outcome != LibraryOutcome::Ok)
        return outcome;
    PreviewInfo info;
    info.number = number;
    info.grade = grade;
    info.date = CurrentDate();
    return Store(*item, picture, info, bytes, length) ? LibraryOutcome::Ok : WhyNotStored();
}

LibraryOutcome LibraryTool::GetPreview(const String& path, int32_t number, Block& bytes) const
{
    ToolItem item;
    if (const LibraryOutcome outcome = OpenOwn(path, item); outcome != LibraryOutcome::Ok)
        return outcome;
    if (number < 0 || !FindPreview(*item, number))
        return LibraryOutcome::NotFound;
    return item->GetPreviewBytes(number, bytes) ? LibraryOutcome::Ok : LibraryOutcome::Damaged;
}

LibraryOutcome LibraryTool::PreviewAt(const String& path, int32_t index, PreviewInfo& info) const
{
    ToolItem item;
    if (const LibraryOutcome outcome = OpenOwn(path, item); outcome != LibraryOutcome::Ok)
        return outcome;
    return index >= 0 && item->PreviewAt(index, info) ? LibraryOutcome::Ok : LibraryOutcome::NotFound;
}

} // namespace browser

#include "ui/iconservice.h"

#include <algorithm>
#include <iterator>

namespace browser {

namespace {

enum class Scalable : bool { No, Yes };

struct IconFile {
    const char* name;
    Scalable scalable;
};

// The place in the table is the number of the icon. Frames of animations keep their size.
constexpr IconFile iconFiles[] = {
    { "computer.tif", Scalable::Yes },
    { "drives.tif", Scalable::Yes },
    { "drive_cd.tif", Scalable::Yes },
    { "folder.tif", Scalable::Yes },
    { "folder_open.tif", Scalable::Yes },
    { "folder_presets.tif", Scalable::Yes },
    { "folder_catalogs.tif", Scalable::Yes },
    { "folder_search.tif", Scalable::Yes },
    { "file_document.tif", Scalable::Yes },
    { "file_3d.tif", Scalable::Yes },
    { "file_image.tif", Scalable::Yes },
    { "file_movie.tif", Scalable::Yes },
    { "preset.tif", Scalable::Yes },
    { "favorites.tif", Scalable::Yes },
    { "folder_favorites.tif", Scalable::Yes },
    { "folder_network.tif", Scalable::Yes },
    { "file_library.tif", Scalable::Yes },
    { "file_catalog.tif", Scalable::Yes },
    { "file_scripts.tif", Scalable::Yes },
    { "desktop.tif", Scalable::Yes },
    { "wrong.tif", Scalable::Yes },
    { "folder_locked.tif", Scalable::Yes },
    { "folder_open_locked.tif", Scalable::Yes },
    { "folder_user.tif", Scalable::Yes },
    { "file_audio.tif", Scalable::Yes },
    { "file_tonic.tif", Scalable::Yes },
    { "file_layout.tif", Scalable::Yes },
    { "locked.tif", Scalable::Yes },
    { "progressor0.tif", Scalable::No },
    { "progressor1.tif", Scalable::No },
    { "progressor2.tif", Scalable::No },
    { "progressor3.tif", Scalable::No },
    { "progressor4.tif", Scalable::No },
    { "progressor5.tif", Scalable::No },
    { "progressor6.tif", Scalable::No },
    { "progressor7.tif", Scalable::No },
    { "stop_small.tif", Scalable::No },
    { "clock0.tif", Scalable::No },
    { "clock1.tif", Scalable::No },
    { "clock2.tif", Scalable::No },
    { "clock3.tif", Scalable::No },
    { "clock4.tif", Scalable::No },
    { "clock5.tif", Scalable::No },
    { "clock6.tif", Scalable::No },
    { "clock7.tif", Scalable::No },
};
constexpr size_t iconCount = std::size(iconFiles);

// Sizes up to the smallest share one slot: the first that is asked for fixes the picture of all of them.
constexpr int32_t smallestSize = 16;
constexpr int32_t firstUnscaledSize = 128;

struct SizeTable {
    HostBitmap pictures[firstUnscaledSize - smallestSize];
};

struct IconCache {
    FilePath folder;
    HostBitmap loaded[iconCount];
    SizeTable* scaled[iconCount] = {}; // owned, made when an icon is first scaled

    explicit IconCache(const FilePath& iconFolder)
        : folder(iconFolder)
    {
    }
    ~IconCache()
    {
        for (SizeTable* table : scaled)
            Destroy(table);
    }
};

IconCache* cache = nullptr;

VX3Bitmap* LoadedPicture(size_t number)
{
    HostBitmap& picture = cache->loaded[number];
    if (!picture) // A failure is not remembered: the next call tries again.
        picture = LoadBitmap(GetIconPath(iconFiles[number].name));
    return picture.Get();
}

// None without memory.
HostBitmap* SlotOf(size_t number, int32_t size)
{
    SizeTable*& table = cache->scaled[number];
    if (!table)
        table = Make<SizeTable>()();
    return table ? &table->pictures[std::max(size - smallestSize, 0)] : nullptr;
}

} // namespace

bool InitIconCache(const FilePath& modulePath)
{
    FreeIconCache();
    FilePath folder = modulePath.Directory();
    if (folder.Append("res") && folder.Append("icons"))
        cache = Make<IconCache>()(folder);
    return cache != nullptr;
}

void FreeIconCache()
{
    Destroy(std::exchange(cache, nullptr));
}

int32_t IconCount()
{
    return static_cast<int32_t>(iconCount);
}

const char* IconFileName(int32_t number)
{
    return number >= 0 && number < IconCount() ? iconFiles[number].name : nullptr;
}

VX3Bitmap* GetIconBitmap(int32_t number, int32_t size)
{
    if (!cache || number < 0 || number >= IconCount())
        return nullptr;
    const auto index = static_cast<size_t>(number);
    VX3Bitmap* picture = LoadedPicture(index);
    if (!picture || size < 1 || size >= firstUnscaledSize || iconFiles[index].scalable == Scalable::No)
        return picture;
    HostBitmap* slot = SlotOf(index, size);
    if (!slot)
        return picture;
    if (!*slot)
        *slot = HostBitmap::Scaled(picture, size);
    return *slot ? slot->Get() : picture;
}

Preview* GetIcon(Icon number, int32_t size)
{
    VX3Bitmap* picture = GetIconBitmap(static_cast<int32_t>(number), size);
    return picture ? Make<Preview>()(picture, Preview::neverEnlarged) : nullptr;
}

HostBitmap LoadBitmap(const FilePath& path)
{
    return HostBitmap::Load(path);
}

FilePath GetIconPath(const char* fileName)
{
    FilePath path;
    if (!cache || !path.SetJoined(cache->folder, String(fileName)))
        path.Clear();
    return path;
}

} // namespace browser

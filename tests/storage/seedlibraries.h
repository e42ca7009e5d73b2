// Four small library files to damage: a new one, one that was changed all the time, that one
// written anew, and one of an old version. All have data, previews and several names.
#pragma once

#include "libraryfixture.h"
#include "storage/browserdatabaseitem.h"

namespace vx3::tests {

using SeedFiles = std::map<std::string, std::string>; // bytes by name

// An item as it stands in a file: data in one chunk, previews in others.
struct SeedItem {
    int32_t id = 0;
    std::string path;
    std::string data;
    browser::StorageMode mode = browser::StorageMode::Raw;
    std::vector<std::string> previews; // under 1, 2 …
};

class SeedWriter
{
public:
    explicit SeedWriter(int32_t fileVersion)
        : version(fileVersion)
    {
        browser::BaseContainer info, names;
        (void)(names.SetText(browser::englishCode, TextOf("Wood")) && names.SetText(browser::germanCode, TextOf("Holz")));
        (void)(info.SetInt32(0, version) && info.SetText(3, TextOf("preset://a.libvx")) && info.SetInt32(5, 0)
               && info.SetContainer(4, names));
        file.Head().Chunk("difm", 0, ImageOf(info));
    }
    FileBytes& File() { return file; }
    // Writes the payloads, and gives the record, whose chunk is still to be written.
    std::string Record(const SeedItem& item)
    {
        browser::BaseContainer record, path, previews, names;
        record.SetId(item.id);
        (void)record.SetInt32(browser::ItemType, 1000);
        (void)(names.SetText(browser::englishCode, TextOf("name")) && names.SetText(browser::germanCode, TextOf("Name")));
        (void)record.SetContainer(browser::ItemNames, names);
        (void)(path.SetText(browser::PathText, TextOf(item.path))
               && path.SetInt32(browser::PathHashValue, static_cast<int32_t>(browser::PathHash(TextOf(item.path)))));
        AddData(item, record);
        int32_t number = 0;
        for (const std::string& picture : item.previews)
            AddPreview(item.id, ++number, picture, previews);
        browser::BaseContainer& place = version < 5 ? path : record;
        (void)place.SetContainer(version < 5 ? int32_t(browser::PathOldPreviews) : int32_t(browser::ItemPreviews), previews);
        (void)record.SetContainer(browser::ItemPath, path);
        return ImageOf(record);
    }

private:
    int32_t IdOf(int32_t id) const { return version < 3 ? 0 : id; }
    void AddData(const SeedItem& item, browser::BaseContainer& record)
    {
        browser::BaseContainer data;
        std::string stored = item.data;
        browser::Block packed;
        if (item.mode == browser::StorageMode::Packed
            && browser::PackData(item.data.data(), static_cast<int64_t>(item.data.size()), packed))
            stored.assign(reinterpret_cast<const char*>(packed.Bytes()), static_cast<size_t>(packed.Size()));
        (void)(data.SetInt64(browser::DataOffset, static_cast<int64_t>(file.bytes.size()))
               && data.SetInt32(browser::DataMode, static_cast<int32_t>(item.mode))
               && data.SetInt64(browser::DataUnpacked, static_cast<int64_t>(item.data.size())));
        (void)record.SetContainer(browser::ItemData, data);
        file.Chunk("bina", IdOf(item.id), stored);
    }
    void AddPreview(int32_t id, int32_t number, const std::string& picture, browser::BaseContainer& previews)
    {
        browser::BaseContainer preview;
        preview.SetId(number);
        (void)(preview.SetInt32(browser::PictureWidth, 16) && preview.SetInt32(browser::PictureHeight, 16)
               && preview.SetInt32(browser::PictureGrade, number)
               && preview.SetInt64(browser::PictureOffset, static_cast<int64_t>(file.bytes.size())));
        (void)previews.SetContainer(number, preview);
        file.Chunk("imag", IdOf(id), picture);
    }

    const int32_t version;
    FileBytes file;
};

inline std::string FreshSeed()
{
    SeedWriter writer(7);
    writer.File().Chunk("cati", 0, CategoryImage("wood"));
    const std::string one = writer.Record({ 1, "preset://a.libvx/one", "data of one", browser::StorageMode::Raw, { "a picture" } });
    const std::string two =
        writer.Record({ 2, "preset://a.libvx/two", std::string(400, 't'), browser::StorageMode::Packed, { "small", "and large" } });
    writer.File().Chunk("ditm", 1, one).Chunk("ditm", 2, two);
    const std::string three = writer.Record({ 3, "preset://a.libvx/three", "", browser::StorageMode::Raw, {} });
    return writer.File().Chunk("ditm", 3, three).End().bytes;
}

// Below version 3 payloads have no id, and all but the last items stand in one chunk.
inline std::string OldSeed()
{
    SeedWriter writer(2);
    FileBytes records;
    for (const SeedItem& item :
         { SeedItem{ 1, "preset://a.libvx/one", "old data of one", browser::StorageMode::Raw, { "an old picture" } },
           SeedItem{ 2, "preset://a.libvx/two", std::string(300, 'o'), browser::StorageMode::Packed, { "small", "large" } } }) {
        const std::string record = writer.Record(item);
        records.Number(record.size(), 4).Raw(record);
    }
    writer.File().Chunk("dbas", 0, records.bytes);
    const std::string three = writer.Record({ 3, "preset://a.libvx/three", "later", browser::StorageMode::Raw, {} });
    return writer.File().Chunk("ditm", 0, three).End().bytes;
}

inline void StoreSeedItem(browser::BrowserDatabase& library, const std::string& name, int version)
{
    browser::BrowserDatabaseItem* item = library.OpenItem(TextOf("preset://a.libvx/" + name));
    const std::string data = name + std::string(static_cast<size_t>(60 * version), 'd'), picture = "picture of " + name;
    browser::PreviewInfo info;
    info.number = info.grade = version;
    EXPECT_TRUE(item && item->SetType(1000, version) && item->SetData(data.data(), static_cast<int64_t>(data.size()), version % 2 == 0));
    EXPECT_TRUE(item->AddPreviewBytes(picture.data(), static_cast<int64_t>(picture.size()), info) && item->SetName(TextOf(name)));
    item->Release();
}

// The second and the third, by the module itself.
inline SeedFiles SeedLibraries(vx3::testing::MemoryFileSystem& disk)
{
    constexpr const char* path = "/seed/a.libvx";
    SeedFiles seeds = { { "fresh", FreshSeed() }, { "old", OldSeed() } };
    disk.AddFolder("/seed");
    browser::BrowserDatabase& library = *browser::MakeLibrary(PathOf(path), browser::String(), 0);
    EXPECT_TRUE(library.SetLibraryName(TextOf("preset://a.libvx")) && library.SetLocalizedName(TextOf("Wood")));
    for (const char* name : { "one", "two", "three", "four" })
        StoreSeedItem(library, name, 1);
    StoreSeedItem(library, "one", 2);
    EXPECT_TRUE(library.DeleteItem(TextOf("preset://a.libvx/three")) && library.SetCategory(TextOf("wood")));
    EXPECT_TRUE(library.MoveItem(TextOf("preset://a.libvx/four"), TextOf("preset://a.libvx/moved")) && library.Flush());
    StoreSeedItem(library, "two", 3);
    seeds["churned"] = disk.BytesOf(path);
    EXPECT_TRUE(library.Compact());
    seeds["rewritten"] = disk.BytesOf(path);
    browser::CloseLibrary(&library);
    disk.Remove("/seed");
    return seeds;
}

} // namespace vx3::tests

// Libraries in a file system in memory, and library files made byte by byte.
#pragma once

#include <cstring>

#include "core/containerimage.h"
#include "storage/itempacking.h"
#include "storage/librarynames.h"
#include "storage/librarytable.h"
#include "support/modulefixture.h"

namespace vx3::tests {

inline vx3::testing::TestHostOptions InMemory()
{
    vx3::testing::TestHostOptions options;
    options.files = vx3::testing::Files::InMemory;
    return options;
}

// A file as a writer other than the module would put it together.
class FileBytes
{
public:
    FileBytes& Chunk(const char* tag, int32_t id, const std::string& payload = {}) { return Header(tag, id, payload.size()).Raw(payload); }
    FileBytes& Header(const char* tag, int32_t id, uint64_t length)
    {
        bytes.append(tag, 4);
        Number(static_cast<uint32_t>(id), 4);
        Number(length, 8);
        return *this;
    }
    FileBytes& Raw(const std::string& more)
    {
        bytes += more;
        return *this;
    }
    FileBytes& Number(uint64_t number, int size)
    {
        for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
            bytes += static_cast<char>(number >> shift);
        return *this;
    }
    FileBytes& Head() { return Chunk("dbfh", 0); }
    FileBytes& End() { return Chunk("dbfe", 0); }

    std::string bytes;
};

// The payload of a chunk with a container.
inline std::string ImageOf(const browser::BaseContainer& container)
{
    std::vector<uint8_t> image;
    vx3::core::EncodeContainer(*container.Value(), image);
    FileBytes file;
    file.Raw("VX3d").Number(2, 4).Raw("brow").Number(image.size(), 8);
    return file.bytes + std::string(image.begin(), image.end());
}

inline std::string InfoImage(const char* name, int32_t version = 7, bool readOnly = false)
{
    browser::BaseContainer info, names;
    info.SetInt32(0, version);
    info.SetText(3, TextOf(name));
    info.SetInt32(5, readOnly);
    info.SetContainer(4, names);
    return ImageOf(info);
}

inline std::string CategoryImage(const char* text)
{
    browser::BaseContainer category;
    category.SetText(1, TextOf(text));
    return ImageOf(category);
}

inline std::string ItemImage(const char* path, int32_t ownId = 0)
{
    browser::BaseContainer item, place;
    const browser::String text = TextOf(path);
    item.SetId(ownId);
    item.SetInt32(browser::ItemType, 1000);
    place.SetText(browser::PathText, text);
    place.SetInt32(browser::PathHashValue, static_cast<int32_t>(browser::PathHash(text)));
    item.SetContainer(browser::ItemPath, place);
    return ImageOf(item);
}

class LibraryTest : public ModuleTest
{
protected:
    LibraryTest()
        : ModuleTest(InMemory())
    {
        testHost.FileSystem().AddFolder("/lib");
    }
    ~LibraryTest() override
    {
        browser::CloseAll(false, false);
        browser::FreeItemCompressor();
        browser::ForgetCurrentLanguage();
    }

    static constexpr const char* usualFile = "/lib/a.libvx";

    void Put(const std::string& bytes, const char* path = usualFile) { testHost.FileSystem().AddFile(path, bytes); }
    std::string Bytes(const char* path = usualFile) { return testHost.FileSystem().BytesOf(path); }
    browser::BrowserDatabase& Make(const char* path = usualFile, uint32_t flags = 0)
    {
        return *browser::MakeLibrary(PathOf(path), browser::String(), flags);
    }
    browser::BrowserDatabase& Open(const char* path = usualFile)
    {
        browser::BrowserDatabase& library = Make(path);
        EXPECT_TRUE(library.Load());
        return library;
    }
    // A record beside the ways of handles.
    static browser::ItemRecord& Add(browser::BrowserDatabase& library, const char* path)
    {
        browser::LibraryState& state = library.State();
        browser::ItemRecord* record = state.items.Add(state.nextItemId++, &library);
        state.itemCount++;
        const browser::String text = TextOf(path);
        EXPECT_TRUE(record->SetPath(text, browser::PathHash(text)) && record->values.SetInt32(browser::ItemType, 1000));
        library.NoteChanged(*record);
        return *record;
    }
    static std::string PathOfItem(browser::BrowserDatabase& library, int32_t id)
    {
        const browser::ItemRecord* record = library.State().items.Find(id);
        return record ? Utf8(record->GetPath()) : "none";
    }
    // The tags of a file's chunks, in their order; "?" behind one that is not whole.
    static std::string Tags(const std::string& bytes)
    {
        std::string tags;
        for (size_t at = 0; at + 16 <= bytes.size();) {
            uint64_t length = 0;
            for (size_t i = 8; i < 16; ++i)
                length = length << 8 | static_cast<uint8_t>(bytes[at + i]);
            tags += (tags.empty() ? "" : " ") + bytes.substr(at, 4);
            if (length > bytes.size() - at - 16)
                return tags + "?";
            at += 16 + length;
        }
        return tags;
    }
};

} // namespace vx3::tests

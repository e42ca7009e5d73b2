// Handles of items in libraries in memory.
#pragma once

#include <memory>

#include "libraryfixture.h"
#include "services/preferences.h"
#include "storage/browserdatabaseitem.h"
#include "storage/itempacking.h"

namespace vx3::tests {

using Item = std::unique_ptr<browser::BrowserDatabaseItem>;

inline std::string StringOf(const browser::Block& block)
{
    return std::string(reinterpret_cast<const char*>(block.Bytes()), static_cast<size_t>(block.Size()));
}

inline std::string DataOf(const browser::BrowserDatabaseItem& item)
{
    browser::Block data;
    return item.GetData(data) ? StringOf(data) : "none";
}

inline bool SetData(browser::BrowserDatabaseItem& item, const std::string& bytes, bool compress = false)
{
    return item.SetData(bytes.data(), static_cast<int64_t>(bytes.size()), compress);
}

class ItemTest : public LibraryTest
{
protected:
    ItemTest()
    {
        browser::SetPreferenceDefaults();
        testHost.FileSystem().AddFolder("/lib/image");
    }
    ~ItemTest() override { browser::FreeItemCompressor(); }

    browser::BrowserDatabase& MakeEmpty(const char* path = usualFile, uint32_t flags = 0)
    {
        if (testHost.FileSystem().Exists(path))
            testHost.FileSystem().Remove(path);
        browser::BrowserDatabase& library = Make(path, flags);
        EXPECT_TRUE(library.CreateEmptyFile());
        return library;
    }
    // Closed, and loaded again.
    browser::BrowserDatabase& Reopen(browser::BrowserDatabase& library)
    {
        const std::string path = NativeOf(library.GetFilePath());
        EXPECT_TRUE(library.Flush());
        browser::CloseLibrary(&library);
        return Open(path.c_str());
    }
    static Item OpenItem(browser::BrowserDatabase& library, const char* path, browser::Force force = browser::Force::No)
    {
        return Item(library.OpenItem(TextOf(path), force));
    }
    static Item Find(const std::string& path) { return Item(browser::FindItem(TextOf(path))); }

    // A picture of one grey; none without memory.
    static browser::HostBitmap Grey(uint8_t value, int32_t width = 8, int32_t height = 8, bool alpha = false)
    {
        browser::HostBitmap bitmap = browser::HostBitmap::Create(width, height);
        if (!bitmap || (alpha && !browser::host->bitmap->addAlpha(bitmap.Get())))
            return {};
        const std::vector<uint8_t> row(static_cast<size_t>(width) * 4, value);
        for (int32_t y = 0; y < height; y++)
            (void)browser::host->bitmap->writePixels(bitmap.Get(), 0, y, width, row.data());
        return bitmap;
    }
    static int GreyOf(const VX3Bitmap* bitmap) // -1 for none
    {
        uint8_t rgba[4] = {};
        return bitmap && browser::host->bitmap->readPixels(bitmap, 0, 0, 1, rgba) ? rgba[0] : -1;
    }
};

} // namespace vx3::tests

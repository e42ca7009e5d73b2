// Icons by number: which picture a size gives, and what is shared.

#include "support/modulefixture.h"

#include "ui/iconservice.h"

#include <filesystem>

using namespace browser;
using namespace vx3::tests;
using namespace vx3::testing;

namespace {

constexpr int32_t folder = 3, locked = 27, frame = 28, clock7 = 44;
constexpr int32_t drawnSize = 200;

class Icons : public ModuleTest
{
protected:
    Icons()
    {
        std::filesystem::create_directories(testHost.Folder() + "/module/res/icons");
        for (int32_t number : { folder, frame, clock7 })
            WriteIcon(number, true);
        EXPECT_TRUE(InitIconCache(PathOf(testHost.Folder() + "/module/browser.so")));
    }
    ~Icons() override { FreeIconCache(); }

    // As wide as it is drawn and half as high, so that a scaled one is told by its sides.
    void WriteIcon(int32_t number, bool alpha)
    {
        HostBitmap picture = HostBitmap::Create(drawnSize, drawnSize / 2);
        ASSERT_TRUE(!alpha || host->bitmap->addAlpha(picture.Get()));
        FilePath path = PathOf(testHost.Folder() + "/module/res/icons/" + IconFileName(number));
        ASSERT_EQ(host->bitmap->save(picture.Get(), path.Value(), VX3_FORMAT_PNG, nullptr, alpha), VX3_IMAGE_OK);
    }
};

std::pair<int32_t, int32_t> SidesOf(const VX3Bitmap* picture)
{
    return picture ? std::pair(host->bitmap->width(picture), host->bitmap->height(picture)) : std::pair(0, 0);
}

TEST_F(Icons, SizeDecidesWhetherAPictureIsScaled)
{
    VX3Bitmap* drawn = GetIconBitmap(folder, 0);
    ASSERT_EQ(SidesOf(drawn), std::pair(drawnSize, drawnSize / 2));
    const std::pair<int32_t, int32_t> scaled[] = { { 17, 17 }, { 32, 32 }, { 126, 126 }, { 127, 127 } };
    for (auto [size, side] : scaled) {
        VX3Bitmap* picture = GetIconBitmap(folder, size);
        EXPECT_EQ(SidesOf(picture), std::pair(side, side)) << size;
        EXPECT_EQ(GetIconBitmap(folder, size), picture) << size; // from the cache
        EXPECT_TRUE(host->bitmap->hasAlpha(picture)) << size;
    }
    for (int32_t size : { 0, -1, INT32_MIN, 128, 4096, INT32_MAX })
        EXPECT_EQ(GetIconBitmap(folder, size), drawn) << size;
}

TEST_F(Icons, SmallSizesShareThePictureOfTheFirst)
{
    VX3Bitmap* first = GetIconBitmap(folder, 9);
    EXPECT_EQ(SidesOf(first), std::pair(9, 9));
    for (int32_t size : { 1, 15, 16 })
        EXPECT_EQ(GetIconBitmap(folder, size), first) << size;
    EXPECT_NE(GetIconBitmap(folder, 17), first);
}

TEST_F(Icons, FramesKeepTheirSize)
{
    for (int32_t number : { frame, clock7 })
        for (int32_t size : { 0, 1, 16, 64, 127, 128 })
            EXPECT_EQ(SidesOf(GetIconBitmap(number, size)), std::pair(drawnSize, drawnSize / 2)) << number << " at " << size;
}

TEST_F(Icons, WithoutAlphaNoneIsAdded)
{
    WriteIcon(locked, false);
    EXPECT_FALSE(host->bitmap->hasAlpha(GetIconBitmap(locked, 32)));
}

TEST_F(Icons, AMissingFileIsTriedAgain)
{
    EXPECT_EQ(GetIconBitmap(locked, 32), nullptr);
    EXPECT_EQ(GetIcon(Icon(locked), 32), nullptr);
    WriteIcon(locked, true);
    EXPECT_EQ(SidesOf(GetIconBitmap(locked, 32)), std::pair(32, 32));
}

TEST_F(Icons, PreviewsBorrowFromTheCache)
{
    for (int32_t size : { 0, 48, 300 }) {
        Preview* preview = GetIcon(Icon::Folder, size);
        ASSERT_TRUE(preview);
        EXPECT_EQ(preview->Bitmap(), GetIconBitmap(folder, size));
        EXPECT_EQ(preview->Flags(), uint32_t(Preview::neverEnlarged));
        Destroy(preview);
        EXPECT_NE(SidesOf(GetIconBitmap(folder, size)), std::pair(0, 0)); // still there
    }
}

TEST_F(Icons, NumbersOutsideTheTable)
{
    for (int32_t number : { -1, 45, INT32_MIN, INT32_MAX }) {
        EXPECT_EQ(IconFileName(number), nullptr);
        EXPECT_EQ(GetIconBitmap(number, 32), nullptr);
    }
    FreeIconCache();
    EXPECT_EQ(GetIconBitmap(folder, 32), nullptr);
    EXPECT_TRUE(GetIconPath("folder.tif").IsEmpty());
}

// What the module asks for is what the folder of its resources is made of.
TEST_F(Icons, EveryFileIsDrawn)
{
    EXPECT_EQ(IconCount(), 45);
    for (int32_t number = 0; number < IconCount(); number++) {
        std::filesystem::path file = IconFileName(number);
        EXPECT_EQ(file.extension(), ".tif");
        EXPECT_TRUE(std::filesystem::exists(MODULE_SOURCE "/res/icons/" / file.replace_extension(".svg"))) << file;
    }
    EXPECT_STREQ(IconFileName(35), "progressor7.tif");
    EXPECT_STREQ(IconFileName(36), "stop_small.tif");
}

// Without memory the picture as drawn stands in for the scaled one, or there is none.
TEST_F(Icons, MemoryMayEndAnywhere)
{
    int64_t runs = FailEachInTurn(testHost.Faults(), FailClass::Memory, Failing::Once, [&](int64_t nth) {
        FreeIconCache();
        (void)InitIconCache(PathOf(testHost.Folder() + "/module/browser.so"));
        auto sides = SidesOf(GetIconBitmap(folder, 32));
        bool isAnswer = sides == std::pair(0, 0) || sides == std::pair(32, 32) || sides == std::pair(drawnSize, drawnSize / 2);
        EXPECT_TRUE(isAnswer) << nth;
        Destroy(GetIcon(Icon::Folder, 32));
    });
    EXPECT_GT(runs, 4);
    EXPECT_EQ(SidesOf(GetIconBitmap(folder, 32)), std::pair(32, 32));
}

} // namespace

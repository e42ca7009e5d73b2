// Reading and writing pictures.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "samples.h"

namespace vx3::core {

namespace {

namespace files = std::filesystem;

const VX3BitmapServices& bitmaps = *BitmapServices();

bool IsNear(const Colour& a, const Colour& b, int tolerance)
{
    for (size_t channel = 0; channel < a.size(); ++channel)
        if (std::abs(a[channel] - b[channel]) > tolerance)
            return false;
    return true;
}

std::string Describe(const Colour& colour)
{
    std::string text;
    for (uint8_t channel : colour)
        text += std::to_string(channel) + " ";
    return text;
}

// The place of the first wrong pixel, empty if there is none.
std::string CompareWithPattern(const Bitmap& bitmap, const Sample& sample, int shift = 0)
{
    for (int32_t y = 0; y < sampleHeight; ++y)
        for (int32_t x = 0; x < sampleWidth; ++x) {
            Colour expected = ExpectedColour(sample, x, y, shift);
            Colour found = PixelAt(bitmap, x, y);
            if (!IsNear(found, expected, sample.tolerance))
                return std::to_string(x) + ", " + std::to_string(y) + ": " + Describe(found) + "instead of " + Describe(expected);
        }
    return {};
}

Bytes Save(const Bitmap& bitmap, int32_t format, const VX3Container* settings = nullptr, bool saveAlpha = true)
{
    Path path;
    PathServices()->setMemoryWriting(path.Get());
    EXPECT_EQ(bitmaps.save(bitmap.get(), path.Get(), format, settings, saveAlpha), VX3_IMAGE_OK);
    void* block = nullptr;
    int64_t length = 0;
    EXPECT_TRUE(PathServices()->takeMemory(path.Get(), &block, &length));
    auto* start = static_cast<uint8_t*>(block);
    Bytes bytes(start, start + length);
    MemoryServices()->free(block);
    return bytes;
}

// Every byte value in every channel, with noise that no predictor foresees.
Bitmap MakeNoise(int32_t width, int32_t height, bool withAlpha)
{
    Bitmap bitmap = MakeBitmap(width, height, withAlpha);
    uint32_t state = 12345;
    for (int32_t y = 0; y < height; ++y)
        for (int32_t x = 0; x < width; ++x) {
            state = state * 1664525 + 1013904223;
            SetPixel(bitmap, x, y, { uint8_t(state >> 24), uint8_t(state >> 16), uint8_t(x), uint8_t(state >> 8) });
        }
    return bitmap;
}

class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (files::temp_directory_path() / "picturesXXXXXX").string();
        folder = ::mkdtemp(pattern.data());
    }
    ~TemporaryFolder() { files::remove_all(folder); }
    std::string File(const std::string& name) const { return folder + "/" + name; }
    int CountFiles() const { return int(std::distance(files::directory_iterator(folder), files::directory_iterator())); }

private:
    std::string folder;
};

} // namespace

TEST(Codec, DecodesEverySampleToItsPixels)
{
    for (const Sample& sample : Samples()) {
        SCOPED_TRACE(sample.name);
        Path path(SamplePath(sample.name));
        Bitmap bitmap = MakeBitmap(1, 1);
        ASSERT_EQ(bitmaps.load(bitmap.get(), path.Get(), 0), VX3_IMAGE_OK);
        ASSERT_EQ(bitmaps.width(bitmap.get()), sampleWidth);
        ASSERT_EQ(bitmaps.height(bitmap.get()), sampleHeight);
        EXPECT_EQ(bitmaps.hasAlpha(bitmap.get()), sample.hasAlpha);
        EXPECT_EQ(bitmaps.depth(bitmap.get()), sample.hasAlpha ? 32 : 24);
        EXPECT_EQ(CompareWithPattern(bitmap, sample), "");
    }
}

TEST(Codec, InspectsEverySampleWithoutItsPixels)
{
    for (const Sample& sample : Samples()) {
        SCOPED_TRACE(sample.name);
        Path path(SamplePath(sample.name));
        VX3ImageInfo info = {};
        ASSERT_TRUE(bitmaps.inspect(path.Get(), &info));
        EXPECT_EQ(info.width, sampleWidth);
        EXPECT_EQ(info.height, sampleHeight);
        EXPECT_EQ(info.depth, sample.depth);
        EXPECT_EQ(info.hasAlpha, sample.hasAlpha);
        EXPECT_EQ(ToUtf8(info.format), sample.format);
        TextServices()->destruct(&info.format);
    }
}

TEST(Codec, GivesFramesByNumberAndTransparency)
{
    Bitmap bitmap = MakeBitmap(1, 1);
    Bytes pages = ReadSample("pages.tif");
    ASSERT_EQ(Decode(pages, bitmap, 1), VX3_IMAGE_OK);
    EXPECT_EQ(CompareWithPattern(bitmap, { "", "", 24, false }, 1), "");
    EXPECT_EQ(Decode(pages, bitmap, 2), VX3_IMAGE_NOT_FOUND);
    EXPECT_EQ(Decode(ReadSample("straight.png"), bitmap, 1), VX3_IMAGE_NOT_FOUND);

    Bytes moving = ReadSample("moving.gif");
    const Sample opaqueColours = { "", "", 3, false };
    for (int frame = 0; frame < 2; ++frame) {
        ASSERT_EQ(Decode(moving, bitmap, frame), VX3_IMAGE_OK);
        EXPECT_TRUE(bitmaps.hasAlpha(bitmap.get()));
        for (int32_t x = 0; x < 6; ++x) {
            bool transparent = (x + frame) % 6 == 1;
            EXPECT_EQ(PixelAt(bitmap, x, 0)[3], transparent ? 0 : 255) << x;
            if (!transparent) {
                EXPECT_EQ(PixelAt(bitmap, x, 0), ExpectedColour(opaqueColours, x, 0, frame));
            }
        }
    }
    EXPECT_EQ(Decode(moving, bitmap, 2), VX3_IMAGE_NOT_FOUND);

    Path path = PathOf(moving);
    VX3ImageInfo info = {};
    ASSERT_TRUE(bitmaps.inspect(path.Get(), &info));
    EXPECT_EQ(info.depth, 3);
    EXPECT_TRUE(info.hasAlpha);
    TextServices()->destruct(&info.format);
}

TEST(Codec, LosslessFormatsKeepEveryPixel)
{
    for (int32_t format : { VX3_FORMAT_LOSSLESS, VX3_FORMAT_PNG })
        for (bool withAlpha : { false, true })
            for (auto [width, height] : { std::pair{ 1, 1 }, { 257, 3 }, { 3, 257 }, { 300, 200 } }) {
                SCOPED_TRACE(testing::Message() << format << " " << withAlpha << " " << width);
                Bitmap bitmap = MakeNoise(width, height, withAlpha);
                Bytes bytes = Save(bitmap, format);
                Bitmap again = MakeBitmap(1, 1);
                ASSERT_EQ(Decode(bytes, again), VX3_IMAGE_OK);
                EXPECT_TRUE(AreEqual(bitmap, again));
            }
}

TEST(Codec, LeavesAlphaOutIfAsked)
{
    Bitmap bitmap = MakeNoise(20, 20, true);
    for (int32_t format : { VX3_FORMAT_LOSSLESS, VX3_FORMAT_PNG, VX3_FORMAT_JPEG }) {
        Bytes bytes = Save(bitmap, format, nullptr, format == VX3_FORMAT_JPEG);
        Bitmap again = MakeBitmap(1, 1);
        ASSERT_EQ(Decode(bytes, again), VX3_IMAGE_OK);
        EXPECT_FALSE(bitmaps.hasAlpha(again.get())) << format;
    }
}

TEST(Codec, QualityDecidesTheSizeOfAJpeg)
{
    Bitmap bitmap = MakeNoise(100, 80, false);
    VX3Container settings = {};
    auto sizeAt = [&](int32_t quality) {
        ContainerServices()->setInt32(&settings, VX3_SAVE_QUALITY, quality);
        return Save(bitmap, VX3_FORMAT_JPEG, &settings).size();
    };
    size_t lowest = sizeAt(1);
    size_t low = sizeAt(10);
    size_t high = sizeAt(100);
    EXPECT_LT(low * 4, high);
    EXPECT_EQ(sizeAt(-5), lowest);
    EXPECT_EQ(sizeAt(1000), high);
    EXPECT_EQ(sizeAt(90), Save(bitmap, VX3_FORMAT_JPEG).size());
    ContainerServices()->destruct(&settings);
}

TEST(Codec, ASaveReplacesOnlyWhenItIsWhole)
{
    TemporaryFolder folder;
    Bitmap bitmap = MakeNoise(20, 20, false);
    Path target(folder.File("a.png"));
    ASSERT_EQ(bitmaps.save(bitmap.get(), target.Get(), VX3_FORMAT_PNG, nullptr, 0), VX3_IMAGE_OK);
    files::permissions(folder.File("a.png"), files::perms::owner_read | files::perms::owner_write);
    files::create_symlink("a.png", folder.File("link.png"));

    // Through the link: the link stays, the file behind it is the new one with the old permissions.
    Path link(folder.File("link.png"));
    Bitmap other = MakeNoise(10, 10, false);
    ASSERT_EQ(bitmaps.save(other.get(), link.Get(), VX3_FORMAT_PNG, nullptr, 0), VX3_IMAGE_OK);
    EXPECT_TRUE(files::is_symlink(folder.File("link.png")));
    EXPECT_EQ(files::status(folder.File("a.png")).permissions(), files::perms::owner_read | files::perms::owner_write);
    Bitmap again = MakeBitmap(1, 1);
    ASSERT_EQ(bitmaps.load(again.get(), target.Get(), 0), VX3_IMAGE_OK);
    EXPECT_TRUE(AreEqual(again, other));

    // What cannot be written leaves all as it was, and nothing lies about.
    ASSERT_EQ(::mkfifo(folder.File("pipe").c_str(), 0600), 0);
    Path pipe(folder.File("pipe"));
    EXPECT_EQ(bitmaps.save(bitmap.get(), pipe.Get(), VX3_FORMAT_PNG, nullptr, 0), VX3_IMAGE_NOT_WRITTEN);
    EXPECT_TRUE(files::is_fifo(folder.File("pipe")));
    EXPECT_EQ(bitmaps.save(bitmap.get(), target.Get(), 7, nullptr, 0), VX3_IMAGE_UNKNOWN);
    Path nowhere(folder.File("missing/a.png"));
    EXPECT_EQ(bitmaps.save(bitmap.get(), nowhere.Get(), VX3_FORMAT_PNG, nullptr, 0), VX3_IMAGE_NOT_WRITTEN);
    EXPECT_EQ(folder.CountFiles(), 3);
}

TEST(Codec, AFailedLoadTellsWhyAndLeavesTheBitmap)
{
    TemporaryFolder folder;
    ASSERT_EQ(::mkfifo(folder.File("pipe").c_str(), 0600), 0);
    std::ofstream(folder.File("text.tif")) << "These are words and not a picture, whatever the name says.\n";
    std::ofstream(folder.File("empty.png"));
    Bitmap bitmap = MakeNoise(5, 4, true);
    Bitmap before(bitmaps.clone(bitmap.get()));
    const std::pair<const char*, int32_t> cases[] = {
        { "missing.png", VX3_IMAGE_NOT_FOUND },
        { "pipe", VX3_IMAGE_NOT_FOUND },
        { "text.tif", VX3_IMAGE_UNKNOWN },
        { "empty.png", VX3_IMAGE_UNKNOWN },
    };
    for (auto [name, expected] : cases) {
        Path path(folder.File(name));
        EXPECT_EQ(bitmaps.load(bitmap.get(), path.Get(), 0), expected) << name;
        VX3ImageInfo info = {};
        EXPECT_FALSE(bitmaps.inspect(path.Get(), &info)) << name;
    }
    EXPECT_EQ(bitmaps.show(Path(SamplePath("straight.png")).Get()), 0);
    EXPECT_TRUE(AreEqual(bitmap, before));
}

} // namespace vx3::core

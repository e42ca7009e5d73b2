// Pictures that were cut, changed or forged: a failure, soon, and never a crash. What this
// finds depends on the sanitizers of the build.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <random>

#include "samples.h"

namespace vx3::core {

namespace {

const VX3BitmapServices& bitmaps = *BitmapServices();

std::vector<std::string> AllNames()
{
    std::vector<std::string> names = { "moving.gif" };
    for (const Sample& sample : Samples())
        names.push_back(sample.name);
    return names;
}

bool Inspect(const Bytes& bytes)
{
    Path path = PathOf(bytes);
    VX3ImageInfo info = {};
    bool known = bitmaps.inspect(path.Get(), &info);
    TextServices()->destruct(&info.format);
    return known;
}

bool IsAnswer(int32_t result)
{
    return result >= VX3_IMAGE_OK && result <= VX3_IMAGE_NO_MEMORY;
}

void PutBig(Bytes& bytes, size_t offset, uint32_t value)
{
    for (size_t at = 0; at < 4; ++at)
        bytes[offset + at] = uint8_t(value >> (24 - 8 * at));
}

} // namespace

TEST(Damage, NoCutOfASampleIsAPictureUnlessOnlyItsEndIsGone)
{
    int cuts = 0;
    for (const std::string& name : AllNames()) {
        Bytes whole = ReadSample(name);
        ASSERT_GT(whole.size(), 80u) << name;
        Bitmap bitmap = MakeBitmap(1, 1);
        for (size_t length = 0; length < whole.size(); ++length, ++cuts) {
            Bytes cut(whole.begin(), whole.begin() + std::ptrdiff_t(length));
            Inspect(cut);
            int32_t result = Decode(cut, bitmap);
            ASSERT_TRUE(IsAnswer(result));
            // The tail may hold a trailer or a second frame; a second page stands behind all of the first.
            if (length <= whole.size() / 2 && name != "pages.tif") {
                ASSERT_NE(result, VX3_IMAGE_OK) << name << " cut at " << length << " of " << whole.size();
            }
        }
    }
    EXPECT_GT(cuts, 10000);
}

// Formats that say how much belongs to them: any cut is a failure.
TEST(Damage, NoCutAtAllIsAPictureWhereEveryByteCounts)
{
    for (std::string name : { "straight.png", "interlaced.png", "plain.bmp", "palette.bmp", "plain.tga", "packed.tga", "planes.sgi",
                              "planes.psd", "blocks.jpg", "inks.jpg" }) {
        Bytes whole = ReadSample(name);
        Bitmap bitmap = MakeBitmap(1, 1);
        for (size_t length = whole.size() / 2; length < whole.size(); ++length) {
            Bytes cut(whole.begin(), whole.begin() + std::ptrdiff_t(length));
            ASSERT_NE(Decode(cut, bitmap), VX3_IMAGE_OK) << name << " cut at " << length << " of " << whole.size();
        }
    }
}

TEST(Damage, ChangedBytesNeverCrashNorTakeLong)
{
    constexpr int roundsOfEach = 300;
    constexpr auto limit = std::chrono::seconds(5);
    std::mt19937 random(20240229);
    int rounds = 0;
    for (const std::string& name : AllNames()) {
        Bytes whole = ReadSample(name);
        Bitmap bitmap = MakeBitmap(1, 1);
        for (int round = 0; round < roundsOfEach; ++round, ++rounds) {
            Bytes changed = whole;
            // Most changes hit the head, where sizes and offsets stand.
            size_t reach = round % 2 ? whole.size() : std::min<size_t>(whole.size(), 128);
            for (int flip = 0; flip <= round % 4; ++flip)
                changed[random() % reach] = uint8_t(random());
            auto start = std::chrono::steady_clock::now();
            Inspect(changed);
            ASSERT_TRUE(IsAnswer(Decode(changed, bitmap)));
            ASSERT_LT(std::chrono::steady_clock::now() - start, limit) << name << " round " << round;
        }
    }
    EXPECT_EQ(rounds, int(AllNames().size()) * roundsOfEach);
}

// A few hundred bytes that promise a picture of a gigabyte are refused before memory is taken.
TEST(Damage, ForgedSizesAreRefused)
{
    Bitmap bitmap = MakeBitmap(1, 1);
    struct Forgery {
        const char* name;
        size_t widthOffset;
        size_t heightOffset;
        bool isBig;
        size_t width; // bytes of one number
    };
    const Forgery forgeries[] = { { "straight.png", 16, 20, true, 4 }, { "plain.bmp", 18, 22, false, 2 }, { "plain.tga", 12, 14, false, 2 },
                                  { "moving.gif", 6, 8, false, 2 },    { "planes.psd", 18, 14, true, 4 }, { "planes.sgi", 6, 8, true, 2 } };
    for (const Forgery& forgery : forgeries)
        for (uint32_t side : { 16384u, 32769u, 65535u }) {
            Bytes bytes = ReadSample(forgery.name);
            for (size_t offset : { forgery.widthOffset, forgery.heightOffset })
                for (size_t at = 0; at < forgery.width; ++at)
                    bytes[offset + at] = uint8_t(side >> 8 * (forgery.isBig ? forgery.width - 1 - at : at));
            EXPECT_NE(Decode(bytes, bitmap), VX3_IMAGE_OK) << forgery.name << " " << side;
            EXPECT_FALSE(Inspect(bytes)) << forgery.name << " " << side;
        }
    Bytes deep = ReadSample("palette.tif");
    for (uint8_t tag : { 0x02, 0x15 }) { // 65,535 bits of 65,535 samples
        const uint8_t entry[] = { tag, 1, 3, 0, 1, 0, 0, 0 };
        auto place = std::search(deep.begin(), deep.end(), std::begin(entry), std::end(entry));
        ASSERT_NE(place, deep.end());
        place[8] = place[9] = 0xff;
    }
    EXPECT_NE(Decode(deep, bitmap), VX3_IMAGE_OK);
    EXPECT_FALSE(Inspect(deep));
    Bytes negative = ReadSample("straight.png");
    PutBig(negative, 16, 0xffffffff);
    EXPECT_EQ(Decode(negative, bitmap), VX3_IMAGE_DAMAGED);
}

} // namespace vx3::core

// The hash that is stored on disk.

#include "support/modulefixture.h"

#include <random>

#include "model/crc32.h"

using namespace browser;
using namespace vx3::tests;

namespace {

class Crc : public ModuleTest
{
};

// One bit at a time, from the definition.
uint32_t BitwiseCrc(const std::vector<uint8_t>& bytes)
{
    uint32_t state = 0xFFFFFFFF;
    for (uint8_t byte : bytes) {
        state ^= byte;
        for (int bit = 0; bit < 8; bit++)
            state = (state >> 1) ^ (state & 1 ? 0xEDB88320u : 0);
    }
    return ~state;
}

TEST_F(Crc, AgreesWithTheCheckValueOfTheStandard)
{
    EXPECT_EQ(FinishCrc(ContinueCrc(crcStart, "123456789", 9)), 0xCBF43926u);
}

TEST_F(Crc, AgreesBitByBitAtEveryLengthAndCut)
{
    std::mt19937 random(7);
    for (size_t length = 0; length < 70; length++) {
        std::vector<uint8_t> bytes(2 * length);
        std::vector<VX3Unit> units(length);
        for (size_t i = 0; i < length; i++) {
            units[i] = static_cast<VX3Unit>(random());
            bytes[2 * i] = static_cast<uint8_t>(units[i] >> 8);
            bytes[2 * i + 1] = static_cast<uint8_t>(units[i]);
        }
        const uint32_t expected = BitwiseCrc(bytes);
        EXPECT_EQ(FinishCrc(ContinueCrcOfUnits(crcStart, units)), expected);
        const size_t cut = length ? random() % length : 0;
        CrcState state = ContinueCrc(crcStart, bytes.data(), 2 * cut);
        EXPECT_EQ(FinishCrc(ContinueCrc(state, bytes.data() + 2 * cut, 2 * (length - cut))), expected);
    }
}

TEST_F(Crc, OfAUrlIsThatOfItsLowerCaseUnitsHighByteFirst)
{
    BrowserURL url("Preset:/A\xC4"); // A with diaeresis, lower case U+00E4
    std::vector<uint8_t> bytes;
    for (char unit : std::string("preset:/a\xE4")) {
        bytes.push_back(0);
        bytes.push_back(static_cast<uint8_t>(unit));
    }
    EXPECT_EQ(url.GetHash(), BitwiseCrc(bytes));
}

} // namespace

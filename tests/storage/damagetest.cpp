// Library files that are cut, flipped, forged and shuffled: nothing crashes or hangs, memory is
// asked for in bounds, what lies whole in front of the damage is there, and what was loaded once
// is loaded again behind a flush.
#include <chrono>
#include <random>

#include "librarysurvival.h"
#include "seedlibraries.h"
#include "storage/itempayloads.h"
#include "support/campaign.h"
#include "testing/memorymeter.h"

namespace {

using namespace vx3::tests;
using browser::BrowserDatabase;

constexpr size_t headerSize = 16;

struct SeedChunk {
    size_t offset;
    size_t length; // with its header
};

std::vector<SeedChunk> ChunksOf(const std::string& bytes)
{
    std::vector<SeedChunk> chunks;
    for (size_t at = 0; at + headerSize <= bytes.size();) {
        size_t length = 0;
        for (size_t i = 8; i < headerSize; ++i)
            length = length << 8 | static_cast<uint8_t>(bytes[at + i]);
        chunks.push_back({ at, headerSize + length });
        at += headerSize + length;
    }
    return chunks;
}

class LibraryDamage : public LibraryTest
{
protected:
    LibraryDamage()
        : meter(testHost.Table())
    {
        browser::host = meter.Table();
        for (const auto& [name, bytes] : SeedLibraries(testHost.FileSystem()))
            seeds.push_back(Learn(name, bytes));
    }
    ~LibraryDamage() override { browser::host = testHost.Table(); }

    struct WholeItem {
        int32_t id;
        std::string item;
        size_t end; // of its record and all that it names
    };
    struct Seed {
        std::string name;
        std::string bytes;
        std::vector<SeedChunk> chunks;
        std::vector<WholeItem> items;
    };

    Seed Learn(const std::string& name, const std::string& bytes)
    {
        Seed seed = { name, bytes, ChunksOf(bytes), {} };
        Put(bytes);
        BrowserDatabase& library = Open();
        for (const auto& [id, item] : ItemsOf(library))
            seed.items.push_back({ id, item, EndOf(library, *library.State().items.Find(id), seed) });
        EXPECT_FALSE(library.IsDamaged()) << name;
        EXPECT_EQ(seed.items.size(), 3u) << name;
        browser::CloseLibrary(&library);
        return seed;
    }
    static size_t EndOf(BrowserDatabase& library, browser::ItemRecord& record, const Seed& seed)
    {
        const uint64_t own = record.chunk ? record.chunk : library.State().legacyOffset;
        std::vector<uint64_t> offsets = { own };
        browser::Array<browser::PayloadReference> payloads;
        EXPECT_TRUE(browser::ListPayloads(record, payloads));
        for (const browser::PayloadReference& payload : payloads)
            offsets.push_back(payload.offset);
        size_t end = 0;
        for (const SeedChunk& chunk : seed.chunks)
            if (std::find(offsets.begin(), offsets.end(), chunk.offset) != offsets.end())
                end = std::max(end, chunk.offset + chunk.length);
        return end;
    }

    // In the damaged chunk or behind it may stand what is now a later record of an item, or what
    // makes an old file one of another version.
    static bool MayBeReplaced(const Seed& seed, const std::string& bytes, size_t damage, int32_t id)
    {
        size_t from = 0;
        for (const SeedChunk& chunk : seed.chunks)
            from = chunk.offset <= damage ? chunk.offset : from;
        const auto has = [&](const std::string& text) { return bytes.find(text, from) != std::string::npos; };
        return has(FileBytes().Raw("ditm").Number(static_cast<uint32_t>(id), 4).bytes) || has(std::string("ditm\0\0\0\0", 8)) || has("dbas")
            || (seed.name == "old" && has("difm"));
    }

    void Survive(const Seed& seed, const std::string& bytes)
    {
        const auto [inSeed, inBytes] = std::mismatch(seed.bytes.begin(), seed.bytes.end(), bytes.begin(), bytes.end());
        const auto damage = static_cast<size_t>(inSeed - seed.bytes.begin());
        const auto start = std::chrono::steady_clock::now();
        ItemsById items;
        for (const char* old : { usualFile, "/lib/a.libvx.bak" })
            if (testHost.FileSystem().Exists(old))
                testHost.FileSystem().Remove(old);
        Put(bytes);
        meter.Reset();
        const std::string fault = CheckSurvival(PathOf(usualFile), items);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        EXPECT_EQ(fault, "") << seed.name << " damaged at " << damage;
        EXPECT_LT(seconds.count(), 2.0) << seed.name << " damaged at " << damage;
        const auto bound = static_cast<int64_t>(4 * bytes.size() + (1 << 20));
        EXPECT_LE(meter.Largest(), bound) << seed.name << " damaged at " << damage;
        EXPECT_LE(meter.Peak(), bound) << seed.name << " damaged at " << damage;
        for (const WholeItem& whole : seed.items)
            if (whole.end <= damage && !MayBeReplaced(seed, bytes, damage, whole.id)) {
                EXPECT_EQ(items[whole.id], whole.item) << seed.name << " damaged at " << damage;
                ++judged;
            }
        ++files;
        if (HasFailure())
            KeepFirst(seed, bytes);
    }
    void KeepFirst(const Seed& seed, const std::string& bytes)
    {
        if (!isKept)
            ADD_FAILURE() << "the first file that failed, of " << seed.name << ":\n" << HexOf(bytes);
        isKept = true;
    }
    static std::string HexOf(const std::string& bytes)
    {
        std::string text;
        for (const char byte : bytes)
            for (const int shift : { 4, 0 })
                text += "0123456789abcdef"[static_cast<uint8_t>(byte) >> shift & 15];
        return text;
    }
    void Told(int leastFiles, int leastJudged)
    {
        RecordProperty("files", files);
        RecordProperty("items", judged);
        EXPECT_GE(files, leastFiles);
        EXPECT_GE(judged, leastJudged) << "items in front of a damage";
    }
    bool GoesOn() const { return !HasFailure(); }

    vx3::testing::MemoryMeter meter;
    std::vector<Seed> seeds;
    int files = 0;
    int judged = 0;
    bool isKept = false;
};

TEST_F(LibraryDamage, EveryPrefix)
{
    for (const Seed& seed : seeds)
        for (size_t length = 0; length < seed.bytes.size() && GoesOn(); ++length)
            Survive(seed, seed.bytes.substr(0, length));
    Told(4500, 2000);
}

TEST_F(LibraryDamage, EveryBit)
{
    const size_t step = InFull(1, 7);
    for (const Seed& seed : seeds)
        for (size_t bit = 0; (seed.name == "old" || seed.name == "churned") && bit < seed.bytes.size() * 8 && GoesOn(); bit += step) {
            std::string flipped = seed.bytes;
            flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
            Survive(seed, flipped);
        }
    Told(InFull(20000, 3000), InFull(5000, 1000));
}

TEST_F(LibraryDamage, HostileHeaders)
{
    const std::string tags[] = {
        "dbfh", "difm", "cati", "ditm", "bina", "imag", "ivld", "dbas", "dbfe", std::string(4, '\0'), "\xff\xff\xff\xff"
    };
    const uint32_t ids[] = { 0, 0xFFFFFFFF, 0xFFFFFFFE, 0x80000000, 0x7FFFFFFF };
    for (const Seed& seed : seeds)
        for (const SeedChunk& chunk : seed.chunks) {
            const uint64_t exact = chunk.length - headerSize, left = seed.bytes.size() - chunk.offset - headerSize;
            const uint64_t lengths[] = { 0,
                                         1,
                                         15,
                                         16,
                                         17,
                                         exact - 1,
                                         exact + 1,
                                         exact + 16,
                                         left,
                                         left + 1,
                                         0x7FFFFFFF,
                                         0x80000000,
                                         0xFFFFFFF0,
                                         uint64_t(1) << 32,
                                         uint64_t(1) << 40,
                                         ~uint64_t(0) >> 1,
                                         uint64_t(1) << 63,
                                         ~uint64_t(0) - 15,
                                         ~uint64_t(0) };
            const auto forge = [&](size_t place, const std::string& field) {
                std::string forged = seed.bytes;
                forged.replace(chunk.offset + place, field.size(), field);
                if (GoesOn() && forged != seed.bytes)
                    Survive(seed, forged);
            };
            for (const std::string& tag : tags)
                forge(0, tag);
            for (const uint32_t id : ids)
                forge(4, FileBytes().Number(id, 4).bytes);
            for (const uint64_t length : lengths)
                forge(8, FileBytes().Number(length, 8).bytes);
        }
    Told(1500, 500);
}

// What a seeded run does to a file.
class Mutator
{
public:
    Mutator(unsigned seed, const std::vector<std::string>& others)
        : random(seed)
        , donors(others)
    {
    }
    std::string Mutate(std::string bytes)
    {
        for (size_t i = 1 + Below(3); i > 0; --i)
            Change(bytes);
        return bytes;
    }

private:
    size_t Below(size_t limit) { return limit ? random() % limit : 0; }
    SeedChunk AnyChunk(const std::string& bytes)
    {
        std::vector<SeedChunk> chunks = ChunksOf(bytes);
        std::erase_if(chunks, [&](const SeedChunk& chunk) { return chunk.length > bytes.size() - chunk.offset; });
        return chunks.empty() ? SeedChunk{ 0, bytes.size() } : chunks[Below(chunks.size())];
    }
    static std::string BytesIn(const std::string& bytes, const SeedChunk& chunk) { return bytes.substr(chunk.offset, chunk.length); }
    // In a payload, so in the image of a container more often than not.
    void FlipWithin(std::string& bytes, const SeedChunk& chunk)
    {
        for (size_t i = 1 + Below(4); i > 0 && chunk.length > headerSize; --i)
            bytes[chunk.offset + headerSize + Below(chunk.length - headerSize)] = static_cast<char>(random());
    }
    void Shorten(std::string& bytes, const SeedChunk& chunk, bool tellsLength)
    {
        if (chunk.length <= headerSize)
            return;
        const size_t cut = 1 + Below(chunk.length - headerSize);
        bytes.erase(chunk.offset + chunk.length - cut, cut);
        if (tellsLength)
            bytes.replace(chunk.offset + 8, 8, FileBytes().Number(chunk.length - headerSize - cut, 8).bytes);
    }
    void Exchange(std::string& bytes, SeedChunk one, SeedChunk two)
    {
        if (one.offset > two.offset)
            std::swap(one, two);
        if (one.offset == two.offset)
            return;
        const std::string first = BytesIn(bytes, one), second = BytesIn(bytes, two);
        bytes.replace(two.offset, two.length, first);
        bytes.replace(one.offset, one.length, second);
    }
    void Change(std::string& bytes)
    {
        const SeedChunk chunk = AnyChunk(bytes);
        const std::string& donor = donors[Below(donors.size())];
        switch (Below(8)) {
        case 0: FlipWithin(bytes, { 0, bytes.size() }); break;
        case 1:
        case 2: FlipWithin(bytes, chunk); break;
        case 3: bytes.insert(chunk.offset, BytesIn(donor, AnyChunk(donor))); break;
        case 4: bytes.insert(AnyChunk(bytes).offset, BytesIn(bytes, chunk)); break;
        case 5: Exchange(bytes, chunk, AnyChunk(bytes)); break;
        case 6: Shorten(bytes, chunk, true); break;
        default: Shorten(bytes, chunk, Below(2) == 0); break;
        }
    }

    std::mt19937 random;
    const std::vector<std::string>& donors;
};

TEST_F(LibraryDamage, SeededMutants)
{
    std::vector<std::string> donors;
    for (const Seed& seed : seeds)
        donors.push_back(seed.bytes);
    const int wanted = InFull(30000, 3000);
    for (unsigned number = 1; files < wanted && GoesOn(); ++number) {
        const Seed& seed = seeds[number % seeds.size()];
        const std::string mutant = Mutator(number, donors).Mutate(seed.bytes);
        SCOPED_TRACE("mutant " + std::to_string(number));
        if (mutant != seed.bytes)
            Survive(seed, mutant);
    }
    Told(wanted, wanted / 40);
}

} // namespace

// Library files that something has happened to: cut, flipped, with hostile headers, spliced.
//
// Whatever stands whole in front of the damage is there, no request for memory is larger than
// the file gives reason for, nothing takes long, and what was loaded can be written whole.
#include <chrono>
#include <random>
#include <set>

#include "itemfixture.h"
#include "support/campaign.h"

namespace vx3::tests {
namespace {

using browser::BrowserDatabase;

constexpr size_t headerBytes = 16;

// Remembers the largest request for memory that passes through it.
class MemoryWatch
{
public:
    explicit MemoryWatch(const VX3Host* table)
        : watched(*table)
    {
        real = table->memory;
        services = *real;
        services.alloc = [](size_t size, int32_t line, const char* file, VX3Bool clear) {
            largest = std::max(largest, size);
            return real->alloc(size, line, file, clear);
        };
        watched.memory = &services;
        browser::host = &watched;
    }

    static inline size_t largest = 0;

private:
    static inline const VX3MemoryServices* real = nullptr;
    VX3Host watched;
    VX3MemoryServices services;
};

struct Chunk {
    size_t offset;
    size_t end;
    std::string tag;
    int32_t id;
};

uint64_t NumberAt(const std::string& bytes, size_t at, size_t size)
{
    uint64_t number = 0;
    for (size_t i = at; i < at + size; ++i)
        number = number << 8 | static_cast<uint8_t>(bytes[i]);
    return number;
}

void SetNumberAt(std::string& bytes, size_t at, size_t size, uint64_t number)
{
    for (size_t i = at + size; i-- > at; number >>= 8)
        bytes[i] = static_cast<char>(number);
}

std::vector<Chunk> ChunksOf(const std::string& bytes)
{
    std::vector<Chunk> chunks;
    for (size_t at = 0; at + headerBytes <= bytes.size();) {
        const size_t end = at + headerBytes + NumberAt(bytes, at + 8, 8);
        chunks.push_back({ at, end, bytes.substr(at, 4), static_cast<int32_t>(NumberAt(bytes, at + 4, 4)) });
        at = end;
    }
    return chunks;
}

size_t FirstDifference(const std::string& a, const std::string& b)
{
    const size_t both = std::min(a.size(), b.size());
    return static_cast<size_t>(std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(both), b.begin()).first - a.begin());
}

class LibraryMutants : public ItemTest
{
protected:
    LibraryMutants()
        : watch(browser::host)
    {
    }

    // New, after a rewrite, after a life of changes, and of an old form.
    std::vector<std::string> Seeds()
    {
        std::vector<std::string> seeds;
        BrowserDatabase& library = MakeEmpty();
        EXPECT_TRUE(library.SetLibraryName(TextOf("preset://a.libvx")) && library.SetCategory(TextOf("wood")));
        for (const char* name : { "oak", "elm", "ash" })
            Store(library, name, std::string(120, name[0]));
        EXPECT_TRUE(library.Flush());
        seeds.push_back(Bytes());
        EXPECT_TRUE(library.Compact());
        seeds.push_back(Bytes());
        Store(library, "elm", std::string(90, 'E'));
        EXPECT_TRUE(library.DeleteItem(TextOf("preset://a.libvx/ash")));
        EXPECT_TRUE(library.MoveItem(TextOf("preset://a.libvx/oak"), TextOf("preset://a.libvx/wood/oak")));
        Store(library, "fir", std::string(70, 'f'));
        EXPECT_TRUE(library.Flush());
        seeds.push_back(Bytes());
        browser::CloseLibrary(&library);
        seeds.push_back(OldFile());
        return seeds;
    }
    // How many chunks of items were seen whole before the damage.
    size_t Check(const std::string& seed, const std::string& mutant)
    {
        const auto start = std::chrono::steady_clock::now();
        Put(mutant);
        MemoryWatch::largest = 0;
        BrowserDatabase& library = Make();
        EXPECT_TRUE(library.Load());
        EXPECT_LE(MemoryWatch::largest, 4 * mutant.size() + (1 << 20));
        size_t whole = 0;
        std::set<int32_t> ids;
        for (const Chunk& chunk : ChunksOf(seed))
            if (chunk.tag == "ditm" && chunk.id > 0 && chunk.end <= FirstDifference(seed, mutant)) {
                EXPECT_TRUE(library.State().items.Find(chunk.id)) << chunk.id;
                ids.insert(chunk.id);
                ++whole;
            }
        EXPECT_TRUE(library.Flush(browser::Force::Yes, browser::AllowRewrite::Yes));
        const bool isReadOnly = library.IsReadOnly();
        browser::CloseLibrary(&library);
        BrowserDatabase& again = Open();
        EXPECT_TRUE(isReadOnly || !again.IsDamaged());
        for (int32_t id : ids)
            EXPECT_TRUE(again.State().items.Find(id)) << id;
        browser::CloseLibrary(&again);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
        if (HasFailure())
            ADD_FAILURE() << "damage at " << FirstDifference(seed, mutant);
        return whole;
    }

private:
    static void Store(BrowserDatabase& library, const std::string& name, const std::string& data)
    {
        const Item item = OpenItem(library, ("preset://a.libvx/" + name).c_str());
        EXPECT_TRUE(item && item->SetType(1000, 2) && item->SetName(TextOf(name)) && SetData(*item, data));
        EXPECT_TRUE(item->AddPreviewBytes(data.data(), 40, { 0, 4, 4, 1, browser::CurrentDate() }));
    }
    static std::string OldFile()
    {
        const std::string one = ItemImage("preset://a.libvx/one", 1), two = ItemImage("preset://a.libvx/two", 2);
        FileBytes records, file;
        records.Number(one.size(), 4).Raw(one).Number(two.size(), 4).Raw(two);
        file.Head().Chunk("difm", 0, InfoImage("preset://a.libvx", 3)).Chunk("dbas", 0, records.bytes);
        return file.Chunk("bina", 3, "data").Chunk("ditm", 3, ItemImage("preset://a.libvx/three", 3)).End().bytes;
    }

    MemoryWatch watch;
};

TEST_F(LibraryMutants, EveryPrefixAndEveryBit)
{
    size_t runs = 0, whole = 0;
    const std::vector<std::string> seeds = Seeds();
    for (const std::string& seed : seeds)
        for (size_t length = 0; length < seed.size() && !HasFailure(); ++length, ++runs)
            whole += Check(seed, seed.substr(0, length));
    for (const std::string& seed : { seeds[2], seeds[3] })
        for (size_t bit = 0; bit < seed.size() * 8 && !HasFailure(); ++bit, ++runs) {
            std::string flipped = seed;
            flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
            whole += Check(seed, flipped);
        }
    EXPECT_GT(runs, 20000u);
    EXPECT_GT(whole, runs / 5) << "much of the damage has something in front of it";
    RecordProperty("runs", static_cast<int>(runs));
}

TEST_F(LibraryMutants, EveryHeaderThroughHostileValues)
{
    constexpr uint64_t one = 1;
    constexpr uint64_t lengths[] = { 0,
                                     1,
                                     15,
                                     16,
                                     17,
                                     (one << 31) - 1,
                                     one << 31,
                                     (one << 32) - 16,
                                     one << 32,
                                     one << 40,
                                     (one << 63) - 1,
                                     one << 63,
                                     ~uint64_t(15),
                                     ~uint64_t(0) };
    constexpr int32_t ids[] = { 0, -1, -2, 1, 2, INT32_MIN, INT32_MAX };
    const std::string tags[] = {
        "dbfh", "difm", "cati", "ditm", "bina", "imag", "ivld", "dbas", "dbfe", "xyzw", std::string(4, '\0'), "\xFF\xFF\xFF\xFF"
    };
    size_t runs = 0;
    for (const std::string& seed : Seeds())
        for (const Chunk& chunk : ChunksOf(seed)) {
            const uint64_t exact = chunk.end - chunk.offset - headerBytes;
            std::vector<uint64_t> wanted(std::begin(lengths), std::end(lengths));
            wanted.insert(wanted.end(), { exact - 1, exact + 1, seed.size() - chunk.offset - headerBytes, seed.size() });
            for (uint64_t length : wanted) {
                std::string mutant = seed;
                SetNumberAt(mutant, chunk.offset + 8, 8, length);
                Check(seed, mutant);
            }
            for (int32_t id : ids) {
                std::string mutant = seed;
                SetNumberAt(mutant, chunk.offset + 4, 4, static_cast<uint32_t>(id));
                Check(seed, mutant);
            }
            for (const std::string& tag : tags)
                Check(seed, std::string(seed).replace(chunk.offset, 4, tag));
            runs += wanted.size() + std::size(ids) + std::size(tags);
            if (HasFailure())
                return;
        }
    EXPECT_GT(runs, 1400u);
    RecordProperty("runs", static_cast<int>(runs));
}

// --- At random ---

class Mutator
{
public:
    explicit Mutator(uint32_t seed)
        : random(seed)
    {
    }

    std::string Change(const std::string& seed, const std::string& other)
    {
        std::string mutant = seed;
        const size_t changes = 1 + Number(4);
        for (size_t i = 0; i < changes; ++i)
            ChangeOnce(mutant, other);
        return mutant;
    }

private:
    size_t Number(size_t end) { return end ? random() % end : 0; }

    static bool HasChunks(const std::string& bytes) { return bytes.size() >= headerBytes; }
    // The bytes of a chunk that somebody could have written.
    std::string AnyChunk(const std::string& bytes)
    {
        const std::vector<Chunk> chunks = ChunksOf(bytes);
        const Chunk& chunk = chunks[Number(chunks.size())];
        return bytes.substr(chunk.offset, chunk.end - chunk.offset);
    }
    size_t AnyBoundary(const std::string& bytes)
    {
        const std::vector<Chunk> chunks = ChunksOf(bytes);
        return std::min(chunks[Number(chunks.size())].offset, bytes.size());
    }
    void ChangeOnce(std::string& mutant, const std::string& other)
    {
        if (!HasChunks(mutant))
            return;
        switch (Number(7)) {
        case 0: mutant[Number(mutant.size())] = static_cast<char>(random()); break;
        case 1: mutant.insert(AnyBoundary(mutant), AnyChunk(other)); break;
        case 2: {
            const size_t from = AnyBoundary(mutant), to = AnyBoundary(mutant);
            mutant.erase(std::min(from, to), from < to ? to - from : from - to);
            break;
        }
        case 3: mutant.resize(Number(mutant.size())); break;
        case 4: mutant.insert(Number(mutant.size()), std::string(1 + Number(20), static_cast<char>(random()))); break;
        case 5: mutant.erase(Number(mutant.size()), 1 + Number(20)); break;
        default: mutant.replace(AnyBoundary(mutant), 4, "ivld"); break;
        }
    }

    std::mt19937 random;
};

TEST_F(LibraryMutants, SeededOnes)
{
    const uint32_t wanted = InFull(60000u, 6000u);
    const std::vector<std::string> seeds = Seeds();
    size_t whole = 0;
    for (uint32_t number = 0; number < wanted && !HasFailure(); ++number) {
        SCOPED_TRACE(number);
        const std::string& seed = seeds[number % seeds.size()];
        whole += Check(seed, Mutator(number).Change(seed, seeds[number / seeds.size() % seeds.size()]));
    }
    EXPECT_GT(whole, wanted / 20);
    RecordProperty("runs", static_cast<int>(wanted));
}

} // namespace
} // namespace vx3::tests

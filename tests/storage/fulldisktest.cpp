// A disk that is full for a while, under a real file with a buffer: what was accepted is
// there when there is room again.
#include <csignal>
#include <filesystem>
#include <memory>

#include <sys/resource.h>

#include "itemfixture.h"

namespace vx3::tests {
namespace {

// No file of this process may become longer, for the length of a scope.
class LengthLimit
{
public:
    explicit LengthLimit(uint64_t bytes)
        : oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &old);
        const rlimit small = { bytes, old.rlim_max };
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~LengthLimit()
    {
        setrlimit(RLIMIT_FSIZE, &old);
        std::signal(SIGXFSZ, oldHandler);
    }
    LengthLimit(const LengthLimit&) = delete;
    LengthLimit& operator=(const LengthLimit&) = delete;

private:
    rlimit old = {};
    void (*oldHandler)(int);
};

enum class Holding { No, Yes };

class FullDisk : public ModuleTest
{
protected:
    static constexpr int oldItems = 8, newItems = 12;
    static constexpr size_t dataBytes = 9000;

    ~FullDisk() override
    {
        browser::CloseAll(false, false);
        browser::FreeItemCompressor();
        browser::ForgetCurrentLanguage();
    }

    std::string FileName() const { return testHost.Folder() + "/a.libvx"; }
    static std::string Path(int number) { return "preset://a.libvx/item " + std::to_string(number); }
    static std::string Content(int number, char letter) { return std::string(dataBytes + static_cast<size_t>(number), letter); }

    browser::BrowserDatabase& Make() { return *browser::MakeLibrary(PathOf(FileName()), browser::String(), 0); }
    static bool Store(browser::BrowserDatabase& library, int number, char letter)
    {
        browser::BrowserDatabaseItem* item = library.OpenItem(TextOf(Path(number)));
        const bool isStored = item && SetData(*item, Content(number, letter));
        if (item)
            item->Release();
        return isStored;
    }
    void Prepare()
    {
        std::filesystem::remove(FileName());
        browser::BrowserDatabase& library = Make();
        ASSERT_TRUE(library.CreateEmptyFile() && library.SetLibraryName(TextOf("preset://a.libvx")));
        for (int i = 0; i < oldItems; ++i)
            ASSERT_TRUE(Store(library, i, 'o'));
        ASSERT_TRUE(library.Flush());
        browser::CloseLibrary(&library);
    }
    // Replaces half of the old items and adds new ones. Which of all that was accepted.
    static std::vector<bool> Change(browser::BrowserDatabase& library, Holding holding)
    {
        std::vector<bool> accepted(oldItems + newItems, false);
        const bool isHeld = holding == Holding::Yes && library.HoldFile();
        for (int i = oldItems / 2; i < oldItems + newItems; ++i)
            accepted[static_cast<size_t>(i)] = Store(library, i, 'n');
        (void)library.SetCategory(TextOf("wood"));
        (void)library.Flush();
        if (isHeld)
            (void)library.ReleaseFile();
        return accepted;
    }
    // Without a hold all that was accepted is there. Within one, payloads that wait in the buffer
    // may go with it, but nothing else takes their place.
    static void Check(int number, bool isAccepted, Holding holding, uint64_t limit)
    {
        const Item item(browser::FindItem(TextOf(Path(number))));
        const std::string old = number < oldItems ? Content(number, 'o') : "none";
        const std::string found = item ? DataOf(*item) : "none";
        const bool isWhole = found == (isAccepted ? Content(number, 'n') : old);
        const bool mayBeLost = holding == Holding::Yes && number >= oldItems / 2 && found == "none";
        EXPECT_TRUE(isWhole || mayBeLost) << number << ", " << limit << ": " << found.size() << (isAccepted ? " accepted" : "");
    }
    void RunWith(uint64_t limit, Holding holding)
    {
        Prepare();
        browser::BrowserDatabase& library = Make();
        ASSERT_TRUE(library.Load());
        std::vector<bool> accepted;
        {
            const LengthLimit full(limit);
            accepted = Change(library, holding);
        }
        // The first one says so if a payload was lost with the buffer of a hold.
        ASSERT_TRUE(library.Flush(browser::Force::Yes) || holding == Holding::Yes) << limit;
        ASSERT_TRUE(library.Flush(browser::Force::Yes)) << limit;
        ASSERT_FALSE(library.IsDirty()) << limit;
        browser::CloseLibrary(&library);
        browser::BrowserDatabase& again = Make();
        ASSERT_TRUE(again.Load());
        EXPECT_FALSE(again.IsDamaged()) << limit;
        browser::String category;
        EXPECT_TRUE(again.GetCategory(category) && Utf8(category) == "wood") << limit;
        for (int i = 0; i < oldItems + newItems; ++i)
            Check(i, accepted[static_cast<size_t>(i)], holding, limit);
        browser::CloseLibrary(&again);
    }
    void RunAll(Holding holding)
    {
        constexpr uint64_t step = 997;
        Prepare();
        const uint64_t first = std::filesystem::file_size(FileName());
        const uint64_t last = first + (oldItems / 2 + newItems + 1) * (dataBytes + 500);
        int runs = 0;
        for (uint64_t limit = first - 100; limit < last && !HasFailure(); limit += step, ++runs)
            RunWith(limit, holding);
        EXPECT_GT(runs, 150);
        RecordProperty("runs", runs);
    }
};

TEST_F(FullDisk, KeepsWhatWasAcceptedItemByItem)
{
    RunAll(Holding::No);
}

TEST_F(FullDisk, KeepsRecordsOfAHold)
{
    RunAll(Holding::Yes);
}

} // namespace
} // namespace vx3::tests

// What one element costs while the count of the others rises.

#include "core/values.h"
#include "groups.h"
#include "openlibrary.h"
#include "records.h"
#include "storage/chunkio.h"

namespace vx3::bench {

using browser::BrowserDatabase;
using browser::String;

namespace {

constexpr int repeats = 9;
constexpr int commits = 200; // for one sample
constexpr int deletions = 20;
constexpr size_t closedItems = 1000;

String PathBelow(const char* library, size_t number)
{
    return String((std::string("preset://") + library + "/Materials/Weathered plank " + std::to_string(number)).c_str());
}

// Without payloads, which are not touched by what is measured here.
void AddItems(BrowserDatabase& library, const char* name, size_t count)
{
    for (size_t i = 0; i < count; i++)
        Demand(Item(library.OpenItem(PathBelow(name, i))) != nullptr, "adding an item");
}

Library MakeStored(const std::string& file, size_t count)
{
    Library library = MakeEmptyLibrary(file);
    AddItems(*library, "studio", count);
    Demand(library->Flush(), "writing the library");
    return library;
}

double CommitTime(size_t count, uint64_t& random)
{
    double start = NowSeconds();
    for (int i = 0; i < commits; i++) {
        Item item(browser::FindItem(PathBelow("studio", NextRandom(&random) % count)));
        Demand(item && item->SetViewOrder(i), "changing an item");
        item.release()->Release();
    }
    return (NowSeconds() - start) / commits;
}

double DeleteTime(BrowserDatabase& library, size_t& next)
{
    double start = NowSeconds();
    for (int i = 0; i < deletions; i++)
        Demand(library.DeleteItem(PathBelow("studio", next++)) && library.Flush(), "deleting an item");
    return (NowSeconds() - start) / deletions;
}

void MeasureChanges(const std::string& folder, size_t count)
{
    const Library library = MakeStored(folder + "/changes.libvx", count);
    Samples commitTimes, deleteTimes;
    uint64_t random = orderSeed;
    for (int i = 0; i < repeats; i++)
        commitTimes.Add(CommitTime(count, random));
    Demand(!library->IsDirty(), "writing each change");
    size_t next = 0;
    for (int i = 0; i < repeats; i++)
        deleteTimes.Add(DeleteTime(*library, next));
    PrintCaseOf("commit_us", count, commitTimes.Median() * microsecond, "us");
    PrintCaseOf("delete_item_us", count, deleteTimes.Median() * microsecond, "us");
}

// Records without a path all have one hash.
void WriteNameless(const std::string& file, size_t count)
{
    using browser::ChunkTag;
    core::Path path(file);
    browser::BinaryFile target;
    const browser::BaseContainer nothing;
    uint64_t end = browser::chunkHeaderSize;
    bool isWritten = target.Open(browser::FilePath::Of(path.Get()), browser::OpenMode::Create)
        && browser::WriteChunkHeader(target, { ChunkTag::FileHead, 0, 0 });
    for (size_t i = 1; i <= count; i++)
        isWritten = isWritten && browser::WriteContainerChunk(target, ChunkTag::Item, static_cast<int32_t>(i), nothing, end, end);
    Demand(isWritten && browser::WriteChunkHeader(target, { ChunkTag::FileEnd, 0, 0 }) && target.Close(), "writing records");
}

void MeasureSameHash(const std::string& folder, size_t count)
{
    const std::string file = folder + "/nameless.libvx";
    WriteNameless(file, count);
    Samples loads, closings;
    for (int i = 0; i < 3; i++) {
        Library library = MakeLibrary(file);
        double start = NowSeconds();
        Demand(library->Load() && library->CountItems() == static_cast<int32_t>(count), "loading records of one hash");
        loads.Add((NowSeconds() - start) / static_cast<double>(count));
        start = NowSeconds();
        library.reset();
        closings.Add((NowSeconds() - start) / static_cast<double>(count));
    }
    PrintCaseOf("same_hash_us", count, loads.Median() * microsecond, "us");
    PrintCaseOf("same_hash_close_us", count, closings.Median() * microsecond, "us");
}

void MeasureClosing(const std::string& folder, size_t others)
{
    const Library large = MakeEmptyLibrary(folder + "/others.libvx");
    AddItems(*large, "others", others);
    Samples times;
    for (int i = 0; i < repeats; i++) {
        Library library = MakeEmptyLibrary(folder + "/closed.libvx");
        AddItems(*library, "closed", closedItems);
        double start = NowSeconds();
        library.reset();
        times.Add(NowSeconds() - start);
    }
    PrintCaseOf("remove_library_us", others, times.Median() * microsecond, "us");
}

} // namespace

void MeasureLibraryGrowth(const std::string& folder)
{
    for (size_t count : { size_t(1'000), size_t(100'000) })
        MeasureChanges(folder, count);
    for (size_t count : { size_t(1'000), size_t(30'000) })
        MeasureSameHash(folder, count);
    for (size_t count : { size_t(10'000), size_t(1'000'000) })
        MeasureClosing(folder, count);
}

} // namespace vx3::bench

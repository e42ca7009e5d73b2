// The index of items alone, without libraries.

#include <deque>

#include "groups.h"
#include "paths.h"
#include "storage/hashindex.h"
#include "storage/librarytable.h"

namespace vx3::bench {

using browser::ItemRecord;
using browser::String;

namespace {

constexpr bool anyCase = false; // of FindEntry: as items are searched

struct Wanted {
    String path;
    uint32_t hash;
};

void MakeRecords(size_t count, std::deque<ItemRecord>& records)
{
    for (size_t i = 0; i < count; i++) {
        const String path(PathInIndex(i).c_str());
        ItemRecord& record = records.emplace_back(static_cast<int32_t>(i) + 1, nullptr);
        Demand(record.SetPath(path, browser::PathHash(path)), "making a record");
    }
}

// Of their own, as whoever asks has them.
std::vector<Wanted> MakeWanted(size_t count)
{
    std::vector<Wanted> wanted;
    for (uint32_t number : ShuffledNumbers(count)) {
        String path(PathInIndex(number).c_str());
        const uint32_t hash = browser::PathHash(path);
        wanted.push_back({ std::move(path), hash });
    }
    return wanted;
}

double BuildTime(std::deque<ItemRecord>& records, const std::vector<Wanted>& wanted)
{
    std::vector<uint32_t> hashes;
    for (const ItemRecord& record : records)
        hashes.push_back(record.GetPathHash());
    size_t next = 0, entered = 0;
    double start = NowSeconds();
    for (ItemRecord& record : records)
        entered += browser::IndexItem(record, hashes[next++]) != nullptr;
    double taken = NowSeconds() - start;
    Demand(entered == wanted.size(), "entering records");
    return taken / static_cast<double>(entered);
}

double FindTime(const std::vector<Wanted>& wanted)
{
    size_t found = 0;
    double start = NowSeconds();
    for (const Wanted& each : wanted)
        if (browser::BrowserHashNode* node = browser::FindNode(each.hash))
            found += node->FindEntry(each.path, anyCase) != nullptr;
    double taken = NowSeconds() - start;
    Demand(found == wanted.size(), "finding records");
    return taken / static_cast<double>(found);
}

} // namespace

void MeasureHashIndex()
{
    browser::CloseAll(false, false); // those of the scene, so that the index can be taken down
    for (size_t count : indexCounts) {
        std::deque<ItemRecord> records;
        MakeRecords(count, records);
        const std::vector<Wanted> wanted = MakeWanted(count);
        Samples build, find;
        for (int i = 0; i < indexRepeats; i++) {
            build.Add(BuildTime(records, wanted));
            find.Add(FindTime(wanted));
            browser::DestroyIndex();
        }
        PrintCaseOf("build_ns", count, build.Median() * nanosecond, "ns");
        PrintCaseOf("find_compare_ns", count, find.Median() * nanosecond, "ns");
    }
}

} // namespace vx3::bench

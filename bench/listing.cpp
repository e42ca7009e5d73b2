#include "groups.h"
#include "search/sortby.h"

namespace vx3::bench {

using browser::ContentRef;
using browser::NodeRef;

namespace {

constexpr int repeats = 7;
constexpr int refreshes = 1000; // of an unchanged folder, for one sample

struct ListingTimes {
    Samples list, sorted, relist, unchanged;
};

void ListOnce(const ContentRef& folder, ListingTimes& times)
{
    double start = NowSeconds();
    NodeRef first = FirstChildOf(folder);
    times.list.Add(NowSeconds() - start);
    browser::Array<NodeRef> sorted;
    if (!browser::MakeSortedChildren(browser::SortMode::Name, std::move(first), sorted))
        std::fprintf(stderr, "not sorted\n");
    times.sorted.Add(NowSeconds() - start);
}

void RefreshOnce(const ContentRef& folder, ListingTimes& times)
{
    folder->MarkDirty();
    double start = NowSeconds();
    NodeRef first = FirstChildOf(folder);
    times.relist.Add(NowSeconds() - start);
    start = NowSeconds();
    for (int i = 0; i < refreshes; i++)
        folder->Populate();
    times.unchanged.Add((NowSeconds() - start) / refreshes);
}

} // namespace

// The folders of all repeats stay, so that each listing pays for memory as the first does.
void MeasureListing(Scene& scene, const std::string& path)
{
    ListingTimes times;
    std::vector<ContentRef> folders;
    double before = PrivateBytes();
    folders.push_back(scene.AddFolder(path));
    size_t count = CountChildren(folders[0]);
    double bytes = PrivateBytes() - before;
    for (int i = 0; i < repeats; i++) {
        folders.push_back(scene.AddFolder(path));
        ListOnce(folders.back(), times);
        RefreshOnce(folders.back(), times);
    }
    PrintCaseOf("list_ms", count, times.list.Median() * millisecond, "ms");
    PrintCaseOf("list_sorted_ms", count, times.sorted.Median() * millisecond, "ms");
    PrintCaseOf("relist_ms", count, times.relist.Median() * millisecond, "ms");
    PrintCaseOf("unchanged_us", count, times.unchanged.Median() * microsecond, "us");
    PrintCaseOf("bytes_per_entry", count, bytes / static_cast<double>(count ? count : 1), "B");
}

} // namespace vx3::bench

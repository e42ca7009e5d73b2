#include "groups.h"
#include "search/sortby.h"

namespace vx3::bench {

using browser::ContentRef;
using browser::NodeRef;
using browser::SortMode;

namespace {

constexpr int repeats = 7;

void MeasureSort(const char* name, SortMode mode, const ContentRef& folder)
{
    Samples times;
    size_t count = 0;
    for (int i = 0; i <= repeats; i++) {
        browser::Array<NodeRef> sorted;
        NodeRef first = FirstChildOf(folder);
        double start = NowSeconds();
        bool done = browser::MakeSortedChildren(mode, std::move(first), sorted);
        double taken = NowSeconds() - start;
        count = sorted.Count();
        if (!done)
            std::fprintf(stderr, "%s: not sorted\n", name);
        if (i) // The first one finds the plugins.
            times.Add(taken);
    }
    PrintCaseOf(name, count, times.Median() * millisecond, "ms");
}

} // namespace

void MeasureView(Scene& scene)
{
    for (size_t count : { size_t(10'000), size_t(100'000) }) {
        ContentRef folder = scene.AddMadeFolder(count);
        MeasureSort("sort_name_ms", SortMode::Name, folder);
        MeasureSort("sort_type_ms", SortMode::Type, folder);
        MeasureSort("sort_size_ms", SortMode::Size, folder);
        folder->Remove();
    }
}

} // namespace vx3::bench

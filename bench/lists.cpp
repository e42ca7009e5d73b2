// The list of a pane: refreshes beside a sort of the same nodes, and how its cost grows.

#include "groups.h"
#include "ui/contententrylist.h"

namespace vx3::bench {

using browser::ContentRef;
using browser::ContentViewEntryList;
using browser::NodeRef;
using browser::SortMode;

namespace {

constexpr int repeats = 15;
constexpr int unchangedRepeats = 1000;
constexpr size_t selectionsOfASample = 1000;

// What is shown before the other half comes.
constexpr browser::EntryFilter everySecond = { [](uint32_t, browser::BrowserContentNode& node) { return node.IndexHash() % 2 == 0; } };

void Synchronize(ContentViewEntryList& list, const ContentRef& folder, const browser::EntryFilter& filter = {})
{
    list.Synchronize(FirstChildOf(folder), SortMode::Name, filter);
}

template <class Run>
double TimeOf(Run run)
{
    const double start = NowSeconds();
    run();
    return NowSeconds() - start;
}

// A list that shows the folder with nothing selected, through one more order, so that it
// is of a generation that nobody has searched.
void MakeFresh(ContentViewEntryList& list, const ContentRef& folder)
{
    list.ClearSelection();
    list.Synchronize(FirstChildOf(folder), SortMode::None, {});
    Synchronize(list, folder);
}

void MeasureRefresh(const ContentRef& folder, size_t count)
{
    Samples unchanged, sort;
    ContentViewEntryList list;
    Synchronize(list, folder);
    list.SetRange(true, 0, browser::EntrySelection::toEnd);
    for (int i = 0; i < repeats; i++) {
        browser::Array<NodeRef> sorted;
        NodeRef first = FirstChildOf(folder);
        bool done = false;
        sort.Add(TimeOf([&] { done = browser::MakeSortedChildren(SortMode::Name, std::move(first), sorted); }));
        unchanged.Add(TimeOf([&] {
                          for (int n = 0; n < unchangedRepeats; n++)
                              Synchronize(list, folder);
                      })
                      / unchangedRepeats);
        if (!done || list.GetState().count != static_cast<int32_t>(sorted.Count()))
            std::fprintf(stderr, "refresh: not sorted\n");
    }
    PrintCaseOf("refresh_ms", count, unchanged.Median() * millisecond, "ms");
    PrintCaseOf("refresh_sort_ms", count, sort.Median() * millisecond, "ms");
}

// All that was shown is selected, and every second entry is new.
void MeasureAllNew(const ContentRef& folder, size_t count)
{
    Samples times;
    for (int i = 0; i < repeats; i++) {
        ContentViewEntryList list;
        Synchronize(list, folder, everySecond);
        list.SetRange(true, 0, browser::EntrySelection::toEnd);
        const int32_t selected = list.GetState().selectedCount;
        times.Add(TimeOf([&] { Synchronize(list, folder); }));
        if (list.GetState().selectedCount != selected)
            std::fprintf(stderr, "sync_all_new: lost some\n");
    }
    PrintCaseOf("sync_all_new_ms", count, times.Least() * millisecond, "ms");
}

// Random nodes, one by one, as when they are pasted. The first one makes the index.
void MeasureSelect(const ContentRef& folder, size_t count)
{
    Samples times;
    ContentViewEntryList list;
    uint64_t random = 7;
    for (int i = 0; i < repeats; i++) {
        MakeFresh(list, folder);
        std::vector<NodeRef> nodes;
        for (size_t n = 0; n < selectionsOfASample; n++)
            nodes.push_back(list.GetNode(static_cast<int32_t>(NextRandom(&random) % count)));
        list.SetNodeSelected(nodes[0], true);
        times.Add(TimeOf([&] {
                      for (const NodeRef& node : nodes)
                          (void)list.SetNodeSelected(node, true);
                  })
                  / selectionsOfASample);
    }
    PrintCaseOf("select_node_us", count, times.Least() * microsecond, "us");
}

} // namespace

void MeasureLists(Scene& scene)
{
    for (size_t count : { size_t(1'000), size_t(10'000), size_t(100'000) }) {
        ContentRef folder = scene.AddMadeFolder(count);
        MeasureRefresh(folder, count);
        MeasureAllNew(folder, count);
        MeasureSelect(folder, count);
        folder->Remove();
    }
}

} // namespace vx3::bench

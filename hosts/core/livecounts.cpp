#include "livecounts.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "memory.h"
#include "memorysite.h"

namespace vx3::core {
namespace {

struct Place {
    std::string name;
    MemoryUse use;
};

std::string NameOf(const MemorySite& site)
{
    std::string name = site.name;
    if (site.line > 0)
        name += ":" + std::to_string(site.line);
    return name;
}

// A header that two modules include has a site for each of them and is one place.
std::vector<Place> LivePlaces()
{
    std::map<std::string, MemoryUse> uses;
    for (const MemorySite* site : LiveMemorySites()) {
        MemoryUse& use = uses[NameOf(*site)];
        use.blocks += site->blocks.load(std::memory_order_relaxed);
        use.bytes += site->bytes.load(std::memory_order_relaxed);
    }
    std::vector<Place> places;
    for (const auto& [name, use] : uses)
        places.push_back({ name, use });
    std::stable_sort(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.use.bytes > b.use.bytes; });
    return places;
}

} // namespace

LiveObjects ReadLiveObjects()
{
    const MemoryUse use = CountMemory();
    LiveObjects live;
    live.memoryBlocks = use.blocks;
    live.memoryBytes = use.bytes;
    live.texts = liveCounters.texts.Get();
    live.paths = liveCounters.paths.Get();
    live.containers = liveCounters.containers.Get();
    live.files = liveCounters.files.Get();
    live.walks = liveCounters.walks.Get();
    live.watches = liveCounters.watches.Get();
    live.bitmaps = liveCounters.bitmaps.Get();
    live.threads = liveCounters.threads.Get();
    live.semaphores = liveCounters.semaphores.Get();
    live.resources = liveCounters.resources.Get();
    live.compressors = liveCounters.compressors.Get();
    return live;
}

std::string DescribeLiveMemory()
{
    std::string text;
    for (const Place& place : LivePlaces())
        text += place.name + ": " + std::to_string(place.use.blocks) + " blocks, " + std::to_string(place.use.bytes) + " bytes\n";
    return text;
}

} // namespace vx3::core

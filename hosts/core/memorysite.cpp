#include "memorysite.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace vx3::core {
namespace {

constexpr size_t tableSize = 1 << 14; // a module has a few thousand places
constexpr size_t maximalProbes = 64;
constexpr uint64_t hashMultiplier = 0x9E3779B97F4A7C15u;
constexpr int hashShift = 50; // leaves the bits of tableSize

std::atomic<MemorySite*> siteTable[tableSize];
MemorySite furtherSites = { nullptr, "further places", 0, 0, 0 };

size_t HashOf(const char* file, int32_t line)
{
    const uint64_t mixed = reinterpret_cast<uintptr_t>(file) + static_cast<uint64_t>(static_cast<uint32_t>(line)) * hashMultiplier;
    return (mixed * hashMultiplier) >> hashShift;
}

// Another module may have been loaded where the literal of an earlier one lay, so the
// address alone says little.
bool IsSite(const MemorySite& site, const char* file, int32_t line)
{
    return site.key == file && site.line == line && std::strcmp(site.name, file) == 0;
}

MemorySite* MakeSite(const char* file, int32_t line)
{
    const size_t size = std::strlen(file) + 1;
    char* name = static_cast<char*>(std::malloc(size));
    void* memory = std::malloc(sizeof(MemorySite));
    if (!name || !memory) {
        std::free(name);
        std::free(memory);
        return nullptr;
    }
    std::memcpy(name, file, size);
    return ::new (memory) MemorySite{ file, name, line, 0, 0 };
}

void DropSite(MemorySite* site)
{
    std::free(const_cast<char*>(site->name));
    std::free(site);
}

// The site of the slot after this call: ours, or that of a thread that was faster.
MemorySite* FillSlot(std::atomic<MemorySite*>& slot, const char* file, int32_t line)
{
    MemorySite* made = MakeSite(file, line);
    MemorySite* present = nullptr;
    if (!made || slot.compare_exchange_strong(present, made, std::memory_order_acq_rel))
        return made;
    DropSite(made);
    return present;
}

} // namespace

void MemorySite::Add(int64_t size)
{
    blocks.fetch_add(1, std::memory_order_relaxed);
    bytes.fetch_add(size, std::memory_order_relaxed);
}

void MemorySite::Subtract(int64_t size)
{
    blocks.fetch_sub(1, std::memory_order_relaxed);
    bytes.fetch_sub(size, std::memory_order_relaxed);
}

MemorySite* FindMemorySite(const char* file, int32_t line)
{
    if (!file)
        file = "";
    const size_t start = HashOf(file, line);
    for (size_t probe = 0; probe < maximalProbes; ++probe) {
        std::atomic<MemorySite*>& slot = siteTable[(start + probe) % tableSize];
        MemorySite* site = slot.load(std::memory_order_acquire);
        if (!site)
            site = FillSlot(slot, file, line);
        if (!site)
            return &furtherSites;
        if (IsSite(*site, file, line))
            return site;
    }
    return &furtherSites;
}

std::vector<const MemorySite*> LiveMemorySites()
{
    std::vector<const MemorySite*> live;
    for (const std::atomic<MemorySite*>& slot : siteTable) {
        const MemorySite* site = slot.load(std::memory_order_acquire);
        if (site && site->blocks.load(std::memory_order_relaxed) != 0)
            live.push_back(site);
    }
    if (furtherSites.blocks.load(std::memory_order_relaxed) != 0)
        live.push_back(&furtherSites);
    return live;
}

} // namespace vx3::core

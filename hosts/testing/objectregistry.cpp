#include "objectregistry.h"

#include <map>
#include <tuple>

namespace vx3::testing {

static constexpr std::size_t alignmentBits = 4; // blocks are aligned to 16 bytes

ObjectRegistry::Shard& ObjectRegistry::ShardOf(const void* object)
{
    const std::size_t place = reinterpret_cast<std::size_t>(object) >> alignmentBits;
    return shards[(place ^ (place / shardCount)) % shardCount];
}

void ObjectRegistry::Add(const void* object, Object kind, const Origin& origin)
{
    Shard& shard = ShardOf(object);
    std::lock_guard guard(shard.lock);
    Entry& entry = shard.entries[object];
    entry = {};
    entry.kind = kind;
    entry.origin = origin;
    if (origin.file)
        entry.origin.file = shard.files.emplace(origin.file).first->c_str();
}

ObjectRegistry::Answer ObjectRegistry::Remove(const void* object, Object kind)
{
    Shard& shard = ShardOf(object);
    std::lock_guard guard(shard.lock);
    const auto found = shard.entries.find(object);
    if (found == shard.entries.end() || found->second.kind != kind)
        return Answer::NotThere;
    const bool busy = found->second.readers > 0 || found->second.owners > 0;
    if (busy)
        return Answer::InUse;
    shard.entries.erase(found);
    return Answer::Fine;
}

ObjectRegistry::Answer ObjectRegistry::BeginUse(Entry& entry, Use use)
{
    const bool ownedByOther = entry.owners > 0 && entry.owner != std::this_thread::get_id();
    switch (use) {
    case Use::Live: return Answer::Fine;
    case Use::Share:
        if (ownedByOther)
            return Answer::InUse;
        ++entry.readers;
        return Answer::Fine;
    case Use::Own:
        if (ownedByOther || (entry.readers > 0 && entry.owners == 0))
            return Answer::InUse;
        ++entry.owners;
        entry.owner = std::this_thread::get_id();
        return Answer::Fine;
    }
    return Answer::Fine;
}

ObjectRegistry::Answer ObjectRegistry::Begin(const void* object, Object kind, Use use)
{
    Shard& shard = ShardOf(object);
    std::lock_guard guard(shard.lock);
    const auto found = shard.entries.find(object);
    if (found == shard.entries.end() || found->second.kind != kind)
        return Answer::NotThere;
    return BeginUse(found->second, use);
}

void ObjectRegistry::End(const void* object, Use use)
{
    Shard& shard = ShardOf(object);
    std::lock_guard guard(shard.lock);
    const auto found = shard.entries.find(object);
    if (found == shard.entries.end())
        return;
    if (use == Use::Share)
        --found->second.readers;
    if (use == Use::Own)
        --found->second.owners;
}

void ObjectRegistry::Clear()
{
    for (Shard& shard : shards) {
        std::lock_guard guard(shard.lock);
        shard.entries.clear();
    }
}

int64_t ObjectRegistry::Count(Object kind) const
{
    int64_t count = 0;
    for (const Shard& shard : shards) {
        std::lock_guard guard(shard.lock);
        for (const auto& [object, entry] : shard.entries)
            count += entry.kind == kind;
    }
    return count;
}

static std::string PlaceOf(const Origin& origin)
{
    if (!origin.file)
        return origin.maker ? origin.maker : "unknown";
    return std::string(origin.file) + ":" + std::to_string(origin.line);
}

std::string ObjectRegistry::Report() const
{
    struct Sum {
        int64_t count = 0;
        int64_t bytes = 0;
    };
    std::map<std::tuple<std::string, Object>, Sum> sums;
    for (const Shard& shard : shards) {
        std::lock_guard guard(shard.lock);
        for (const auto& [object, entry] : shard.entries) {
            Sum& sum = sums[{ PlaceOf(entry.origin), entry.kind }];
            ++sum.count;
            sum.bytes += entry.origin.size;
        }
    }
    std::string report;
    for (const auto& [key, sum] : sums) {
        const auto& [place, kind] = key;
        report += place + ": " + std::to_string(sum.count) + " of kind " + NameOf(kind) + " not given back";
        if (kind == Object::Block)
            report += ", " + std::to_string(sum.bytes) + " bytes";
        report += "\n";
    }
    return report;
}

} // namespace vx3::testing

// A store of things that are dear to make, bounded by what they cost.
//
// Two ages: what is used moves into the young one; when that has grown to half of the
// budget it becomes the old one, and what nobody used since then goes. So it costs no
// list of uses, and one look-up or two. Main thread only.
#pragma once

#include <cstddef>
#include <functional>
#include <unordered_map>
#include <utility>

namespace vx3::desktop {

template <class Key, class Value, class Hash = std::hash<Key>>
class AgingCache
{
public:
    explicit AgingCache(size_t ownBudget)
        : budget(ownBudget)
    {
    }

    // None if it is not there. What is found stays up to the next call of Put.
    template <class Asked>
    const Value* Find(const Asked& key)
    {
        if (auto found = young.find(key); found != young.end())
            return &found->second.value;
        auto found = old.find(key);
        if (found == old.end())
            return nullptr;
        const size_t cost = found->second.cost;
        oldCost -= cost;
        youngCost += cost;
        return &young.insert(old.extract(found)).position->second.value;
    }

    const Value& Put(Key key, Value value, size_t cost)
    {
        if (youngCost + cost > budget / 2) {
            old = std::exchange(young, {});
            oldCost = std::exchange(youngCost, 0);
        }
        youngCost += cost;
        return young.insert_or_assign(std::move(key), Entry{ std::move(value), cost }).first->second.value;
    }

    void Clear()
    {
        young.clear();
        old.clear();
        youngCost = oldCost = 0;
    }

    size_t Cost() const { return youngCost + oldCost; }
    size_t Count() const { return young.size() + old.size(); }

private:
    struct Entry {
        Value value;
        size_t cost;
    };
    using Map = std::unordered_map<Key, Entry, Hash, std::equal_to<>>;

    size_t budget;
    Map young;
    Map old;
    size_t youngCost = 0;
    size_t oldCost = 0;
};

} // namespace vx3::desktop

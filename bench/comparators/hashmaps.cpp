// An index by the hash of a path in two other ways: a search tree with a lock and a count in each node, and the standard
// library's table, which has neither.

#include <atomic>
#include <cstring>
#include <deque>
#include <memory>
#include <unordered_map>

#include "paths.h"

namespace vx3::bench {
namespace {

struct Record {
    std::u16string path;
    uint32_t hash;
};

class Tree
{
public:
    void Insert(const Record& record)
    {
        Node* added = nodes.emplace_back(std::make_unique<Node>(record)).get();
        if (nodes.size() == 1)
            return;
        for (Node* node = nodes.front().get();;) {
            node->TakeAlone();
            Node*& side = record.hash < node->record->hash ? node->left : node->right;
            Node* next = side;
            if (!next)
                side = added;
            node->lock.store(0, std::memory_order_release);
            if (!next)
                return;
            node = next;
        }
    }
    const Record* Find(uint32_t hash)
    {
        Node* node = nodes.empty() ? nullptr : nodes.front().get();
        if (node)
            node->uses.fetch_add(1);
        while (node && node->record->hash != hash) {
            Node* left = node;
            left->Share();
            node = hash < left->record->hash ? left->left : left->right;
            if (node)
                node->uses.fetch_add(1);
            left->lock.fetch_sub(1, std::memory_order_release);
            left->uses.fetch_sub(1);
        }
        if (!node)
            return nullptr;
        node->uses.fetch_sub(1);
        return node->record;
    }

private:
    struct Node {
        static constexpr uint32_t alone = 1u << 31;

        explicit Node(const Record& entered)
            : record(&entered)
        {
        }
        void Share()
        {
            uint32_t seen = lock.load(std::memory_order_relaxed);
            while ((seen & alone) || !lock.compare_exchange_weak(seen, seen + 1, std::memory_order_acquire))
                seen = lock.load(std::memory_order_relaxed);
        }
        void TakeAlone()
        {
            uint32_t free = 0;
            while (!lock.compare_exchange_weak(free, alone, std::memory_order_acquire))
                free = 0;
        }

        const Record* record;
        std::atomic<uint32_t> uses = 1;
        std::atomic<uint32_t> lock = 0;
        Node* left = nullptr;
        Node* right = nullptr;
    };

    std::deque<std::unique_ptr<Node>> nodes; // each is memory of its own, since it is counted
};

class Table
{
public:
    void Insert(const Record& record) { records.emplace(record.hash, &record); }
    const Record* Find(uint32_t hash) const
    {
        const auto found = records.find(hash);
        return found == records.end() ? nullptr : found->second;
    }

private:
    std::unordered_map<uint32_t, const Record*> records;
};

// No two numbers give one value, and the values are spread as hashes of texts are.
uint32_t Spread(uint32_t number)
{
    number = (number ^ number >> 16) * 0x85EBCA6B;
    number = (number ^ number >> 13) * 0xC2B2AE35;
    return number ^ number >> 16;
}

Record MakeRecord(size_t number)
{
    const std::string path = PathInIndex(number);
    return { std::u16string(path.begin(), path.end()), Spread(static_cast<uint32_t>(number)) };
}

template <class Index>
void Measure(size_t count)
{
    std::vector<Record> records, wanted;
    for (size_t i = 0; i < count; i++)
        records.push_back(MakeRecord(i));
    for (uint32_t number : ShuffledNumbers(count))
        wanted.push_back(MakeRecord(number));
    double build[indexRepeats], find[indexRepeats];
    for (int i = 0; i < indexRepeats; i++) {
        Index index;
        double start = NowSeconds();
        for (const Record& record : records)
            index.Insert(record);
        build[i] = (NowSeconds() - start) / static_cast<double>(count);
        size_t found = 0;
        start = NowSeconds();
        for (const Record& each : wanted)
            if (const Record* record = index.Find(each.hash))
                found += record->path == each.path;
        find[i] = (NowSeconds() - start) / static_cast<double>(count);
        Demand(found == count, "finding all records");
    }
    PrintCaseOf("build_ns", count, MedianOf(build, indexRepeats) * 1e9, "ns");
    PrintCaseOf("find_compare_ns", count, MedianOf(find, indexRepeats) * 1e9, "ns");
}

} // namespace
} // namespace vx3::bench

int main(int count, char** arguments)
{
    using namespace vx3::bench;
    const bool isTree = count == 2 && std::strcmp(arguments[1], "tree") == 0;
    if (!isTree && (count != 2 || std::strcmp(arguments[1], "unordered") != 0))
        return std::fprintf(stderr, "usage: hashmaps tree|unordered\n"), 2;
    for (size_t each : indexCounts)
        isTree ? Measure<Tree>(each) : Measure<Table>(each);
    return 0;
}

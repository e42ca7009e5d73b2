// The blocks and objects that a table has given and not got back.
//
// Any thread may call. Entries lie in shards with a lock each, so that threads which
// work on different objects seldom meet.
#pragma once

#include <array>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <unordered_set>

#include "callrule.h"

namespace vx3::testing {

// Where an object came from.
struct Origin {
    const char* file = nullptr; // of the module's source, copied; none: `maker` made it
    int32_t line = 0;
    const char* maker = nullptr;
    int64_t size = 0; // bytes of a block
};

class ObjectRegistry
{
public:
    enum class Use { Live, Share, Own };
    enum class Answer { Fine, NotThere, InUse };

    void Add(const void* object, Object kind, const Origin& origin);
    Answer Remove(const void* object, Object kind);
    // Begin and End of one call on an object. Live asks only whether it is there.
    Answer Begin(const void* object, Object kind, Use use);
    void End(const void* object, Use use);

    void Clear();
    int64_t Count(Object kind) const;
    // One line for each place that holds objects; empty if nothing is left.
    std::string Report() const;

private:
    struct Entry {
        Object kind = Object::None;
        Origin origin;
        int32_t readers = 0;
        int32_t owners = 0; // calls of the one thread that owns it now, which may be nested
        std::thread::id owner;
    };
    struct Shard {
        mutable std::mutex lock;
        std::unordered_map<const void*, Entry> entries;
        std::unordered_set<std::string> files; // names outlive the module that they lay in
    };
    static constexpr std::size_t shardCount = 64;

    Shard& ShardOf(const void* object);
    static Answer BeginUse(Entry& entry, Use use);

    std::array<Shard, shardCount> shards;
};

} // namespace vx3::testing

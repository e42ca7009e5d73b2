// The storage behind a container: entries in the order of their keys' first setting, and
// beyond a few entries an index from key to place.
//
// A value that is larger than a word lies in memory of its own: bytes, and a nested
// container, whose address therefore stays. Taking a key out of a large container is
// linear in its size; everything else is constant.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vx3/types.h"

namespace vx3::core {

class PackedBody;

struct ByteValue {
    int64_t length;

    const uint8_t* Bytes() const { return reinterpret_cast<const uint8_t*>(this + 1); }
    uint8_t* Bytes() { return reinterpret_cast<uint8_t*>(this + 1); }
};

union ContainerValue {
    int32_t int32;
    int64_t int64;
    double number;
    void* pointer;
    VX3String text;
    ByteValue* bytes;
    VX3Container* container; // on the heap; getContainer hands it out
};

struct ContainerEntry {
    int32_t key;
    int32_t type;
    ContainerValue value;
};

class ContainerBody
{
public:
    static ContainerBody* Make(); // none without memory
    static void Free(ContainerBody* body);
    ContainerBody(const ContainerBody&) = delete;
    ContainerBody& operator=(const ContainerBody&) = delete;

    ContainerEntry* Find(int32_t key);
    const ContainerEntry* At(int32_t place) const { return entries + place; }
    int32_t Count() const { return count; }
    // Takes over the value if there is memory for the entry; frees the old one.
    bool Set(int32_t key, int32_t type, ContainerValue value);
    bool Remove(int32_t key);
    void Clear();

    int32_t id = 0;
    // What it was read as, if somebody may still look at bytes in it.
    PackedBody* origin = nullptr;

private:
    ContainerBody() = default;
    ~ContainerBody() = default;

    int32_t PlaceOf(int32_t key) const;
    size_t SlotOf(int32_t key) const;
    bool ReserveEntry();
    bool Reindex(size_t newSize);

    ContainerEntry* entries = nullptr;
    int32_t count = 0;
    int32_t capacity = 0;
    int32_t* index = nullptr; // places + 1 by the hash of the key; 0 is free
    size_t indexSize = 0;     // a power of two, or 0
};

constexpr uintptr_t packedMark = 1; // of a container that is still as it was read (packedbody.h)

inline ContainerBody* PlainOf(const VX3Container& container)
{
    return (reinterpret_cast<uintptr_t>(container.opaque) & packedMark) != 0 ? nullptr : static_cast<ContainerBody*>(container.opaque);
}

// The body for changes, made if there is none; none without memory.
ContainerBody* DemandBody(VX3Container& container);

// Frees what a value holds.
void FreeValue(int32_t type, ContainerValue value);
// A copy of the bytes, with their length; none without memory.
ByteValue* MakeBytes(const void* bytes, int64_t length);
VX3Container* MakeNested();

void DestructContainer(VX3Container& container);
bool CopyContainer(VX3Container& to, const VX3Container& from);
bool ContainersEqual(const VX3Container& a, const VX3Container& b);

} // namespace vx3::core

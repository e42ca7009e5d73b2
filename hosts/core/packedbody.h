// A container as it was read: its image, which was checked, in one block of memory.
//
// Most of what is read is never changed, and much of it never looked at, so it answers from
// the image; a container that is changed gets a ContainerBody first. Many threads may read one
// at once: a nested container is made when it is first asked for, and hung in without a lock.
// Held by one VX3Container, like a ContainerBody, and told from that by a mark.
#pragma once

#include <atomic>

#include "containerbody.h"
#include "imagecursor.h"

namespace vx3::core {

// A nested container that was asked for. A ContainerBody takes the first member over.
struct PackedNested {
    VX3Container container;
    int32_t key;
    PackedNested* next;
};

class PackedBody
{
public:
    // Copies the entries. None without memory.
    static PackedBody* Make(int32_t id, int32_t count, std::span<const uint8_t> entries);
    static void Free(PackedBody* body);
    PackedBody(const PackedBody&) = delete;
    PackedBody& operator=(const PackedBody&) = delete;

    bool Find(int32_t key, ImageEntry& entry) const;
    bool At(int32_t place, ImageEntry& entry) const;
    int32_t Count() const { return count; }
    std::span<const uint8_t> Entries() const { return { reinterpret_cast<const uint8_t*>(this + 1), length }; }
    // Of an entry of this one; none without memory.
    VX3Container* Nested(const ImageEntry& entry) const;
    // The nested container of a key, if it was asked for.
    PackedNested* FindNested(int32_t key) const;
    // What it says, and its nested ones, is what stands in its image.
    bool IsUnchanged() const;
    void SetId(int32_t newId);
    void Clear();
    // The same as a body that can be changed, which takes the nested containers over or, from a
    // body that stays, copies them. None without memory.
    ContainerBody* MakePlain(bool takesNested) const;

    bool HasBytes() const; // that somebody may have been given

    int32_t Id() const { return id; }

private:
    PackedBody(int32_t ownId, int32_t entryCount, size_t entryBytes)
        : id(ownId)
        , count(entryCount)
        , length(static_cast<uint32_t>(entryBytes))
    {
    }
    ~PackedBody() = default;

    void FreeNested();
    bool FillPlain(ContainerBody& plain) const;
    bool HandNested(ContainerBody& plain, bool takesNested) const;

    int32_t id;
    int32_t count;
    uint32_t length;
    bool isChanged = false; // its id or that it was cleared
    mutable std::atomic<PackedNested*> nested{ nullptr };
};

constexpr int32_t mostPackedEntries = 32; // more are found too slowly one by one
constexpr size_t mostPackedBytes = 1 << 20;

inline const PackedBody* PackedOf(const VX3Container& container)
{
    const auto word = reinterpret_cast<uintptr_t>(container.opaque);
    return (word & packedMark) != 0 ? reinterpret_cast<const PackedBody*>(word - packedMark) : nullptr;
}

inline PackedBody* PackedOf(VX3Container& container)
{
    return const_cast<PackedBody*>(PackedOf(static_cast<const VX3Container&>(container)));
}

void SetPacked(VX3Container& container, PackedBody* body);

// The value of an entry that is no text, no container and no bytes.
ContainerValue PackedNumber(const ImageEntry& entry);

// Makes what a checked image says in an empty container. False without memory.
bool BuildContainer(std::span<const uint8_t> image, VX3Container& container);

} // namespace vx3::core

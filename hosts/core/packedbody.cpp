#include "packedbody.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

#include "bigendian.h"
#include "imagetext.h"
#include "livecounts.h"

namespace vx3::core {
namespace {

static_assert(offsetof(PackedNested, container) == 0, "a plain body frees it as a container");

bool PlainValue(const ImageEntry& entry, ContainerValue& value)
{
    value = { .int64 = 0 }; // all of its bytes
    switch (entry.type) {
    case VX3_VALUE_TEXT: return ReadImageText(entry.value, value.text);
    case VX3_VALUE_BYTES: value.bytes = MakeBytes(entry.value.data(), static_cast<int64_t>(entry.value.size())); return value.bytes;
    case VX3_VALUE_CONTAINER:
        value.container = MakeNested();
        if (value.container && BuildContainer(entry.value, *value.container))
            return true;
        FreeValue(entry.type, value);
        return false;
    default: value = PackedNumber(entry); return true;
    }
}

bool AddPlain(ContainerBody& plain, const ImageEntry& entry, ContainerValue value)
{
    if (plain.Set(entry.key, entry.type, value))
        return true;
    FreeValue(entry.type, value);
    return false;
}

bool BuildPlain(int32_t id, int32_t count, ImageCursor cursor, VX3Container& container)
{
    ContainerBody* plain = DemandBody(container);
    if (!plain)
        return false;
    plain->id = id;
    ImageEntry entry;
    ContainerValue value;
    for (int32_t i = 0; i < count; ++i)
        if (!cursor.TakeEntry(entry) || !PlainValue(entry, value) || !AddPlain(*plain, entry, value))
            return false;
    return true;
}

} // namespace

PackedBody* PackedBody::Make(int32_t id, int32_t count, std::span<const uint8_t> entries)
{
    void* memory = std::malloc(sizeof(PackedBody) + entries.size());
    if (!memory)
        return nullptr;
    liveCounters.containers.Add();
    auto* body = ::new (memory) PackedBody(id, count, entries.size());
    if (!entries.empty())
        std::memcpy(static_cast<void*>(body + 1), entries.data(), entries.size());
    return body;
}

void PackedBody::Free(PackedBody* body)
{
    body->FreeNested();
    std::free(body);
    liveCounters.containers.Subtract();
}

void PackedBody::FreeNested()
{
    for (PackedNested* each = nested.exchange(nullptr, std::memory_order_acquire); each;) {
        PackedNested* next = each->next;
        DestructContainer(each->container);
        std::free(each);
        each = next;
    }
}

bool PackedBody::Find(int32_t key, ImageEntry& entry) const
{
    ImageCursor cursor(Entries());
    for (int32_t i = 0; i < count && cursor.TakeEntry(entry); ++i)
        if (entry.key == key)
            return true;
    return false;
}

bool PackedBody::At(int32_t place, ImageEntry& entry) const
{
    ImageCursor cursor(Entries());
    for (int32_t i = 0; i <= place && i < count && cursor.TakeEntry(entry); ++i)
        if (i == place)
            return true;
    return false;
}

PackedNested* PackedBody::FindNested(int32_t key) const
{
    PackedNested* each = nested.load(std::memory_order_acquire);
    while (each && each->key != key)
        each = each->next;
    return each;
}

// Whoever comes second finds what the first one made.
VX3Container* PackedBody::Nested(const ImageEntry& entry) const
{
    if (PackedNested* found = FindNested(entry.key))
        return &found->container;
    auto* made = static_cast<PackedNested*>(std::malloc(sizeof(PackedNested)));
    if (!made)
        return nullptr;
    *made = { {}, entry.key, nested.load(std::memory_order_acquire) };
    PackedNested* rival = nullptr;
    const bool isBuilt = BuildContainer(entry.value, made->container);
    while (isBuilt && !(rival = FindNested(entry.key)))
        if (nested.compare_exchange_weak(made->next, made, std::memory_order_acq_rel))
            return &made->container;
    DestructContainer(made->container);
    std::free(made);
    return rival ? &rival->container : nullptr;
}

bool PackedBody::IsUnchanged() const
{
    for (const PackedNested* each = nested.load(std::memory_order_acquire); each; each = each->next) {
        const PackedBody* packed = PackedOf(each->container);
        if (!packed || packed->isChanged || !packed->IsUnchanged())
            return false;
    }
    return true;
}

bool PackedBody::HasBytes() const
{
    ImageCursor cursor(Entries());
    ImageEntry entry;
    while (cursor.TakeEntry(entry))
        if (entry.type == VX3_VALUE_BYTES)
            return true;
    return false;
}

void PackedBody::SetId(int32_t newId)
{
    isChanged = isChanged || newId != id;
    id = newId;
}

void PackedBody::Clear()
{
    FreeNested();
    isChanged = true;
    count = 0;
    length = 0;
}

ContainerBody* PackedBody::MakePlain(bool takesNested) const
{
    ContainerBody* plain = ContainerBody::Make();
    if (!plain)
        return nullptr;
    plain->id = id;
    if (FillPlain(*plain) && HandNested(*plain, takesNested))
        return plain;
    ContainerBody::Free(plain);
    return nullptr;
}

// All but the nested containers that there are already.
bool PackedBody::FillPlain(ContainerBody& plain) const
{
    ImageCursor cursor(Entries());
    ImageEntry entry;
    for (int32_t i = 0; i < count && cursor.TakeEntry(entry); ++i) {
        ContainerValue value = { .container = nullptr };
        const bool isThere = entry.type == VX3_VALUE_CONTAINER && FindNested(entry.key);
        if ((!isThere && !PlainValue(entry, value)) || !AddPlain(plain, entry, value))
            return false;
    }
    return true;
}

// Last, since it cannot be taken back; taking needs no memory.
bool PackedBody::HandNested(ContainerBody& plain, bool takesNested) const
{
    for (PackedNested* each = nested.load(std::memory_order_acquire); each;) {
        PackedNested* next = each->next;
        ContainerEntry* entry = plain.Find(each->key);
        const bool isFilled = entry->value.container; // another reader asked for it since
        if (isFilled && !takesNested) {
            each = next;
            continue;
        }
        entry->value.container = takesNested ? &each->container : MakeNested();
        if (!entry->value.container || (!takesNested && !CopyContainer(*entry->value.container, each->container)))
            return false;
        each = next;
    }
    if (takesNested)
        nested.store(nullptr, std::memory_order_release);
    return true;
}

void SetPacked(VX3Container& container, PackedBody* body)
{
    container.opaque = reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(body) | packedMark);
}

ContainerValue PackedNumber(const ImageEntry& entry)
{
    ContainerValue value = { .int64 = 0 };
    ImageCursor cursor(entry.value);
    switch (entry.type) {
    case VX3_VALUE_INT32: (void)cursor.TakeSigned(value.int32); break;
    case VX3_VALUE_INT64: (void)cursor.TakeSigned(value.int64); break;
    case VX3_VALUE_FLOAT: value.number = std::bit_cast<double>(LoadBig<uint64_t>(entry.value.data())); break;
    default: value.int32 = entry.value[0];
    }
    return value;
}

bool BuildContainer(std::span<const uint8_t> image, VX3Container& container)
{
    ImageCursor cursor(image);
    int32_t id = 0;
    uint64_t count = 0;
    (void)(cursor.TakeSigned(id) && cursor.TakeNumber(count));
    if (id == 0 && count == 0)
        return true;
    if (count > mostPackedEntries || image.size() > mostPackedBytes)
        return BuildPlain(id, static_cast<int32_t>(count), cursor, container);
    PackedBody* body = PackedBody::Make(id, static_cast<int32_t>(count), cursor.Rest());
    if (body)
        SetPacked(container, body);
    return body;
}

} // namespace vx3::core

#include "containerbody.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "livecounts.h"
#include "packedbody.h"
#include "textbuffer.h"
#include "textvalue.h"
#include "vx3/container.h"

namespace vx3::core {
namespace {

constexpr int32_t firstCapacity = 4;
constexpr int32_t linearCount = 16; // up to here a look at each key beats an index
constexpr size_t slotsPerEntry = 2; // the index is at most half full
constexpr int32_t maximalCount = INT32_MAX / 4;

bool CopyValue(const ContainerEntry& from, ContainerValue& to)
{
    to = from.value;
    switch (from.type) {
    case VX3_VALUE_TEXT: to.text.opaque = ShareBuffer(from.value.text); return true;
    case VX3_VALUE_BYTES: to.bytes = MakeBytes(from.value.bytes->Bytes(), from.value.bytes->length); return to.bytes;
    case VX3_VALUE_CONTAINER:
        to.container = MakeNested();
        if (to.container && CopyContainer(*to.container, *from.value.container))
            return true;
        FreeValue(VX3_VALUE_CONTAINER, to);
        return false;
    default: return true;
    }
}

bool CopyEntries(ContainerBody& to, const ContainerBody& from)
{
    to.id = from.id;
    for (int32_t place = 0; place < from.Count(); ++place) {
        const ContainerEntry& entry = *from.At(place);
        ContainerValue value;
        if (!CopyValue(entry, value))
            return false;
        if (!to.Set(entry.key, entry.type, value)) {
            FreeValue(entry.type, value);
            return false;
        }
    }
    return true;
}

bool CopyPlain(VX3Container& to, const ContainerBody& from)
{
    ContainerBody* made = DemandBody(to);
    return made && CopyEntries(*made, from);
}

bool CopyPacked(VX3Container& to, const PackedBody& from)
{
    if (!from.IsUnchanged()) {
        to.opaque = from.MakePlain(false);
        return to.opaque;
    }
    PackedBody* made = PackedBody::Make(from.Id(), from.Count(), from.Entries());
    if (made)
        SetPacked(to, made);
    return made;
}

bool BytesEqual(const ByteValue& a, const ByteValue& b)
{
    return a.length == b.length && std::memcmp(a.Bytes(), b.Bytes(), static_cast<size_t>(a.length)) == 0;
}

// Numbers with a point are compared by their bits, so that a copy is equal to what it was made of.
bool ValuesEqual(int32_t type, const ContainerValue& a, const ContainerValue& b)
{
    switch (type) {
    case VX3_VALUE_INT32:
    case VX3_VALUE_BOOL: return a.int32 == b.int32;
    case VX3_VALUE_INT64: return a.int64 == b.int64;
    case VX3_VALUE_FLOAT: return std::memcmp(&a.number, &b.number, sizeof(double)) == 0;
    case VX3_VALUE_POINTER: return a.pointer == b.pointer;
    case VX3_VALUE_TEXT: return SpansEqual(SpanOf(a.text), SpanOf(b.text));
    case VX3_VALUE_BYTES: return BytesEqual(*a.bytes, *b.bytes);
    case VX3_VALUE_CONTAINER: return ContainersEqual(*a.container, *b.container);
    default: return false;
    }
}

bool EntriesEqual(const ContainerEntry& a, const ContainerEntry& b)
{
    return a.key == b.key && a.type == b.type && ValuesEqual(a.type, a.value, b.value);
}

// None is an empty one with the id 0.
bool BodiesEqual(const ContainerBody* a, const ContainerBody* b)
{
    const int32_t count = a ? a->Count() : 0;
    if (count != (b ? b->Count() : 0) || (a ? a->id : 0) != (b ? b->id : 0))
        return false;
    for (int32_t place = 0; place < count; ++place)
        if (!EntriesEqual(*a->At(place), *b->At(place)))
            return false;
    return true;
}

} // namespace

ContainerBody* ContainerBody::Make()
{
    void* memory = std::malloc(sizeof(ContainerBody));
    if (!memory)
        return nullptr;
    liveCounters.containers.Add();
    return ::new (memory) ContainerBody;
}

void ContainerBody::Free(ContainerBody* body)
{
    if (!body)
        return;
    body->Clear();
    if (body->origin)
        PackedBody::Free(body->origin);
    std::free(body);
    liveCounters.containers.Subtract();
}

ContainerEntry* ContainerBody::Find(int32_t key)
{
    const int32_t place = PlaceOf(key);
    return place < 0 ? nullptr : entries + place;
}

bool ContainerBody::Set(int32_t key, int32_t type, ContainerValue value)
{
    if (ContainerEntry* present = Find(key)) {
        const ContainerEntry old = *present;
        *present = { key, type, value };
        FreeValue(old.type, old.value);
        return true;
    }
    if (!ReserveEntry())
        return false;
    entries[count] = { key, type, value };
    ++count;
    if (index)
        index[SlotOf(key)] = count;
    return true;
}

bool ContainerBody::Remove(int32_t key)
{
    const int32_t place = PlaceOf(key);
    if (place < 0)
        return false;
    const ContainerEntry removed = entries[place];
    std::memmove(entries + place, entries + place + 1, static_cast<size_t>(count - place - 1) * sizeof(ContainerEntry));
    --count;
    if (index)
        Reindex(indexSize);
    FreeValue(removed.type, removed.value);
    return true;
}

void ContainerBody::Clear()
{
    for (int32_t place = 0; place < count; ++place)
        FreeValue(entries[place].type, entries[place].value);
    std::free(entries);
    std::free(index);
    entries = nullptr;
    index = nullptr;
    count = 0;
    capacity = 0;
    indexSize = 0;
}

int32_t ContainerBody::PlaceOf(int32_t key) const
{
    if (index)
        return index[SlotOf(key)] - 1;
    for (int32_t place = 0; place < count; ++place) {
        if (entries[place].key == key)
            return place;
    }
    return -1;
}

// The slot of the key, or the free one where it belongs.
size_t ContainerBody::SlotOf(int32_t key) const
{
    constexpr uint64_t multiplier = 0x9E3779B97F4A7C15u;
    constexpr int upperHalf = 32;
    size_t slot = (static_cast<uint32_t>(key) * multiplier) >> upperHalf & (indexSize - 1);
    while (index[slot] != 0 && entries[index[slot] - 1].key != key)
        slot = (slot + 1) & (indexSize - 1);
    return slot;
}

// Room for one more, in the entries and in the index.
bool ContainerBody::ReserveEntry()
{
    if (count >= maximalCount)
        return false;
    if (count == capacity) {
        const int32_t grown = std::max(firstCapacity, capacity * 2);
        void* larger = std::realloc(entries, static_cast<size_t>(grown) * sizeof(ContainerEntry));
        if (!larger)
            return false;
        entries = static_cast<ContainerEntry*>(larger);
        capacity = grown;
    }
    if (count < linearCount || (static_cast<size_t>(count) + 1) * slotsPerEntry <= indexSize)
        return true;
    return Reindex(std::max(indexSize * 2, linearCount * slotsPerEntry * 2));
}

// Fills the index anew, which is a new one if the size differs.
bool ContainerBody::Reindex(size_t newSize)
{
    if (newSize != indexSize) {
        auto* larger = static_cast<int32_t*>(std::malloc(newSize * sizeof(int32_t)));
        if (!larger)
            return false;
        std::free(index);
        index = larger;
        indexSize = newSize;
    }
    std::memset(index, 0, indexSize * sizeof(int32_t));
    for (int32_t place = 0; place < count; ++place)
        index[SlotOf(entries[place].key)] = place + 1;
    return true;
}

ContainerBody* DemandBody(VX3Container& container)
{
    PackedBody* packed = PackedOf(container);
    if (!packed && container.opaque)
        return PlainOf(container);
    ContainerBody* made = packed ? packed->MakePlain(true) : ContainerBody::Make();
    if (!made)
        return nullptr;
    container.opaque = made;
    if (packed && packed->HasBytes())
        made->origin = packed;
    else if (packed)
        PackedBody::Free(packed);
    return made;
}

void FreeValue(int32_t type, ContainerValue value)
{
    if (type == VX3_VALUE_TEXT)
        ReplaceBuffer(value.text, nullptr);
    if (type == VX3_VALUE_BYTES)
        std::free(value.bytes);
    if (type != VX3_VALUE_CONTAINER || !value.container)
        return;
    DestructContainer(*value.container);
    std::free(value.container);
}

ByteValue* MakeBytes(const void* bytes, int64_t length)
{
    if (length < 0 || length > INT64_MAX / 2)
        return nullptr;
    auto* value = static_cast<ByteValue*>(std::malloc(sizeof(ByteValue) + static_cast<size_t>(length)));
    if (!value)
        return nullptr;
    value->length = length;
    if (length > 0)
        std::memcpy(value->Bytes(), bytes, static_cast<size_t>(length));
    return value;
}

VX3Container* MakeNested()
{
    return static_cast<VX3Container*>(std::calloc(1, sizeof(VX3Container)));
}

void DestructContainer(VX3Container& container)
{
    PackedBody* packed = PackedOf(container);
    ContainerBody* plain = PlainOf(container);
    container.opaque = nullptr;
    ContainerBody::Free(plain);
    if (packed)
        PackedBody::Free(packed);
}

bool CopyContainer(VX3Container& to, const VX3Container& from)
{
    if (to.opaque == from.opaque)
        return true;
    VX3Container made = {};
    const PackedBody* packed = PackedOf(from);
    if (from.opaque && !(packed ? CopyPacked(made, *packed) : CopyPlain(made, *PlainOf(from)))) {
        DestructContainer(made);
        return false;
    }
    // `from` may be nested in `to`, so what was there goes last.
    std::swap(to.opaque, made.opaque);
    DestructContainer(made);
    return true;
}

// Compared by their entries, so one that is packed is opened first.
bool ContainersEqual(const VX3Container& a, const VX3Container& b)
{
    VX3Container opened = {};
    const bool isPacked = PackedOf(a) || PackedOf(b);
    const VX3Container& packed = PackedOf(a) ? a : b;
    if (!isPacked)
        return BodiesEqual(PlainOf(a), PlainOf(b));
    const bool isEqual = CopyContainer(opened, packed) && DemandBody(opened) && ContainersEqual(opened, PackedOf(a) ? b : a);
    DestructContainer(opened);
    return isEqual;
}

} // namespace vx3::core

#include "imagetext.h"
#include "packedbody.h"
#include "services.h"
#include "textbuffer.h"

namespace vx3::core {
namespace {

// The entry of the key if it holds this type.
const ContainerEntry* FindTyped(const VX3Container* container, int32_t key, int32_t type)
{
    ContainerBody* body = PlainOf(*container);
    const ContainerEntry* entry = body ? body->Find(key) : nullptr;
    return entry && entry->type == type ? entry : nullptr;
}

// The same in one that is still as it was read.
bool FindPacked(const VX3Container* container, int32_t key, int32_t type, ImageEntry& entry)
{
    const PackedBody* body = PackedOf(*container);
    return body && body->Find(key, entry) && entry.type == type;
}

bool FindNumber(const VX3Container* container, int32_t key, int32_t type, ContainerValue& value)
{
    if (const ContainerEntry* entry = FindTyped(container, key, type)) {
        value = entry->value;
        return true;
    }
    ImageEntry packed;
    if (!FindPacked(container, key, type, packed))
        return false;
    value = PackedNumber(packed);
    return true;
}

// Takes the value over, or frees it.
VX3Bool SetValue(VX3Container* container, int32_t key, int32_t type, ContainerValue value)
{
    ContainerBody* body = DemandBody(*container);
    if (body && body->Set(key, type, value))
        return 1;
    FreeValue(type, value);
    return 0;
}

void Destruct(VX3Container* container)
{
    DestructContainer(*container);
}

VX3Bool Copy(VX3Container* to, const VX3Container* from)
{
    return CopyContainer(*to, *from);
}

int32_t GetId(const VX3Container* container)
{
    const PackedBody* packed = PackedOf(*container);
    const ContainerBody* body = PlainOf(*container);
    return packed ? packed->Id() : body ? body->id : 0;
}

VX3Bool SetId(VX3Container* container, int32_t id)
{
    if (PackedBody* packed = PackedOf(*container)) {
        packed->SetId(id);
        return 1;
    }
    ContainerBody* body = id == 0 ? PlainOf(*container) : DemandBody(*container);
    if (body)
        body->id = id;
    return body || id == 0;
}

int32_t GetInt32(const VX3Container* container, int32_t key, int32_t fallback)
{
    ContainerValue value;
    return FindNumber(container, key, VX3_VALUE_INT32, value) ? value.int32 : fallback;
}

int64_t GetInt64(const VX3Container* container, int32_t key, int64_t fallback)
{
    ContainerValue value;
    return FindNumber(container, key, VX3_VALUE_INT64, value) ? value.int64 : fallback;
}

double GetFloat(const VX3Container* container, int32_t key, double fallback)
{
    ContainerValue value;
    return FindNumber(container, key, VX3_VALUE_FLOAT, value) ? value.number : fallback;
}

VX3Bool GetBool(const VX3Container* container, int32_t key, VX3Bool fallback)
{
    ContainerValue value;
    return FindNumber(container, key, VX3_VALUE_BOOL, value) ? value.int32 : fallback;
}

void* GetPointer(const VX3Container* container, int32_t key, void* fallback)
{
    const ContainerEntry* entry = FindTyped(container, key, VX3_VALUE_POINTER);
    return entry ? entry->value.pointer : fallback;
}

VX3Bool GetText(const VX3Container* container, int32_t key, VX3String* text)
{
    if (const ContainerEntry* entry = FindTyped(container, key, VX3_VALUE_TEXT)) {
        ReplaceBuffer(*text, ShareBuffer(entry->value.text));
        return 1;
    }
    ImageEntry packed;
    return FindPacked(container, key, VX3_VALUE_TEXT, packed) && ReadImageText(packed.value, *text);
}

const void* GetBytes(const VX3Container* container, int32_t key, int64_t* length)
{
    const ContainerEntry* entry = FindTyped(container, key, VX3_VALUE_BYTES);
    ImageEntry packed;
    if (!entry && !FindPacked(container, key, VX3_VALUE_BYTES, packed))
        return nullptr;
    if (length)
        *length = entry ? entry->value.bytes->length : static_cast<int64_t>(packed.value.size());
    return entry ? entry->value.bytes->Bytes() : packed.value.data();
}

VX3Container* GetContainer(const VX3Container* container, int32_t key)
{
    if (const ContainerEntry* entry = FindTyped(container, key, VX3_VALUE_CONTAINER))
        return entry->value.container;
    ImageEntry packed;
    return FindPacked(container, key, VX3_VALUE_CONTAINER, packed) ? PackedOf(*container)->Nested(packed) : nullptr;
}

VX3Bool SetInt32(VX3Container* container, int32_t key, int32_t value)
{
    return SetValue(container, key, VX3_VALUE_INT32, { .int32 = value });
}

VX3Bool SetInt64(VX3Container* container, int32_t key, int64_t value)
{
    return SetValue(container, key, VX3_VALUE_INT64, { .int64 = value });
}

VX3Bool SetFloat(VX3Container* container, int32_t key, double value)
{
    return SetValue(container, key, VX3_VALUE_FLOAT, { .number = value });
}

VX3Bool SetBool(VX3Container* container, int32_t key, VX3Bool value)
{
    return SetValue(container, key, VX3_VALUE_BOOL, { .int32 = value ? 1 : 0 });
}

VX3Bool SetPointer(VX3Container* container, int32_t key, void* value)
{
    return SetValue(container, key, VX3_VALUE_POINTER, { .pointer = value });
}

VX3Bool SetText(VX3Container* container, int32_t key, const VX3String* value)
{
    return SetValue(container, key, VX3_VALUE_TEXT, { .text = { ShareBuffer(*value) } });
}

VX3Bool SetBytes(VX3Container* container, int32_t key, const void* bytes, int64_t length)
{
    ByteValue* value = MakeBytes(bytes, length);
    return value && SetValue(container, key, VX3_VALUE_BYTES, { .bytes = value });
}

VX3Bool SetContainer(VX3Container* container, int32_t key, const VX3Container* value)
{
    VX3Container* nested = MakeNested();
    if (!nested)
        return 0;
    if (value && !CopyContainer(*nested, *value)) {
        FreeValue(VX3_VALUE_CONTAINER, { .container = nested });
        return 0;
    }
    return SetValue(container, key, VX3_VALUE_CONTAINER, { .container = nested });
}

int32_t TypeOf(const VX3Container* container, int32_t key)
{
    ImageEntry entry;
    if (const PackedBody* packed = PackedOf(*container))
        return packed->Find(key, entry) ? entry.type : static_cast<int32_t>(VX3_VALUE_NONE);
    ContainerBody* body = PlainOf(*container);
    const ContainerEntry* found = body ? body->Find(key) : nullptr;
    return found ? found->type : static_cast<int32_t>(VX3_VALUE_NONE);
}

VX3Bool Remove(VX3Container* container, int32_t key)
{
    if (TypeOf(container, key) == VX3_VALUE_NONE)
        return 0;
    ContainerBody* body = DemandBody(*container);
    return body && body->Remove(key);
}

void Clear(VX3Container* container)
{
    if (PackedBody* packed = PackedOf(*container))
        packed->Clear();
    else if (ContainerBody* body = PlainOf(*container))
        body->Clear();
}

int32_t Count(const VX3Container* container)
{
    const PackedBody* packed = PackedOf(*container);
    const ContainerBody* body = PlainOf(*container);
    return packed ? packed->Count() : body ? body->Count() : 0;
}

VX3Bool EntryAt(const VX3Container* container, int32_t place, int32_t* key, int32_t* type)
{
    if (place < 0 || place >= Count(container))
        return 0;
    ImageEntry packed;
    const bool isPacked = PackedOf(*container) && PackedOf(*container)->At(place, packed);
    const ContainerEntry* entry = isPacked ? nullptr : PlainOf(*container)->At(place);
    if (key)
        *key = entry ? entry->key : packed.key;
    if (type)
        *type = entry ? entry->type : packed.type;
    return 1;
}

VX3Bool Equals(const VX3Container* a, const VX3Container* b)
{
    return ContainersEqual(*a, *b);
}

constexpr VX3ContainerServices containerServices = {
    Destruct, Copy,         GetId,        SetId,    GetInt32, GetInt64, GetFloat, GetBool,    GetPointer,
    GetText,  GetBytes,     GetContainer, SetInt32, SetInt64, SetFloat, SetBool,  SetPointer, SetText,
    SetBytes, SetContainer, TypeOf,       Remove,   Clear,    Count,    EntryAt,  Equals,
};

} // namespace

const VX3ContainerServices* ContainerServices()
{
    return &containerServices;
}

} // namespace vx3::core

// The first byte tells how many of the last ones are changes; what is between is an image.
#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "core/containerimage.h"
#include "core/services.h"
#include "core/values.h"
#include "fuzz/expect.h"
#include "vx3/container.h"

namespace {

using vx3::fuzz::Expect;
using Bytes = std::span<const uint8_t>;

const VX3ContainerServices& container = *vx3::core::ContainerServices();
constexpr size_t changeBytes = 3;

struct Held {
    ~Held() { container.destruct(&value); }
    VX3Container value = {};
};

std::vector<uint8_t> ImageOf(const VX3Container& value)
{
    std::vector<uint8_t> image;
    Expect(vx3::core::EncodeContainer(value, image), "what was read can be written");
    return image;
}

// Into one that has nothing left of how it was read.
void MakePlain(VX3Container& value)
{
    constexpr int32_t unused = 0x5EED5EED;
    if (container.typeOf(&value, unused) != VX3_VALUE_NONE)
        return;
    const int32_t id = container.getId(&value);
    Expect(container.setInt32(&value, unused, 1) && container.remove(&value, unused), "a change that is taken back");
    Expect(container.getId(&value) == id, "the id stays");
    int32_t key = 0, type = 0;
    for (int32_t place = 0; container.entryAt(&value, place, &key, &type); ++place)
        if (type == VX3_VALUE_CONTAINER)
            MakePlain(*container.getContainer(&value, key));
}

// A key of the container, or another one.
int32_t KeyAt(const VX3Container& value, uint8_t number)
{
    int32_t key = number, type = 0;
    if (const int32_t count = container.count(&value); count > 0)
        container.entryAt(&value, number % (count + 1), &key, &type);
    return key;
}

void Change(VX3Container& value, Bytes change)
{
    const int32_t key = KeyAt(value, change[1]);
    if (VX3Container* nested = container.getContainer(&value, key); nested && change[0] >= 128)
        return Change(*nested, change);
    switch (change[0] % 7) {
    case 0: container.setInt32(&value, key, change[2]); break;
    case 1: container.setText(&value, key, vx3::core::Text(std::string(change[2] % 5, 'x')).Get()); break;
    case 2: container.setBytes(&value, key, change.data(), change[2] % 3); break;
    case 3: container.remove(&value, key); break;
    case 4: container.setContainer(&value, key, nullptr); break;
    case 5: container.setId(&value, change[2]); break;
    default: container.clear(&value); break;
    }
}

void CheckChanges(const VX3Container& read, Bytes changes)
{
    Held plain, changed;
    Expect(container.copy(&plain.value, &read) && container.copy(&changed.value, &read), "copies");
    MakePlain(plain.value);
    Expect(container.equals(&plain.value, &changed.value), "one that was opened is the same");
    for (; changes.size() >= changeBytes; changes = changes.subspan(changeBytes)) {
        Change(plain.value, changes.first(changeBytes));
        Change(changed.value, changes.first(changeBytes));
    }
    Expect(container.equals(&plain.value, &changed.value), "the same changes lead to the same");
    Expect(ImageOf(plain.value) == ImageOf(changed.value), "and to the same image");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const Bytes all(data + 1, size - 1);
    const size_t changed = std::min<size_t>(data[0] % 32 * changeBytes, all.size());
    const Bytes image = all.first(all.size() - changed);
    Held read;
    if (!vx3::core::DecodeContainer(image, read.value))
        return 0;
    Expect(std::ranges::equal(ImageOf(read.value), image), "an image that is accepted is the one of its container");
    CheckChanges(read.value, all.last(changed));
    Expect(std::ranges::equal(ImageOf(read.value), image), "copies are copies");
    return 0;
}

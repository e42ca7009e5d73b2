#include "librarycontainer.h"

#include <algorithm>
#include <iterator>

#include "core/bigendian.h"
#include "core/containerimage.h"
#include "core/services.h"

namespace vx3::console {

namespace {

constexpr uint8_t payloadHead[] = { 'V', 'X', '3', 'd', 0, 0, 0, 2, 'b', 'r', 'o', 'w' };
constexpr size_t imageOffset = sizeof payloadHead + sizeof(uint64_t);

const VX3ContainerServices& Services()
{
    return *core::ContainerServices();
}

} // namespace

int32_t ContainerView::Id() const
{
    return container ? Services().getId(container) : 0;
}

int32_t ContainerView::Count() const
{
    return container ? Services().count(container) : 0;
}

int32_t ContainerView::KeyAt(int32_t place) const
{
    int32_t key = 0, type = 0;
    if (container)
        Services().entryAt(container, place, &key, &type);
    return key;
}

int32_t ContainerView::TypeOf(int32_t key) const
{
    return container ? Services().typeOf(container, key) : VX3_VALUE_NONE;
}

int32_t ContainerView::Int32(int32_t key, int32_t fallback) const
{
    return container ? Services().getInt32(container, key, fallback) : fallback;
}

int64_t ContainerView::Int64(int32_t key, int64_t fallback) const
{
    return container ? Services().getInt64(container, key, fallback) : fallback;
}

double ContainerView::Float(int32_t key) const
{
    return container ? Services().getFloat(container, key, 0) : 0;
}

bool ContainerView::Truth(int32_t key) const
{
    return container && Services().getBool(container, key, 0);
}

core::Text ContainerView::Text(int32_t key) const
{
    core::Text text;
    if (container)
        Services().getText(container, key, text.Get());
    return text;
}

int64_t ContainerView::ByteCount(int32_t key) const
{
    int64_t length = 0;
    if (container)
        Services().getBytes(container, key, &length);
    return length;
}

ContainerView ContainerView::Nested(int32_t key) const
{
    return ContainerView(container ? Services().getContainer(container, key) : nullptr);
}

LibraryContainer::~LibraryContainer()
{
    Services().destruct(&value);
}

PayloadState LibraryContainer::Decode(std::span<const uint8_t> payload)
{
    if (payload.size() < imageOffset || !std::equal(std::begin(payloadHead), std::end(payloadHead), payload.begin()))
        return PayloadState::Unreadable;
    uint64_t length = core::LoadBig<uint64_t>(payload.data() + sizeof payloadHead);
    std::span<const uint8_t> image = payload.subspan(imageOffset);
    if (length > image.size() || !core::DecodeContainer(image.first(static_cast<size_t>(length)), value))
        return PayloadState::Unreadable;
    return length < image.size() ? PayloadState::Longer : PayloadState::Sound;
}

} // namespace vx3::console

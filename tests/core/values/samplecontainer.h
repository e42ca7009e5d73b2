// An owner of a container value, and one that holds every type.
#pragma once

#include <utility>

#include "core/services.h"
#include "core/values.h"

namespace vx3::core {

class Container
{
public:
    Container() = default;
    Container(const Container& other) { ContainerServices()->copy(&value, &other.value); }
    Container(Container&& other) noexcept
        : value(std::exchange(other.value, {}))
    {
    }
    Container& operator=(Container other) noexcept
    {
        std::swap(value, other.value);
        return *this;
    }
    ~Container() { ContainerServices()->destruct(&value); }

    VX3Container* Get() { return &value; }
    const VX3Container* Get() const { return &value; }

private:
    VX3Container value = {};
};

struct SampleKey {
    enum { Int32 = 1, Text = 2, Bool = -3, Float = 4, Nested = 5, Int64 = 6, Bytes = 7, EmptyText = 8, EmptyNested = 9, Pointer = 10 };
};

inline Container SampleContainer(bool withPointer = true)
{
    const VX3ContainerServices& services = *ContainerServices();
    Container sample;
    VX3Container* value = sample.Get();
    services.setId(value, 1000);
    services.setInt32(value, SampleKey::Int32, -2);
    services.setText(value, SampleKey::Text, Text(u"a\u00E9\xDCFF").Get());
    services.setBool(value, SampleKey::Bool, 1);
    services.setFloat(value, SampleKey::Float, 0.5);
    Container nested;
    services.setId(nested.Get(), -7);
    services.setBytes(nested.Get(), 1, "hi", 2);
    services.setContainer(nested.Get(), 2, nullptr);
    services.setContainer(value, SampleKey::Nested, nested.Get());
    services.setInt64(value, SampleKey::Int64, int64_t(1) << 40);
    services.setBytes(value, SampleKey::Bytes, "bytes", 5);
    services.setText(value, SampleKey::EmptyText, Text().Get());
    services.setContainer(value, SampleKey::EmptyNested, nullptr);
    if (withPointer)
        services.setPointer(value, SampleKey::Pointer, &sample);
    return sample;
}

} // namespace vx3::core

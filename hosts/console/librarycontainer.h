// A container as the payload of a chunk, and a view of its values.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/values.h"
#include "vx3/container.h"
#include "vx3/types.h"

namespace vx3::console {

// Borrowed; of none, every value is absent.
class ContainerView
{
public:
    ContainerView() = default;
    explicit ContainerView(const VX3Container* viewed)
        : container(viewed)
    {
    }

    explicit operator bool() const { return container != nullptr; }
    int32_t Id() const;
    int32_t Count() const;
    int32_t KeyAt(int32_t place) const;
    int32_t TypeOf(int32_t key) const; // a VX3_VALUE
    int32_t Int32(int32_t key, int32_t fallback = 0) const;
    int64_t Int64(int32_t key, int64_t fallback = 0) const;
    double Float(int32_t key) const;
    bool Truth(int32_t key) const;
    core::Text Text(int32_t key) const;
    int64_t ByteCount(int32_t key) const;
    ContainerView Nested(int32_t key) const;

private:
    const VX3Container* container = nullptr;
};

enum class PayloadState {
    Sound,
    Longer, // bytes stand behind the container; a reader does not care
    Unreadable
};

class LibraryContainer
{
public:
    LibraryContainer() = default;
    ~LibraryContainer();
    LibraryContainer(const LibraryContainer&) = delete;
    LibraryContainer& operator=(const LibraryContainer&) = delete;

    PayloadState Decode(std::span<const uint8_t> payload);
    ContainerView View() const { return ContainerView(&value); }

private:
    VX3Container value = {};
};

} // namespace vx3::console

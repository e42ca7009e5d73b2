// Memory of the module. All of it comes from the host and names its place in the
// source; every caller has a branch for none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "services/host.h"

namespace browser {

struct SourcePlace {
    const char* file;
    int32_t line;

    static constexpr SourcePlace Here(const char* file = __builtin_FILE(), int32_t line = __builtin_LINE()) { return { file, line }; }
};

enum class Clear : VX3Bool { No = 0, Yes = 1 };

[[nodiscard]] inline void* HostAlloc(size_t size, SourcePlace place, Clear clear = Clear::No)
{
    return host->memory->alloc(size, place.line, place.file, static_cast<VX3Bool>(clear));
}

inline void HostFree(void* block)
{
    host->memory->free(block);
}

// auto* node = Make<DirectoryNode>()(path, flags);    none if memory is exhausted
template <class T>
class Make
{
public:
    explicit Make(SourcePlace callSite = SourcePlace::Here())
        : place(callSite)
    {
    }

    template <class... Args>
    [[nodiscard]] T* operator()(Args&&... args) const
    {
        void* memory = HostAlloc(sizeof(T), place);
        return memory ? ::new (memory) T(std::forward<Args>(args)...) : nullptr;
    }

private:
    SourcePlace place;
};

// The other end of Make for classes without an operator delete of their own.
template <class T>
void Destroy(T* object)
{
    if (!object)
        return;
    object->~T();
    HostFree(object);
}

} // namespace browser

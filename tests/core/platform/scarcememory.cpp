#include "scarcememory.h"

#include <climits>
#include <cstdlib>
#include <new>

namespace {

thread_local int successesLeft = INT_MAX;
thread_local bool isLimited = false;

} // namespace

extern "C" void* __real_malloc(size_t size);
extern "C" void* __wrap_malloc(size_t size)
{
    if (isLimited && --successesLeft == -1)
        return nullptr;
    return __real_malloc(size);
}

void* operator new(size_t size)
{
    if (void* memory = __wrap_malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void* operator new(size_t size, const std::nothrow_t&) noexcept
{
    return __wrap_malloc(size ? size : 1);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, size_t) noexcept
{
    std::free(memory);
}

namespace vx3::core {

ScarceMemory::ScarceMemory(int successes)
{
    successesLeft = successes;
    isLimited = true;
}

ScarceMemory::~ScarceMemory()
{
    isLimited = false;
}

bool ScarceMemory::HasFailed() const
{
    return successesLeft < 0;
}

} // namespace vx3::core

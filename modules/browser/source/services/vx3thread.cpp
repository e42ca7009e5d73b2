#include "services/vx3thread.h"

namespace browser {

namespace {

VX3Thread* Self(void* object)
{
    return static_cast<VX3Thread*>(object);
}

} // namespace

// The object belongs to its maker and not to the host, so no destructor is handed over.
const VX3ThreadTable VX3Thread::table = {
    nullptr,
    [](void* object) { return VX3Bool(Self(object)->TestBreak()); },
    [](void* object) { Self(object)->Main(); },
    [](void* object) { return static_cast<const VX3Thread*>(Self(object))->GetThreadName(); },
};

bool VX3Thread::Start(int32_t priority)
{
    if (!handle)
        handle = host->thread->create(this, &table);
    return handle && host->thread->start(handle, true, priority);
}

void VX3Thread::Stop()
{
    host->thread->free(handle);
    handle = nullptr;
}

} // namespace browser

// A thread of the host: a subclass supplies the body and its name.
//
// Made, started, ended and waited for by its owner; the body polls ShouldStop. The
// destructor of a subclass calls Stop first, so that the body never outlives it.
#pragma once

#include "services/allocation.h"

namespace browser {

class VX3Thread
{
public:
    VX3Thread() = default;
    virtual ~VX3Thread() = default;
    static void operator delete(void* block) { HostFree(block); }
    VX3Thread(const VX3Thread&) = delete;
    VX3Thread& operator=(const VX3Thread&) = delete;

    [[nodiscard]] bool Start(int32_t priority);
    void Stop(); // asks the body to end and waits; returns at once if it was never started
    bool ShouldStop() { return handle && host->thread->shouldStop(handle); }

protected:
    virtual bool TestBreak() = 0;
    virtual void Main() = 0;
    virtual const char* GetThreadName() const = 0;

private:
    static const VX3ThreadTable table;

    ::VX3Thread* handle = nullptr;
};

} // namespace browser

#include "threadshim.h"

#include <memory>
#include <string>

#include "callchecks.h"

namespace vx3::testing {

namespace {

// Freed by the host through `destruct`, after the thread has ended.
struct ThreadShim {
    void* object;
    const VX3ThreadTable* table;
};

ThreadShim& ShimOf(void* object)
{
    return *static_cast<ThreadShim*>(object);
}

void Destruct(void* object)
{
    std::unique_ptr<ThreadShim> shim(static_cast<ThreadShim*>(object));
    if (shim->table->destruct)
        shim->table->destruct(shim->object);
}

VX3Bool TestBreak(void* object)
{
    const ThreadShim& shim = ShimOf(object);
    return shim.table->testBreak ? shim.table->testBreak(shim.object) : 0;
}

const char* GetThreadName(void* object)
{
    const ThreadShim& shim = ShimOf(object);
    return shim.table->getThreadName ? shim.table->getThreadName(shim.object) : "";
}

void Main(void* object)
{
    const std::size_t before = LocksOfThisThread().Count(); // not 0 where a host runs the body on the caller's thread
    ShimOf(object).table->main(ShimOf(object).object);
    if (LocksOfThisThread().Count() > before)
        TheChecks().Violate("thread", std::string("\"") + GetThreadName(object) + "\" ended with a lock held");
}

constexpr VX3ThreadTable shimTable = { Destruct, TestBreak, Main, GetThreadName };

} // namespace

VX3Thread* CreateThroughShim(ThreadCreateFunction create, void* object, const VX3ThreadTable* table)
{
    if (!table->main)
        return create(object, table);
    auto shim = std::make_unique<ThreadShim>(ThreadShim{ object, table });
    VX3Thread* thread = create(shim.get(), &shimTable);
    if (thread)
        shim.release();
    return thread;
}

} // namespace vx3::testing

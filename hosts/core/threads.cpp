#include <atomic>
#include <chrono>
#include <new>
#include <system_error>
#include <thread>

#include "hoststate.h"
#include "livecounts.h"
#include "services.h"
#include "threadposix.h"

namespace {

enum class ThreadState : uint32_t { Fresh, Running, Ended };

} // namespace

// The body's last act is to set `state`; whoever frees the object joins before that.
struct VX3Thread {
    void* object;
    const VX3ThreadTable* table;
    std::thread thread;
    std::atomic<ThreadState> state = ThreadState::Fresh;
    std::atomic<bool> endAsked = false;
};

namespace vx3::core {

namespace {

VX3Thread* Create(void* object, const VX3ThreadTable* table)
{
    if (!table || !table->main)
        return nullptr;
    auto* thread = new (std::nothrow) VX3Thread{ object, table, {}, {}, {} };
    if (thread)
        liveCounters.threads.Add();
    return thread;
}

void RunBody(VX3Thread* thread, int32_t priority)
{
    const char* name = thread->table->getThreadName ? thread->table->getThreadName(thread->object) : nullptr;
    NameThisThread(name ? name : "");
    if (priority == VX3_PRIORITY_BACKGROUND)
        LowerPriorityOfThisThread();
    thread->table->main(thread->object);
    thread->state.store(ThreadState::Ended, std::memory_order_release);
    thread->state.notify_all();
}

void Wait(VX3Thread* thread)
{
    thread->state.wait(ThreadState::Running, std::memory_order_acquire);
}

VX3Bool Start(VX3Thread* thread, VX3Bool background, int32_t priority)
{
    ThreadState expected = ThreadState::Fresh;
    if (!thread->state.compare_exchange_strong(expected, ThreadState::Running))
        return 0;
    try {
        thread->thread = std::thread(RunBody, thread, priority);
    } catch (const std::system_error&) {
        thread->state = ThreadState::Fresh;
        thread->state.notify_all();
        return 0;
    }
    if (!background)
        Wait(thread);
    return 1;
}

void End(VX3Thread* thread)
{
    thread->endAsked.store(true, std::memory_order_release);
}

void Free(VX3Thread* thread)
{
    if (!thread)
        return;
    End(thread);
    if (thread->thread.joinable())
        thread->thread.join();
    if (thread->table->destruct)
        thread->table->destruct(thread->object);
    delete thread;
    liveCounters.threads.Subtract();
}

VX3Bool ShouldStop(VX3Thread* thread)
{
    if (thread->endAsked.load(std::memory_order_acquire))
        return 1;
    return thread->table->testBreak && thread->table->testBreak(thread->object);
}

VX3Bool IsRunning(VX3Thread* thread)
{
    return thread->state.load(std::memory_order_acquire) == ThreadState::Running;
}

void Sleep(int32_t milliseconds)
{
    if (milliseconds > 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    else
        std::this_thread::yield();
}

VX3Bool IsMainThread()
{
    HostState* host = CurrentHost();
    return host && host->mainThread == std::this_thread::get_id();
}

} // namespace

const VX3ThreadServices* ThreadServices()
{
    static constexpr VX3ThreadServices services = { Create, Free, Start, End, Wait, ShouldStop, IsRunning, Sleep, IsMainThread };
    return &services;
}

} // namespace vx3::core

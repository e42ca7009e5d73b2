// Ends a stress test that hangs, with a word about it, and says how long one runs.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace vx3::tests {

// Half a minute where a sanitizer watches, a few seconds elsewhere; VX3_STRESS_SECONDS overrides.
inline std::chrono::seconds StressSeconds()
{
    if (const char* wanted = std::getenv("VX3_STRESS_SECONDS"))
        return std::chrono::seconds(std::atoi(wanted));
#if defined(__SANITIZE_THREAD__)
    return std::chrono::seconds(30);
#else
    return std::chrono::seconds(5);
#endif
}

class Watchdog
{
public:
    explicit Watchdog(std::chrono::seconds limit)
        : thread([this, limit] {
            std::unique_lock guard(mutex);
            if (!done.wait_for(guard, limit, [this] { return finished; })) {
                std::fprintf(stderr, "watchdog: the test hangs\n");
                std::abort();
            }
        })
    {
    }
    ~Watchdog()
    {
        {
            std::lock_guard guard(mutex);
            finished = true;
        }
        done.notify_one();
        thread.join();
    }

private:
    std::mutex mutex;
    std::condition_variable done;
    bool finished = false;
    std::thread thread;
};

} // namespace vx3::tests

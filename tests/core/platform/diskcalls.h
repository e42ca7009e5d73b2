// Calls of the system that files make: kept in order, and made to fail. The linker sends
// the core host's calls here.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vx3::core {

// From its making to its end; one lives at a time, on the one thread of a test.
class DiskCalls
{
public:
    DiskCalls();
    ~DiskCalls();
    DiskCalls(const DiskCalls&) = delete;
    DiskCalls& operator=(const DiskCalls&) = delete;

    // The next call of that name, `flock`, `fdatasync` or `fsync`, fails with an error.
    void FailNext(const std::string& call, int error);
    void BeforeNextLock(std::function<void()> action);
    // The calls since the last time, each with the name of its file: `fsync folder`. Locks are left out.
    std::vector<std::string> Take();
};

} // namespace vx3::core

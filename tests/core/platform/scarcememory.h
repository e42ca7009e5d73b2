// Lets a request for memory fail. Counts `malloc` of the core host, which the linker
// sends here, and `new` of the whole program; each thread for itself.
#pragma once

namespace vx3::core {

// From its making to its end the request of this number, 0 being the next one, gives
// nothing. Later ones do, so that whoever hides the failure is found out.
class ScarceMemory
{
public:
    explicit ScarceMemory(int successes);
    ~ScarceMemory();
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
    bool HasFailed() const; // a request was refused
};

} // namespace vx3::core

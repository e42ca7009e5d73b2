// An open file of the system for the length of a scope.
#pragma once

#include <unistd.h>
#include <utility>

namespace vx3::console {

class Descriptor
{
public:
    explicit Descriptor(int opened)
        : number(opened)
    {
    }
    ~Descriptor()
    {
        if (number >= 0)
            close(number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return number >= 0; }
    int Get() const { return number; }
    bool Close() { return close(std::exchange(number, -1)) == 0; }

private:
    int number;
};

} // namespace vx3::console

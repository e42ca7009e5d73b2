// An open file of the system, closed at the end of its scope.
#pragma once

#include <utility>

#include <unistd.h>

namespace vx3::core {

class Descriptor
{
public:
    Descriptor() = default;
    explicit Descriptor(int open)
        : number(open)
    {
    }
    Descriptor(Descriptor&& other) noexcept
        : number(std::exchange(other.number, -1))
    {
    }
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor()
    {
        if (number >= 0)
            close(number);
    }

    bool IsOpen() const { return number >= 0; }
    int Get() const { return number; }
    bool Close() { return close(std::exchange(number, -1)) == 0; } // false if a write was lost

private:
    int number = -1;
};

} // namespace vx3::core

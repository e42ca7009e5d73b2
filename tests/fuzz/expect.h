// What must hold whatever the bytes are.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace vx3::fuzz {

inline void Expect(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

} // namespace vx3::fuzz

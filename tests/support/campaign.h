// How much of a campaign is run: a sample, or all of it where VX3_TEST_FULL is set.
#pragma once

#include <cstdlib>

namespace vx3::tests {

inline bool RunsInFull()
{
    return std::getenv("VX3_TEST_FULL") != nullptr;
}

// A number that is larger if all is run.
template <class Number>
Number InFull(Number full, Number sample)
{
    return RunsInFull() ? full : sample;
}

} // namespace vx3::tests

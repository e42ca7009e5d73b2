// A module answers a question of the host: how large an area is, what stands in a row, what a
// drawing looks like, what state a command has. Such a callback has no [nested], so until it
// has returned the desk refuses calls that could run others. Main thread only.
#pragma once

namespace vx3::gui {

class AskScope
{
public:
    AskScope() { ++depth; }
    ~AskScope() { --depth; }
    AskScope(const AskScope&) = delete;
    AskScope& operator=(const AskScope&) = delete;

    static bool IsAsking() { return depth > 0; }

private:
    inline static int depth = 0;
};

} // namespace vx3::gui

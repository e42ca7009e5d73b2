// vx3-bench GROUP …: measures the module and prints what bench/run.py compares.

#include <cstring>
#include <filesystem>

#include "groups.h"

using namespace vx3::bench;

namespace {

struct Group {
    const char* name;
    bool needsFolder;
    void (*measure)(Scene& scene, const std::string& folder);
};

constexpr Group groups[] = {
    { "list", true, MeasureListing },
    { "walk", true, MeasureWalk },
    { "view", false, [](Scene& scene, const std::string&) { MeasureView(scene); } },
    { "lists", false, [](Scene& scene, const std::string&) { MeasureLists(scene); } },
    { "index", false, [](Scene&, const std::string&) { MeasureIndex(); } },
    { "growth", false, [](Scene& scene, const std::string&) { MeasureGrowth(scene); } },
};

int Explain()
{
    std::fprintf(
        stderr,
        "usage: vx3-bench list|walk FOLDER\n       vx3-bench view|lists|index|growth\n       vx3-bench library STEP FOLDER COUNT\n");
    return 2;
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 2)
        return Explain();
    if (std::strcmp(arguments[1], "library") == 0) {
        Scene scene;
        return MeasureLibrary(count - 2, arguments + 2);
    }
    for (const Group& group : groups) {
        if (std::strcmp(group.name, arguments[1]) != 0)
            continue;
        if (count != (group.needsFolder ? 3 : 2))
            return Explain();
        Scene scene;
        group.measure(scene, group.needsFolder ? std::filesystem::canonical(arguments[2]).string() : std::string());
        return 0;
    }
    return Explain();
}

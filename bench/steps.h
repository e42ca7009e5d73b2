// What the programs of the library group have in common: a program does one step in a process of its own, so that memory and
// caches of one step are not those of another.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "measure.h"

namespace vx3::bench {

struct Step {
    const char* name;
    void (*run)(const std::string& folder, size_t count);
};

// Arguments: STEP FOLDER COUNT.
template <size_t stepCount>
int RunStep(const Step (&steps)[stepCount], int count, char** arguments)
{
    for (const Step& step : steps)
        if (count == 3 && std::strcmp(step.name, arguments[0]) == 0)
            return step.run(arguments[1], std::strtoul(arguments[2], nullptr, 10)), 0;
    std::fprintf(stderr, "usage: STEP FOLDER COUNT, where STEP is one of\n");
    for (const Step& step : steps)
        std::fprintf(stderr, "    %s\n", step.name);
    return 2;
}

// Each call on its own: half of them take less than p50, one in a hundred takes more than p99.
class Latencies
{
public:
    template <class Call>
    void Time(Call call)
    {
        double start = NowSeconds();
        call();
        seconds.push_back(NowSeconds() - start);
    }
    void Print(const std::string& name, size_t count, double scale, const char* unit)
    {
        PrintQuantile(name + "_p50_" + unit, count, 0.5, scale, unit);
        PrintQuantile(name + "_p99_" + unit, count, 0.99, scale, unit);
    }

private:
    void PrintQuantile(const std::string& name, size_t count, double part, double scale, const char* unit)
    {
        PrintCaseOf(name.c_str(), count, QuantileOf(seconds.data(), seconds.size(), part) * scale, unit);
    }

    std::vector<double> seconds;
};

} // namespace vx3::bench

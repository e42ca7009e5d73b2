// What vx3-bench can measure: each group prints its cases.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "measure.h"
#include "scene.h"

namespace vx3::bench {

constexpr double millisecond = 1e3;
constexpr double microsecond = 1e6;
constexpr double nanosecond = 1e9;

// Times of the repeats of one case, in seconds.
class Samples
{
public:
    void Add(double seconds) { values.push_back(seconds); }
    double Median() { return MedianOf(values.data(), values.size()); }
    // What the work costs, without what else the machine did meanwhile: for growth, where a
    // long run is interrupted and a short one is not.
    double Least() const { return *std::min_element(values.begin(), values.end()); }

private:
    std::vector<double> values;
};

void MeasureListing(Scene& scene, const std::string& folder);
void MeasureWalk(Scene& scene, const std::string& folder);
void MeasureView(Scene& scene);
void MeasureLists(Scene& scene);
void MeasureIndex();
void MeasureHashIndex(); // a part of it
void MeasureGrowth(Scene& scene);
int MeasureLibrary(int count, char** arguments); // STEP FOLDER COUNT; what the program ends with

} // namespace vx3::bench

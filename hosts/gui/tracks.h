// Arithmetic of one direction of a layout: columns or rows of a grid, and the parts of a
// splitter. Plain numbers, no gadgets. Remainders of a division go to the first ones, so
// that the same numbers always give the same places.
#pragma once

#include <cstddef>
#include <vector>

namespace vx3::gui {

// Longer than this nothing is, so that sums of lengths stay numbers.
constexpr int mostLength = 1 << 27;

// One column or row. One that is not used takes no room and no spacing.
struct Track {
    int need = 0;
    bool scales = false;
    bool fits = false; // scales if no other does
    bool isUsed = false;
    int from = 0;
    int length = 0;
};

int NeedOfTracks(const std::vector<Track>& tracks, int spacing);

// Gives every track its place in `length` pixels from `from`. Those that scale share what is left
// over, or if none does those that fit; if there is too little the longest of them give
// what is missing, down to nothing.
void SpreadTracks(std::vector<Track>& tracks, int from, int length, int spacing);

// One part of a splitter.
struct Part {
    size_t index = 0; // among the children of the splitter; not looked at here
    double weight = 0;
    int least = 0;
    int length = 0;
};

// Divides `length` by weights, but no part gets less than its least as long as all fit. Without
// any weight above 0 all weigh the same.
void DivideByWeights(std::vector<Part>& parts, int length);

} // namespace vx3::gui

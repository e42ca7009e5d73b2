// One run of the layout, for one direction after the other (layout.h). Inside of the
// layout; lives as long as one call of LayOut.
#pragma once

#include "gui/layout.h"
#include "gui/tracks.h"

namespace vx3::gui {

enum class Axis { Horizontal, Vertical };

// One direction of places and sizes.
inline int& LengthOf(Place& place, Axis axis)
{
    return axis == Axis::Horizontal ? place.width : place.height;
}
inline int& StartOf(Place& place, Axis axis)
{
    return axis == Axis::Horizontal ? place.x : place.y;
}
inline int& LengthOf(Size& size, Axis axis)
{
    return axis == Axis::Horizontal ? size.width : size.height;
}

// The cells of a group, child by child. A child that spans has a row of its own.
class CellWalk
{
public:
    explicit CellWalk(const Gadget& ownGroup);
    void Next(const Gadget& child);
    size_t Column() const { return column; }
    size_t Row() const { return row; }
    bool Spans() const { return spans; }

private:
    size_t columns;
    size_t column = 0;
    size_t row = 0;
    size_t next = 0; // column of the next child, if it does not span
    bool spans = false;
};

class LayoutPass
{
public:
    explicit LayoutPass(Toolkit& ownToolkit);

    // A gadget and all in it, in a place.
    void LayOutIn(Gadget& gadget, const Place& place);
    // What a gadget needs if it gets that much of the width; its widths are given then.
    Size FitIn(Gadget& gadget, int left, Size view);

private:
    // The need of a gadget in one direction; heights hold for the widths given before.
    int Measure(Gadget& gadget, Axis axis);
    // Gives a gadget its place in one direction and its children theirs.
    void Arrange(Gadget& gadget, Axis axis, int from, int length);

    // The distances between the edges of a group and its contents, in one direction.
    struct Insets {
        int before = 0;
        int behind = 0;
        int Both() const { return before + behind; }
    };

    // measure.cpp
    int MeasureContents(Gadget& gadget, Axis axis);
    int MeasureGrid(Gadget& group, Axis axis);
    int MeasureSplitter(Gadget& splitter, Axis axis);
    int MeasurePages(Gadget& tabs, Axis axis);
    int MeasureScroll(Gadget& scroll, Axis axis);
    int MeasureArea(Gadget& gadget, Axis axis);
    Insets InsetsOf(const Gadget& group, Axis axis) const;
    std::vector<Track> TracksOf(Gadget& group, Axis axis) const;

    // arrange.cpp
    void ArrangeGrid(Gadget& group, Axis axis);
    void ArrangeInCell(Gadget& child, Axis axis, int from, int length);
    void ArrangeSplitter(Gadget& splitter, Axis axis);
    void ArrangePages(Gadget& tabs, Axis axis);
    void ArrangeScroll(Gadget& scroll);
    void ArrangeScrolled(Gadget& scroll, Gadget& child);

    Toolkit& toolkit;
    Metrics metrics;
    Size room; // what an area may take as its size before it has one
};

// The child of a scroll group that is shown, or none.
Gadget* ScrolledChild(const Gadget& scroll);

// The shown children of a measured splitter, with their weights and least lengths.
std::vector<Part> PartsOf(Gadget& splitter);

} // namespace vx3::gui

// The layout of a window: where every gadget of it stands, those of the dialogs inside
// it included.
//
// First all widths are measured from the leaves up and given from the window down, then
// all heights, since an area may need more height in less width. What a scroll group shows
// is laid out when the size of the group is known, and never has a say in it. The same
// tree in the same window always gets the same places.
//
// Rules:
// - A child that is hidden keeps its cell, but a row or column of only such cells is gone.
// - The least size of a shape replaces what can be cut (texts, fields, sliders) and adds to
//   what cannot (buttons, areas, groups).
// - If no column or row of a group scales, those with something that fits share what is left.
// - The root of a dialog, pages, parts of a splitter and what a scroll group shows fill their place
//   whatever their flags.
// - A separator in a single row stands upright; elsewhere it has a row of its own.
// - An area is asked for its least size while `place` has the width that it would get.
#pragma once

#include "gui/toolkit.h"

namespace vx3::gui {

// Sets need, place, view, content and scrolled of all gadgets, and has the toolkit place them.
void LayOut(Toolkit& toolkit, Dialog& window);

// The least inside that a window needs in a width; 0: in the least width.
Size NeedOfWindow(Toolkit& toolkit, Dialog& window, int width);

// Where a gadget stands in the inside of its window, as far as the scroll groups around it are
// scrolled. It may be outside of what they show.
Place PlaceInWindow(const Gadget& gadget);

// Keeps `scrolled` of a scroll group or a tree where there is something to see.
void ClampScrolled(Gadget& scroll);

// Moves the border behind the child `border` of a splitter as near to `position`, in the
// direction of its children and in the inside of the window, as their least sizes allow. Sets
// weights; false if they are the same. The layout comes afterwards.
bool MoveBorder(Gadget& splitter, size_t border, int position);

// Where the borders of a splitter stand if its parts have these weights, one for each child.
std::vector<int> BorderPositions(Gadget& splitter, const std::vector<double>& weights);

inline bool IsColumn(const Gadget& splitter)
{
    return splitter.shape.columns == 1;
}

} // namespace vx3::gui

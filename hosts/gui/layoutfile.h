// Layout files: the gadgets of a dialog as text, in `res/layouts/NUMBER.layout` of a module.
//
//     # comment
//     dialog 10118 {
//         scroll 10120 fit=hv scale=hv { group 10121 { area 10122 fit=hv } }
//         group 10125 dir=h fit=h { text 10126 fit=h scale=h; slider 10127 min=0 max=100 step=5 }
//     }
//
// A gadget is a kind, perhaps its number, attributes and words in any order, and for a group
// its children in braces. Gadgets that are not groups end with a semicolon; the last of a group
// may do without. The file is one `dialog` with its own number: a group of one column, unless it
// says otherwise, that fills what it is put into.
//
//     fit= scale=           h, v or hv            all kinds
//     minwidth= minheight=  logical pixels        all kinds
//     left right hidden                           all kinds
//     dir= or columns=      h, v; a number        dialog group splitter
//     weights=              60:40, one a child    splitter
//     text=                 number of a text      titles of groups, texts of what shows one
//     tip= icon=            number                what is not a group; bitmapbutton
//     min= max= step=       decimal numbers       number slider
//     readonly toggle edit percent                edit multiline; bitmapbutton; combo; number slider
//
// A file is read as a whole or not at all: what is unknown, doubled, out of range or never closed
// is told with its line and column.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vx3/gui.h"

namespace vx3::gui {

// Columns of a group whose children all stand in one row.
constexpr int32_t columnsOfRow = 1000;

struct LayoutNode {
    VX3GadgetShape shape = {};
    double least = 0;
    double most = 100;
    double step = 1;
    std::vector<double> weights;
    int32_t text = 0; // numbers of texts; 0: none
    int32_t tip = 0;
    int32_t icon = 0; // number of an icon of the host; 0: none
    std::vector<LayoutNode> children;
};

// The word of a kind of gadget; empty for none.
std::string_view WordOfKind(int32_t kind);

// The errors begin with line and column, those of a file with its name in front.
bool ParseLayout(std::string_view text, int32_t number, LayoutNode& root, std::string& error);
bool LoadLayoutFile(const std::string& file, int32_t number, LayoutNode& root, std::string& error);

} // namespace vx3::gui

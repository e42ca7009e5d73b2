// What a host keeps of one tree gadget: the list of the rows that can be scrolled to.
//
// The list is asked for when it is first needed and kept until the module refreshes the
// tree or a row is opened or closed. What must outlast that is kept by the id of a row. The
// state belongs to its gadget alone and goes with it: whoever calls something nested
// holds a weak pointer and looks at it afterwards.
//
// The coordinates of a tree are those of its view: (0, 0) is the corner of what is seen,
// however far it is scrolled. `content`, `view` and `scrolled` of the gadget are as of a
// scroll group. Main thread only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "gui/askscope.h"
#include "gui/toolkit.h"

namespace vx3::gui {

constexpr int treeIndent = 18; // of a row below the one that it belongs to, and of the first rows

// What a tree needs from the desk around it.
class TreeHost
{
public:
    virtual ~TreeHost() = default;

    virtual Toolkit& GetToolkit() = 0;
    virtual void SettleLater(Gadget& tree) = 0;                                              // calls SettleTree when nothing is going on
    virtual bool Drag(Gadget& tree, int32_t type, void* data) = 0;                           // as VX3MenuServices::drag; nested
    virtual int32_t Popup(Gadget& tree, const VX3Container& menu, int32_t x, int32_t y) = 0; // as VX3MenuServices::popup; nested
};

struct TreeRow {
    void* row = nullptr;
    int64_t id = 0;
    int depth = 0;
    int top = 0; // in the content
    int height = 0;
    bool hasExpander = false;
    bool isOpen = false;
};

struct TreeState {
    TreeHost* host = nullptr;
    void* object = nullptr;
    const VX3TreeTable* table = nullptr;

    bool isStale = true;
    std::vector<TreeRow> rows;
    Size content; // of all rows
    std::optional<int64_t> focus;
    std::optional<int64_t> dropTarget; // while something is dragged over it

    std::u16string typed; // letters of a name, typed one soon after the other
    int64_t typedAt = 0;
    int64_t dragScrolledAt = 0;

    bool isAsking = false; // the rows are being asked for
    struct Dragged {
        int64_t id = 0;
        void* data = nullptr;
    };
    std::optional<Dragged> dragged; // of a row, until the module has freed it
};

// False while the module of the tree before still answers or has something dragged.
bool AttachTree(Gadget& gadget, TreeHost& host, void* object, const VX3TreeTable* table);

// The module frees what is dragged out of the tree, if that is still to be done.
void FreeTreeDrag(TreeState& tree);

// The rows have changed: asks for them when they are needed next.
void RefreshTree(Gadget& gadget);
// Brings the scroll bars up to date after RefreshTree.
void SettleTree(Gadget& gadget);
// Sets view, content and scrolled of a gadget that has its place.
void LayOutTree(Toolkit& toolkit, Gadget& gadget);
void RedrawTree(Gadget& gadget);
// The row that keys start from, also one that cannot be scrolled to yet; none for no row.
void SetTreeFocus(Gadget& gadget, void* row);

// The rows of a tree, asked for if need be: an index holds until this is called again. Calls the
// module, but nothing nested. While the module is being asked they are those from before.
const std::vector<TreeRow>& RowsOf(TreeState& tree);
std::optional<size_t> FindRow(TreeState& tree, const void* row);
std::optional<size_t> FindRowById(TreeState& tree, std::optional<int64_t> id);
std::optional<size_t> RowAt(Gadget& gadget, int y);
std::optional<size_t> ParentOf(const TreeState& tree, size_t index);
Place PlaceOfRow(const Gadget& gadget, const TreeRow& row); // over the whole width of the view
std::u16string NameOfRow(const TreeState& tree, void* row);

// Scrolls a row into view, and by an amount as far as there is something to see.
void ShowTreeRow(Gadget& gadget, int64_t id);
void ScrollTree(Gadget& gadget, Point by);

} // namespace vx3::gui

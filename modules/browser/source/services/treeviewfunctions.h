// A tree that a gadget shows: what it asks of the module. Rows are nodes of the module's
// own, which the host compares and never looks into.
//
// Main thread only. An operation that a subclass leaves alone is the host's way: no drag,
// nothing to drop on, a double click opens and closes.
#pragma once

#include "services/geuserarea.h"

namespace browser {

class TreeViewFunctions
{
public:
    using Row = void*;

    virtual ~TreeViewFunctions() = default;
    static void operator delete(void* block) { HostFree(block); }

    bool AttachTo(DialogBase& dialog, int32_t gadget);
    bool Refresh();        // asks for all rows again; after every change of the tree
    bool Redraw();         // the rows are the same
    bool ShowRow(Row row); // scrolls to it
    bool SetFocusRow(Row row);
    // Where a row stands on the screen and how far it is indented; false if it is not to be seen.
    bool GetRowPlace(Row row, Rectangle& place, int32_t& indent) const;

protected:
    virtual Row GetFirstRoot() = 0;
    virtual Row GetFirstChild(Row row) = 0;
    virtual Row GetNext(Row row) = 0;
    virtual Row GetPrevious(Row row) = 0;
    virtual int32_t GetColumnWidth(Row row, int32_t column) = 0;
    virtual int32_t GetRowHeight(Row row) = 0;
    virtual void DrawCell(Row row, int32_t column, const Canvas& canvas, const Rectangle& cell) = 0;
    virtual bool HasExpander(Row row) { return GetFirstChild(row) != nullptr; }
    virtual bool IsSelected(Row row) = 0;
    virtual bool IsOpen(Row row) = 0;
    virtual void GetName(Row row, String& name) = 0;
    virtual int64_t GetId(Row row) = 0;
    virtual int32_t GetDragType(Row) { return 0; }
    virtual void Open(Row row, bool open) = 0;
    virtual void Select(Row row, int32_t mode) = 0; // VX3_SELECT
    virtual uint32_t AcceptDrag(Row, const BaseContainer&) { return VX3_DROP_REFUSED; }
    virtual void Drop(Row, const BaseContainer&) { }
    virtual void BuildContextMenu(Row, BaseContainer&) { }
    virtual bool MenuCommand(Row, int32_t) { return false; }
    virtual void* MakeDrag(Row) { return nullptr; }
    virtual void FreeDrag(Row, void*) { }
    virtual bool DoubleClick(Row) { return false; }
    virtual bool DeleteKey() { return false; }

private:
    static const VX3TreeTable table;

    VX3Dialog dialog = 0;
    int32_t gadget = 0;
};

} // namespace browser

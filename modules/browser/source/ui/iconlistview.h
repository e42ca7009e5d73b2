// The grid of icons: one cell for each entry, with a picture and a caption.
//
// Its rooms: gridlayout has the arithmetic, iconpainter draws a cell, listkeyboard says
// what a key does.
#pragma once

#include "ui/contentlistview.h"
#include "ui/listkeyboard.h"

namespace browser {

class IconListView final : public ContentListView
{
public:
    int32_t FindEntry(const EntrySelection& entries, Point at, HitTest test) const override;
    bool MeetsCell(const EntrySelection& entries, int32_t index, const Rectangle& touched) const override;
    bool GetEntryCell(int32_t index, GridCell& cell) const override { return grid.GetCell(index, cell); }
    void UpdateVisibleRange() override;

    const GridLayout& Grid() const { return grid; }

protected:
    Size GetMinSize() override;
    void Draw(const Canvas& canvas, const Rectangle& dirty) override;

    ScrollPlace ScrollToEntry(int32_t y) const override { return grid.ScrollToEntry(y); }
    int32_t EntryToScroll(const ScrollPlace& place) const override { return grid.EntryToScroll(place); }
    Rectangle RevealArea(int32_t index) const override;
    bool PressKey(const InputEvent& event) override;

private:
    Size Measure();
    Size LargestEntry(const EntrySelection& entries) const;
    void DrawEntries(const Canvas& canvas, const EntrySelection& entries, const Rectangle& dirty) const;
    void DrawDropFrame(const Canvas& canvas) const;
    KeyAnswer AnswerKey(const InputEvent& event) const;
    bool CarryOut(const KeyAnswer& answer); // false: the key is for somebody else
    void SelectBlock(const KeyAnswer& answer);

    GridLayout grid;
};

} // namespace browser

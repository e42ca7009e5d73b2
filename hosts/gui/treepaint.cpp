#include "gui/treepaint.h"

#include <algorithm>

#include "gui/canvasscope.h"

namespace vx3::gui {

namespace {

constexpr int expanderReach = 4; // from the middle of an expander to its corners
constexpr int textMargin = 3;    // in front of the text of a row that the host draws

void DrawFrame(Canvas& canvas, const Place& place)
{
    const Point last = { place.x + place.width - 1, place.y + place.height - 1 };
    canvas.Line(place.Corner(), { last.x, place.y });
    canvas.Line({ place.x, last.y }, last);
    canvas.Line(place.Corner(), { place.x, last.y });
    canvas.Line({ last.x, place.y }, last);
}

// A triangle that points to the right, or down if the row is open.
void DrawExpander(Canvas& canvas, Point middle, bool isOpen)
{
    for (int i = 0; i <= expanderReach; ++i) {
        const int half = expanderReach - i;
        if (isOpen)
            canvas.Line({ middle.x - half, middle.y - 2 + i }, { middle.x + half, middle.y - 2 + i });
        else
            canvas.Line({ middle.x - 2 + i, middle.y - half }, { middle.x - 2 + i, middle.y + half });
    }
}

class TreePainter
{
public:
    TreePainter(Gadget& ownGadget, Canvas& ownCanvas)
        : gadget(ownGadget)
        , tree(*ownGadget.tree)
        , toolkit(ownGadget.tree->host->GetToolkit())
        , canvas(ownCanvas)
    {
    }

    void Paint(const Place& dirty)
    {
        canvas.ClearClip();
        canvas.SetPen(toolkit.ColourOf(VX3_COLOUR_BACKGROUND));
        canvas.Fill(dirty);
        // A cell's module may have all rows asked for again, so none is kept from one to the next.
        for (size_t i = RowAt(gadget, std::max(0, dirty.y)).value_or(RowsOf(tree).size()); i < RowsOf(tree).size(); ++i) {
            const TreeRow row = tree.rows[i];
            const Place place = PlaceOfRow(gadget, row);
            if (place.y >= dirty.y + dirty.height)
                break;
            PaintRow(row, place);
        }
        canvas.ClearClip();
    }

private:
    void PaintRow(const TreeRow& row, const Place& place)
    {
        const int left = row.depth * treeIndent - gadget.scrolled.x;
        BeginDrawing();
        if (row.hasExpander)
            DrawExpander(canvas, { left + treeIndent / 2, place.y + place.height / 2 }, row.isOpen);
        const int cellLeft = left + treeIndent;
        const int right = std::max(gadget.view.width, gadget.content.width - gadget.scrolled.x);
        PaintCell(row, { cellLeft, place.y, std::max(0, right - cellLeft), place.height });
        if (tree.dropTarget == row.id) {
            BeginDrawing();
            canvas.SetPen(toolkit.ColourOf(VX3_COLOUR_SELECTION));
            DrawFrame(canvas, place);
        }
    }

    void BeginDrawing()
    {
        canvas.ClearClip();
        canvas.SetPen(toolkit.ColourOf(VX3_COLOUR_TEXT));
        canvas.SetTextColour(toolkit.ColourOf(VX3_COLOUR_TEXT));
    }

    void PaintCell(const TreeRow& row, const Place& cell)
    {
        if (!tree.table->drawCell) {
            PaintName(row, cell);
            return;
        }
        const VX3Rectangle rectangle = RectangleOf(cell);
        const CanvasScope scope(canvas);
        const AskScope asking;
        tree.table->drawCell(tree.object, row.row, VX3_COLUMN_ICON, scope.Handle(), &rectangle);
    }

    void PaintName(const TreeRow& row, const Place& cell)
    {
        const AskScope asking;
        if (tree.table->isSelected && tree.table->isSelected(tree.object, row.row)) {
            canvas.SetPen(toolkit.ColourOf(VX3_COLOUR_SELECTION));
            canvas.Fill(cell);
            canvas.SetTextColour(toolkit.ColourOf(VX3_COLOUR_SELECTED_TEXT));
        }
        canvas.DrawText(NameOfRow(tree, row.row), { cell.x + textMargin, cell.y + (cell.height - toolkit.FontHeight()) / 2 });
    }

    Gadget& gadget;
    TreeState& tree;
    Toolkit& toolkit;
    Canvas& canvas;
};

} // namespace

void PaintTree(Gadget& gadget, Canvas& canvas, const Place& dirty)
{
    if (gadget.tree)
        TreePainter(gadget, canvas).Paint(dirty);
}

} // namespace vx3::gui

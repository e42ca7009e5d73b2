#include "ui/iconpainter.h"

#include "services/preferences.h"
#include "ui/captiontext.h"

namespace browser {

namespace {

// What a node shows of itself at this moment.
class ShownPicture
{
public:
    ShownPicture(BrowserContentNode& node, int32_t side)
        : preview(node.GetPreview(BackgroundEnabled() ? PreviewRequest::stored : 0, side))
    {
    }
    ~ShownPicture() { Destroy(preview); }
    ShownPicture(const ShownPicture&) = delete;
    ShownPicture& operator=(const ShownPicture&) = delete;

    const VX3Bitmap* Bitmap() const { return preview ? preview->Bitmap() : nullptr; }
    Size BitmapSize() const { return { host->bitmap->width(Bitmap()), host->bitmap->height(Bitmap()) }; }
    bool MayStaySmall() const { return (preview->Flags() & Preview::neverEnlarged) != 0; }
    uint32_t Mode() const { return preview->Flags() & Preview::drawnMixed ? VX3_DRAW_OPAQUE : VX3_DRAW_ALPHA; }
    bool IsTransparent(Point pixel) const
    {
        uint8_t rgba[4] = {};
        return host->bitmap->hasAlpha(Bitmap()) && host->bitmap->readPixels(Bitmap(), pixel.x, pixel.y, 1, rgba) && rgba[3] == 0;
    }

private:
    Preview* const preview;
};

struct Colours {
    int32_t text;
    int32_t background;
};

Colours ColoursOf(const ContentViewEntry& entry, bool hasFocus)
{
    Colours colours = { VX3_COLOUR_TEXT, VX3_COLOUR_BACKGROUND };
    if (entry.IsSelected() && hasFocus)
        colours = { VX3_COLOUR_SELECTED_TEXT, VX3_COLOUR_SELECTION };
    else if (entry.IsSelected())
        colours = { VX3_COLOUR_SELECTED_TEXT_UNFOCUSED, VX3_COLOUR_SELECTION_UNFOCUSED };
    if (ContentOf(entry.node)->HasFlags(VX3_NODE_BROKEN_LINK))
        colours.text = VX3_COLOUR_SPECIAL_TEXT;
    return colours;
}

} // namespace

void IconPainter::Draw(const Canvas& canvas, const ContentViewEntry& entry, const GridCell& cell, bool hasFocus) const
{
    if (!entry.node)
        return;
    const Colours colours = ColoursOf(entry, hasFocus);
    canvas.SetClip({ cell.x, cell.y, cell.x + cell.width, cell.y + cell.height });
    canvas.SetTextColours(colours.text, colours.background);
    canvas.SetPen(colours.background);
    canvas.Fill(cell.Background());
    DrawPicture(canvas, *ContentOf(entry.node), { cell.x, cell.y });
    if (entry.IsSelected() && !hasFocus) {
        canvas.SetPen(VX3_COLOUR_SELECTION);
        canvas.Frame(cell.Background());
    }
    DrawCaption(canvas, *ContentOf(entry.node), { cell.x, cell.y });
}

void IconPainter::DrawPicture(const Canvas& canvas, BrowserContentNode& node, Point cell) const
{
    const ShownPicture picture(node, canvas.DotsFor(metrics.PictureSide()));
    if (!picture.Bitmap())
        return;
    const Size drawn = metrics.FitPicture(picture.BitmapSize(), picture.MayStaySmall());
    const Rectangle place = metrics.DrawnPicture(cell, drawn);
    canvas.DrawBitmap(picture.Bitmap(), { place.x1, place.y1 }, drawn, picture.Mode());
}

void IconPainter::DrawCaption(const Canvas& canvas, BrowserContentNode& node, Point cell) const
{
    String name; // a copy: another thread may rename the node
    node.GetName(name);
    const auto measure = [&canvas](Units run) { return canvas.TextWidth(run); };
    const CaptionText caption(name.View(), metrics.CaptionLimit(), measure);
    canvas.DrawText(caption.View(), metrics.CaptionOrigin(cell, caption.Width()));
}

bool IconPainter::IsHit(const ContentViewEntry& entry, const GridCell& cell, const Rectangle& touched) const
{
    if (!entry.node)
        return false;
    const Point corner = { cell.x, cell.y };
    switch (metrics.PartAt(corner, Canvas().FontHeight(), touched)) {
    case CellPart::PictureBox: return IsPictureHit(*ContentOf(entry.node), corner, touched);
    case CellPart::Caption: return true;
    case CellPart::None: break;
    }
    return false;
}

// Kept: what the picture leaves free of its box is no part of the entry, nor are the
// picture's transparent pixels: there begins a rubber band, not a drag.
bool IconPainter::IsPictureHit(BrowserContentNode& node, Point cell, const Rectangle& touched) const
{
    const ShownPicture picture(node, metrics.PictureSide());
    if (!picture.Bitmap())
        return true;
    const Size drawn = metrics.FitPicture(picture.BitmapSize(), picture.MayStaySmall());
    if (!metrics.DrawnPicture(cell, drawn).Meets(touched))
        return false;
    return !picture.IsTransparent(metrics.SampleAt(cell, drawn, picture.BitmapSize(), { touched.x1, touched.y1 }));
}

} // namespace browser

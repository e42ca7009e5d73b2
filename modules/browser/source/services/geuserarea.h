// Surfaces that the module draws, and the canvas to draw on.
//
// Main thread only. An area belongs to its owner and stands in a gadget while a dialog is
// open; without one its calls answer false and zero.
#pragma once

#include "services/basecontainer.h"
#include "services/gedialog.h"
#include "services/geometry.h"

namespace browser {

// One drawing of an area or of a tree's cell; also measures, anywhere. A value that is not
// kept. Rectangles hold both their corners.
class Canvas
{
public:
    Canvas() = default; // for measuring
    explicit Canvas(VX3Canvas handle)
        : canvas(handle)
    {
    }

    void SetClip(const Rectangle& clip) const;
    void ClearClip() const;
    void SetPen(int32_t colour) const; // VX3_COLOUR numbers
    void SetTextColours(int32_t text, int32_t background) const;
    void Fill(const Rectangle& rectangle) const;
    void Line(Point from, Point to) const;
    void Frame(const Rectangle& rectangle) const; // one pixel wide, inside
    // All of a bitmap into a rectangle; `mode` is VX3_DRAW_ALPHA or VX3_DRAW_OPAQUE.
    void DrawBitmap(const VX3Bitmap* bitmap, Point corner, Size size, uint32_t mode) const;
    void DrawText(Units text, Point corner) const;
    int32_t TextWidth(Units text) const;
    int32_t FontHeight() const;
    int32_t DotsFor(int32_t pixels) const; // of the screen

private:
    VX3Canvas canvas = 0;
};

// An input event in plain fields.
struct InputEvent {
    explicit InputEvent(const BaseContainer& event);

    bool IsMouse() const { return device == VX3_DEVICE_MOUSE; }
    bool HasShift() const { return (qualifiers & VX3_QUALIFIER_SHIFT) != 0; }
    bool HasCtrl() const { return (qualifiers & VX3_QUALIFIER_CTRL) != 0; }

    int32_t device;
    int32_t channel; // or a key
    int32_t value;
    Point at;
    uint32_t qualifiers;
    bool isDouble;
};

class GeUserArea
{
public:
    GeUserArea() = default;
    virtual ~GeUserArea();
    static void operator delete(void* block) { HostFree(block); }
    GeUserArea(const GeUserArea&) = delete;
    GeUserArea& operator=(const GeUserArea&) = delete;

    bool AttachTo(DialogBase& dialog, int32_t gadget);
    Size GetAreaSize() const;
    bool Redraw();
    bool Redraw(const Rectangle& part);
    bool Activate(); // gives it the focus
    bool HasFocus() const;
    bool ToLocal(Point& screen) const;
    bool ToScreen(Point& local) const;
    bool PostMessage(int32_t code);

    enum class BandAnswer : int32_t {
        None = VX3_BAND_NONE,
        Unmoved = VX3_BAND_UNMOVED,
        Rectangle = VX3_BAND_RECTANGLE,
        Cancelled = VX3_BAND_CANCELLED,
    };
    BandAnswer TrackRubberBand(Point start, Rectangle& band); // nested
    // Drags `data` until the button is let go. True: the pointer moved. Nested.
    bool Drag(int32_t type, void* data);

protected:
    virtual Size GetMinSize() = 0;
    virtual void Draw(const Canvas& canvas, const Rectangle& dirty) = 0;
    virtual bool Input(const InputEvent& event) = 0;                  // true: consumed
    virtual bool Message(int32_t code, const BaseContainer& message); // true: consumed

private:
    static const VX3AreaTable table;

    bool MakeHandle();

    VX3Area area = 0;
};

} // namespace browser

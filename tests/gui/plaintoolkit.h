// A toolkit of fixed measures that shows nothing and notes what was redrawn: for tests of
// what the layout and the trees decide by themselves.
#pragma once

#include <map>

#include "gui/layoutfile.h"
#include "gui/toolkit.h"

namespace vx3::gui {

class PlainToolkit : public Toolkit
{
public:
    static constexpr int letterWidth = 7;
    static constexpr int letterHeight = 13;

    void PlaceGadget(Gadget& gadget, bool isVisible) override { visible[&gadget] = isVisible; }
    Size NeedOf(const Gadget& gadget) override { return { letterWidth * static_cast<int>(gadget.text.size()), letterHeight }; }
    Metrics GetMetrics() override { return metrics; }
    int TextWidth(std::u16string_view text) override { return letterWidth * static_cast<int>(text.size()); }
    int FontHeight() override { return letterHeight; }
    int64_t Now() override { return now; }
    void Redraw(Gadget&, const Place&) override { ++redraws; }
    void ShowGadget(Gadget&, Change change) override { scrollChanges += change == Change::Scrolled; }
    void FocusGadget(Gadget& gadget) override { focused = &gadget; }
    void ShowDragCursor(int32_t shown) override { cursor = shown; }
    Point InsideCorner(Dialog&) override { return { 1000, 500 }; }
    Colour ColourOf(int32_t number) override { return { 0, static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number) }; }

    void OpenWindow(Dialog&) override { }
    void CloseWindow(Dialog&) override { }
    void ShowTitle(Dialog&) override { }
    void RaiseWindow(Dialog&) override { }
    void ResizeWindow(Dialog&, Size) override { }
    void ShowLeastSize(Dialog&) override { }
    void ShowMenu(Dialog&) override { }
    Dialog* WindowAt(Point) override { return nullptr; }
    void RunModal(Dialog&) override { }
    void EndModal(Dialog&) override { }
    void MakeGadget(Gadget&) override { }
    void DropGadget(Gadget&) override { }
    void SelectText(Gadget&, int, int) override { }
    void WakeAt(int64_t) override { }
    void WakeUp() override { }
    Band TrackRubberBand(Gadget&, Point) override { return {}; }
    void RunDrag(Gadget&) override { }
    int32_t RunPopup(Dialog&, const std::vector<MenuItem>&, Point) override { return 0; }
    void CancelNested(Dialog&) override { }
    void OpenPopupEdit(Dialog&, const Place&, const std::u16string&) override { }
    void ClosePopupEdit() override { }
    void SetCursor(int32_t) override { }
    uint32_t Qualifiers() override { return 0; }
    uint32_t PointerState(Point&) override { return 0; }
    void ShowBox(int32_t, const std::u16string&) override { }
    bool Ask(const std::u16string&) override { return false; }
    bool Choose(const ChooseRequest&, std::string&) override { return false; }
    bool Reveal(const std::string&) override { return false; }
    bool OpenWithSystem(const std::string&) override { return false; }
    bool OpenPreferences(int32_t) override { return false; }

    Metrics metrics = { 4, 3, 5, 10, 20, 25 };
    int64_t now = 0;
    std::map<const Gadget*, bool> visible;
    int redraws = 0;
    int scrollChanges = 0;
    Gadget* focused = nullptr;
    int32_t cursor = 0;
};

class NoCanvas : public Canvas
{
public:
    void SetClip(const Place&) override { }
    void ClearClip() override { }
    void SetPen(Colour) override { }
    void SetTextColour(Colour) override { }
    void Fill(const Place&) override { }
    void Line(Point, Point) override { }
    void DrawBitmap(const VX3Bitmap*, const Place&, const Place&, bool) override { }
    void DrawText(std::u16string_view, Point) override { }
};

// A gadget with its children as a layout says; its text is as long as the number of its text.
inline std::unique_ptr<Gadget> MakeGadgets(Dialog& dialog, const LayoutNode& node)
{
    auto gadget = std::make_unique<Gadget>(dialog, node.shape);
    gadget->text = std::u16string(static_cast<size_t>(node.text), u'x');
    gadget->weights = node.weights;
    for (const LayoutNode& child : node.children) {
        gadget->children.push_back(MakeGadgets(dialog, child));
        gadget->children.back()->parent = gadget.get();
    }
    return gadget;
}

} // namespace vx3::gui

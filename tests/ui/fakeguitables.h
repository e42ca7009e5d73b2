// The functions of FakeGui's tables. Those that a folder pane does not call are none.
#pragma once

#include "fakegui.h"

namespace vx3::tests {

inline void FakeGui::FillDialogs()
{
    dialog.create = [](void* object, const VX3DialogTable* table) -> VX3Dialog {
        current->dialogs.push_back({ object, table, false });
        return current->dialogs.size();
    };
    dialog.free = [](VX3Dialog handle) { (void)current->Close(handle - 1); };
    dialog.open = [](VX3Dialog handle, const VX3WindowPlace*) -> VX3Bool { return current->Open(handle - 1); };
    dialog.close = [](VX3Dialog handle, int32_t) -> VX3Bool { return current->Close(handle - 1); };
    dialog.isOpen = [](VX3Dialog handle) -> VX3Bool { return At(handle).isOpen; };
    dialog.setTimer = [](VX3Dialog, int32_t milliseconds) -> VX3Bool {
        Note("timer " + std::to_string(milliseconds));
        return 1;
    };
    dialog.attach = [](VX3Dialog handle, VX3Dialog, int32_t) -> VX3Bool {
        current->pane = handle - 1;
        return At(handle).table->createLayout(At(handle).object);
    };
}

inline void FakeGui::FillGadgets()
{
    gadget.loadLayout = [](VX3Dialog, VX3Resources*, int32_t number) -> VX3Bool { return number == 10118; };
    gadget.update = [](VX3Dialog, int32_t) -> VX3Bool {
        current->LayOut();
        return 1;
    };
    gadget.enable = [](VX3Dialog, int32_t id, VX3Bool on) -> VX3Bool {
        current->enabled[id] = on;
        return 1;
    };
    gadget.hasFocus = [](VX3Dialog, int32_t id) -> VX3Bool { return id == current->focusInside; };
    gadget.setText = [](VX3Dialog, int32_t id, const VX3String* text) -> VX3Bool {
        current->texts[id] = core::ToUtf8(*text);
        return 1;
    };
    gadget.setRange = [](VX3Dialog, int32_t id, double, double, double step) -> VX3Bool {
        current->steps[id] = step;
        return 1;
    };
    gadget.setValue = [](VX3Dialog, int32_t id, double value) -> VX3Bool {
        current->values[id] = value;
        return 1;
    };
    gadget.getValue = [](VX3Dialog, int32_t id, double* value) -> VX3Bool {
        *value = current->values[id];
        return 1;
    };
    gadget.setIcon = [](VX3Dialog, int32_t id, int32_t icon, int32_t) -> VX3Bool {
        Note("icon " + Numbers({ id, icon }));
        return 1;
    };
    gadget.setBitmap = [](VX3Dialog, int32_t id, const VX3Bitmap* normal, const VX3Bitmap* second) -> VX3Bool {
        const auto widthOf = [](const VX3Bitmap* bitmap) { return bitmap ? browser::host->bitmap->width(bitmap) : 0; };
        Note("bitmap " + Numbers({ id, widthOf(normal), widthOf(second) }));
        return 1;
    };
    gadget.getVisiblePart = [](VX3Dialog, int32_t, VX3Rectangle* part) -> VX3Bool {
        if (!current->isSized)
            return 0;
        *part = { 0, current->scrolled, current->width, current->scrolled + current->height };
        return 1;
    };
    gadget.setVisiblePart = [](VX3Dialog, int32_t, const VX3Rectangle* part) -> VX3Bool {
        current->SetScrolled(part->y1);
        return 1;
    };
}

inline void FakeGui::FillArea()
{
    area.create = [](void* object, const VX3AreaTable* table) -> VX3Area {
        current->areaObject = object;
        current->areaTable = table;
        return onlyArea;
    };
    area.free = [](VX3Area) { current->isAttached = false; };
    area.attach = [](VX3Area, VX3Dialog, int32_t id) -> VX3Bool { return current->isAttached = id == 10122; };
    area.getSize = [](VX3Area, int32_t* areaWidth, int32_t* areaHeight) -> VX3Bool {
        *areaWidth = current->isSized ? current->width : 0;
        *areaHeight = current->contentHeight;
        return 1;
    };
    area.redraw = [](VX3Area, const VX3Rectangle*) -> VX3Bool {
        Note("redraw");
        return 1;
    };
    area.activate = [](VX3Area) -> VX3Bool { return current->hasFocus = true; };
    area.hasFocus = [](VX3Area) -> VX3Bool { return current->hasFocus; };
    area.toLocal = [](VX3Area, int32_t*, int32_t* y) -> VX3Bool {
        *y += current->scrolled;
        return 1;
    };
    area.post = [](VX3Area, int32_t code) -> VX3Bool {
        if (std::find(current->posted.begin(), current->posted.end(), code) == current->posted.end())
            current->posted.push_back(code);
        return 1;
    };
    area.trackRubberBand = [](VX3Area, int32_t, int32_t, uint32_t, VX3Rectangle* band) -> int32_t {
        Note("band");
        return current->onBand ? current->onBand(*band) : int32_t{ VX3_BAND_UNMOVED };
    };
}

inline void FakeGui::FillDrawing()
{
    draw.setClip = [](VX3Canvas, const VX3Rectangle* clip) { Line("clip " + Of(*clip)); };
    draw.clearClip = [](VX3Canvas) { Line("no clip"); };
    draw.setPen = [](VX3Canvas, int32_t colour) { Line("pen " + std::to_string(colour)); };
    draw.setTextColours = [](VX3Canvas, int32_t text, int32_t background) { Line("text colours " + Numbers({ text, background })); };
    draw.fillRectangle = [](VX3Canvas, const VX3Rectangle* filled) { Line("fill " + Of(*filled)); };
    draw.drawLine = [](VX3Canvas, int32_t x1, int32_t y1, int32_t x2, int32_t y2) { Line("line " + Of({ x1, y1, x2, y2 })); };
    draw.drawBitmap = [](VX3Canvas, const VX3Bitmap*, int32_t x, int32_t y, int32_t w, int32_t h, int32_t fromX, int32_t fromY,
                         int32_t fromWidth, int32_t fromHeight, uint32_t mode) {
        Line("bitmap " + Numbers({ fromX, fromY, fromWidth, fromHeight }) + " to " + Numbers({ x, y, w, h }) + " mode "
             + std::to_string(mode));
    };
    draw.drawText = [](VX3Canvas, const VX3Unit* units, int32_t count, int32_t x, int32_t y) {
        const std::u16string text(reinterpret_cast<const char16_t*>(units), static_cast<size_t>(count));
        Line("text " + core::Text(text).Utf8() + " at " + Numbers({ x, y }));
    };
    draw.textWidth = [](VX3Canvas, const VX3Unit*, int32_t count) -> int32_t { return 7 * count; };
    draw.fontHeight = [](VX3Canvas) -> int32_t { return 13; };
    draw.dots = [](VX3Canvas) -> int32_t { return 100; };
}

inline void FakeGui::FillMenus()
{
    menu.popup = [](VX3Dialog, const VX3Container* rows, int32_t, int32_t) -> int32_t {
        current->menuRows = RowsOf(rows);
        return current->onMenu ? current->onMenu() : 0;
    };
    menu.drag = [](VX3Area, int32_t type, void* data) -> VX3Bool { return current->onDrag && current->onDrag(type, data); };
    menu.setDragResult = [](int32_t cursor) { current->dragResult = cursor; };
    box.reveal = [](const VX3Path* path) -> VX3Bool {
        Note("reveal " + core::NativeBytes(*path));
        return current->opensFiles;
    };
    box.openWithSystem = [](const VX3Path* path) -> VX3Bool {
        Note("open " + core::NativeBytes(*path));
        return current->opensFiles;
    };
    box.show = [](int32_t kind, const VX3String* text) {
        Note("box " + std::to_string(kind) + " " + core::ToUtf8(*text));
        if (current->onBox)
            current->onBox();
    };
}

} // namespace vx3::tests

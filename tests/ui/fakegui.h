// A GUI section for one window with one pane and one area: no toolkit and hardly a layout.
// Drawing is kept as lines of text, in a font of 7 by 13; a test plays the user and the host.
// The functions of the tables stand in fakeguitables.h.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/values.h"
#include "services/basecontainer.h"
#include "vx3/gui.h"

namespace vx3::tests {

class FakeGui
{
public:
    FakeGui();
    ~FakeGui() { current = nullptr; }
    FakeGui(const FakeGui&) = delete;
    FakeGui& operator=(const FakeGui&) = delete;

    const VX3GuiServices* Services() const { return &services; }

    // The host.
    int32_t width = 270, height = 160;                 // of what the scroll group shows
    bool hasFocus = true;                              // of the area
    int32_t focusInside = 0;                           // or a gadget that has it inside
    std::function<int32_t(VX3Rectangle& band)> onBand; // these four run nested
    std::function<bool(int32_t type, void* data)> onDrag;
    std::function<int32_t()> onMenu;
    std::function<void()> onBox;
    bool opensFiles = true;
    void Resize(int32_t newWidth, int32_t newHeight); // sizes, then what is told of them
    void BeginResize(int32_t newWidth, int32_t newHeight);
    void Deliver();                                                      // posted messages
    bool Tell(int32_t code, const browser::BaseContainer& message = {}); // to the area, then to the pane
    bool TellDrag(int32_t type, void* data, int32_t x, int32_t y, int32_t phase = 0, int32_t gadgetId = 10122);

    // The user; places are those of the area.
    bool Press(int32_t channel, int32_t x, int32_t y, uint32_t qualifiers = 0, bool isDouble = false);
    bool Key(int32_t code, uint32_t qualifiers = 0);
    void Scroll(int32_t top);
    bool Use(int32_t gadgetId, double value = 0);
    void Tick();

    // What happened since the last time: a line for each drawing call, and calls in a row.
    std::string Draw(VX3Rectangle dirty);
    std::string Calls() { return std::exchange(calls, {}); }

    // What stands in the gadgets.
    std::map<int32_t, std::string> texts;
    std::map<int32_t, double> values, steps;
    std::map<int32_t, bool> enabled;
    int32_t scrolled = 0;
    int32_t contentHeight = 0;
    int32_t dragResult = 0;
    std::string menuRows; // of the last popup menu: numbers and texts, a bar for a separator

private:
    struct Dialog {
        void* object = nullptr;
        const VX3DialogTable* table = nullptr;
        bool isOpen = false;
    };
    static constexpr VX3Area onlyArea = 77;

    void FillDialogs();
    void FillGadgets();
    void FillArea();
    void FillDrawing();
    void FillMenus();
    bool Open(size_t opened);
    bool Close(size_t closed);
    void LayOut();
    void SetScrolled(int32_t top) { scrolled = std::max(0, std::min(top, contentHeight - height)); }
    bool Send(const VX3Container* event) { return areaTable->input(areaObject, event); }
    static Dialog& At(VX3Dialog handle) { return current->dialogs[handle - 1]; }
    static void Note(const std::string& call) { current->calls += (current->calls.empty() ? "" : "; ") + call; }
    static void Line(const std::string& line) { current->drawn += line + "\n"; }
    static std::string Numbers(std::initializer_list<int64_t> numbers);
    static std::string Of(const VX3Rectangle& r) { return Numbers({ r.x1, r.y1, r.x2, r.y2 }); }
    static std::string RowsOf(const VX3Container* menu);

    static inline FakeGui* current = nullptr;

    std::vector<Dialog> dialogs; // a handle is the place and 1
    size_t pane = 0;             // the one that was attached
    bool isSized = false;
    void* areaObject = nullptr;
    const VX3AreaTable* areaTable = nullptr;
    bool isAttached = false;
    std::vector<int32_t> posted;
    std::string calls, drawn;

    VX3DialogServices dialog = {};
    VX3GadgetServices gadget = {};
    VX3AreaServices area = {};
    VX3DrawServices draw = {};
    VX3MenuServices menu = {};
    VX3BoxServices box = {};
    VX3GuiServices services = {};
};

// --- The host ---

inline FakeGui::FakeGui()
{
    current = this;
    FillDialogs();
    FillGadgets();
    FillArea();
    FillDrawing();
    FillMenus();
    services = { &dialog, &gadget, &area, &draw, nullptr, &menu, &box };
}

// The sizes are not known before the window has been opened.
inline bool FakeGui::Open(size_t opened)
{
    if (dialogs[opened].isOpen || !dialogs[opened].table->createLayout(dialogs[opened].object))
        return false;
    dialogs[pane].isOpen = dialogs[opened].isOpen = true;
    if (!dialogs[pane].table->initValues(dialogs[pane].object) || !dialogs[opened].table->initValues(dialogs[opened].object))
        return false;
    Resize(width, height);
    return true;
}

inline bool FakeGui::Close(size_t closed)
{
    if (!dialogs[closed].isOpen)
        return false;
    (void)Tell(VX3_GUI_HIDING);
    dialogs[pane].table->destroyWindow(dialogs[pane].object);
    dialogs[closed].table->destroyWindow(dialogs[closed].object);
    dialogs[pane].isOpen = dialogs[closed].isOpen = isAttached = isSized = false;
    scrolled = contentHeight = 0;
    posted.clear();
    return true;
}

// Asks twice, as a host does that looks whether a bar is needed.
inline void FakeGui::LayOut()
{
    if (!isSized || !isAttached)
        return;
    int32_t neededWidth = 0, neededHeight = 0;
    for (int i = 0; i < 2; i++)
        areaTable->minSize(areaObject, &neededWidth, &neededHeight);
    contentHeight = std::max(height, neededHeight);
    SetScrolled(scrolled);
}

inline void FakeGui::Resize(int32_t newWidth, int32_t newHeight)
{
    BeginResize(newWidth, newHeight);
    Deliver();
}

inline void FakeGui::BeginResize(int32_t newWidth, int32_t newHeight)
{
    width = newWidth;
    height = newHeight;
    isSized = true;
    LayOut();
    (void)Tell(VX3_GUI_RESIZED);
}

inline void FakeGui::Deliver()
{
    for (int32_t code : std::exchange(posted, {}))
        (void)areaTable->message(areaObject, code, browser::BaseContainer().Value());
}

inline bool FakeGui::Tell(int32_t code, const browser::BaseContainer& message)
{
    browser::BaseContainer result;
    if (isAttached && areaTable->message(areaObject, code, message.Value()))
        return true;
    return dialogs[pane].table->message(dialogs[pane].object, code, message.Value(), result.Value());
}

// The screen begins where what is seen of the area does.
inline bool FakeGui::TellDrag(int32_t type, void* data, int32_t x, int32_t y, int32_t phase, int32_t gadgetId)
{
    browser::BaseContainer message;
    (void)message.SetInt32(VX3_DRAG_KEY_TYPE, type);
    (void)message.SetInt32(VX3_DRAG_KEY_X, x);
    (void)message.SetInt32(VX3_DRAG_KEY_Y, y - scrolled);
    (void)message.SetInt32(VX3_DRAG_KEY_GADGET, gadgetId);
    if (data)
        (void)browser::host->container->setPointer(message.Value(), VX3_DRAG_KEY_DATA, data);
    if (phase)
        (void)browser::host->container->setBool(message.Value(), phase, 1);
    dragResult = 0;
    browser::BaseContainer result;
    return dialogs[pane].table->message(dialogs[pane].object, VX3_GUI_DRAG, message.Value(), result.Value());
}

// --- The user ---

inline bool FakeGui::Press(int32_t channel, int32_t x, int32_t y, uint32_t qualifiers, bool isDouble)
{
    browser::BaseContainer event;
    (void)event.SetInt32(VX3_INPUT_DEVICE, VX3_DEVICE_MOUSE);
    (void)event.SetInt32(VX3_INPUT_CHANNEL, channel);
    (void)event.SetInt32(VX3_INPUT_VALUE, 1);
    (void)event.SetInt32(VX3_INPUT_X, x);
    (void)event.SetInt32(VX3_INPUT_Y, y);
    (void)event.SetInt32(VX3_INPUT_QUALIFIERS, static_cast<int32_t>(qualifiers));
    (void)event.SetInt32(VX3_INPUT_DOUBLE, isDouble);
    return Send(event.Value());
}

inline bool FakeGui::Key(int32_t code, uint32_t qualifiers)
{
    browser::BaseContainer event;
    (void)event.SetInt32(VX3_INPUT_DEVICE, VX3_DEVICE_KEYBOARD);
    (void)event.SetInt32(VX3_INPUT_CHANNEL, code);
    (void)event.SetInt32(VX3_INPUT_QUALIFIERS, static_cast<int32_t>(qualifiers));
    return Send(event.Value());
}

inline void FakeGui::Scroll(int32_t top)
{
    SetScrolled(top);
    (void)Tell(VX3_GUI_SCROLLED);
}

inline bool FakeGui::Use(int32_t gadgetId, double value)
{
    values[gadgetId] = value;
    return dialogs[pane].table->command(dialogs[pane].object, gadgetId, browser::BaseContainer().Value());
}

inline void FakeGui::Tick()
{
    dialogs[pane].table->timer(dialogs[pane].object);
}

// --- What happened ---

inline std::string FakeGui::Draw(VX3Rectangle dirty)
{
    drawn.clear();
    areaTable->draw(areaObject, onlyArea, &dirty);
    return std::exchange(drawn, {});
}

inline std::string FakeGui::Numbers(std::initializer_list<int64_t> numbers)
{
    std::string text;
    for (int64_t number : numbers)
        text += (text.empty() ? "" : " ") + std::to_string(number);
    return text;
}

inline std::string FakeGui::RowsOf(const VX3Container* menu)
{
    const VX3ContainerServices& containers = *browser::host->container;
    std::string rows;
    for (int32_t i = 0, key = 0, type = 0; i < containers.count(menu); i++) {
        core::Text text;
        (void)containers.entryAt(menu, i, &key, &type);
        (void)containers.getText(menu, key, text.Get());
        rows += (rows.empty() ? "" : ", ") + (text.Utf8().empty() ? "|" : std::to_string(key) + " " + text.Utf8());
    }
    return rows;
}

} // namespace vx3::tests

#include "fakeguitables.h"

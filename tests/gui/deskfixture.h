// A desk over a toolkit that shows nothing, and the dialogs and areas of a module that write
// down what is called. What the user does in a nested operation is a function of the test.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <map>

#include "core/corehost.h"
#include "core/message.h"
#include "core/services.h"
#include "core/values.h"
#include "gui/containervalue.h"
#include "gui/desk.h"
#include "gui/messages.h"
#include "plaintoolkit.h"

namespace vx3::gui {

// Lines that were written since the last look.
class Log
{
public:
    void Add(const std::string& line) { lines += (lines.empty() ? "" : ", ") + line; }
    std::string Take() { return std::exchange(lines, {}); }

private:
    std::string lines;
};

class FakeToolkit : public PlainToolkit
{
public:
    explicit FakeToolkit(Log& ownLog)
        : log(ownLog)
    {
    }

    void OpenWindow(Dialog& window) override { windows.push_back(&window); }
    void CloseWindow(Dialog& window) override
    {
        std::erase(windows, &window);
        ++closedWindows;
    }
    void MakeGadget(Gadget& gadget) override
    {
        EXPECT_TRUE(!gadget.parent || made.count(gadget.parent)) << "a parent is made before its children";
        EXPECT_TRUE(made.insert({ &gadget, gadget.dialog }).second);
    }
    void DropGadget(Gadget& gadget) override
    {
        EXPECT_EQ(made.erase(&gadget), 1u) << "what is dropped was made, and only once";
        for (const auto& child : gadget.children)
            EXPECT_FALSE(made.count(child.get())) << "children are dropped first";
    }
    void FocusGadget(Gadget& gadget) override { desk->FocusMoved(gadget.dialog->Window(), &gadget); }
    void ResizeWindow(Dialog&, Size inside) override { resized = inside; }
    void ShowGadget(Gadget& gadget, Change change) override
    {
        PlainToolkit::ShowGadget(gadget, change);
        shown.push_back({ gadget.shape.id, change });
        onShow();
    }
    void RunModal(Dialog& window) override
    {
        modalEnded = false;
        onModal(window);
        EXPECT_TRUE(modalEnded || window.IsOpen());
    }
    void EndModal(Dialog&) override { modalEnded = true; }
    Dialog* WindowAt(Point screen) override
    {
        for (auto window = windows.rbegin(); window != windows.rend(); ++window)
            if (Place{ 1000, 500, (*window)->size.width, (*window)->size.height }.Has(screen))
                return *window;
        return nullptr;
    }
    Band TrackRubberBand(Gadget& gadget, Point) override { return onBand(gadget); }
    void RunDrag(Gadget& gadget) override { onDrag(gadget); }
    int32_t RunPopup(Dialog&, const std::vector<MenuItem>& rows, Point corner) override
    {
        popupCorner = corner;
        return onPopup(rows);
    }
    void CancelNested(Dialog&) override { ++cancels; }
    void ShowMenu(Dialog& window) override { menu = window.menu; }
    void OpenPopupEdit(Dialog&, const Place&, const std::u16string& text) override { edited = text; }
    void ClosePopupEdit() override { edited.clear(); }
    void WakeAt(int64_t milliseconds) override { wakeAt = milliseconds; }
    void WakeUp() override { ++wakeUps; }
    void ShowBox(int32_t, const std::u16string&) override { onBox(); }
    uint32_t PointerState(Point& screen) override
    {
        screen = { 1011, 522 };
        return 0;
    }
    void Redraw(Gadget& gadget, const Place& part) override
    {
        PlainToolkit::Redraw(gadget, part);
        redrawn = part;
    }

    Log& log;
    Desk* desk = nullptr;
    std::vector<Dialog*> windows;
    std::map<const Gadget*, const Dialog*> made;
    int closedWindows = 0;
    Size resized;
    std::vector<std::pair<int32_t, Change>> shown;
    bool modalEnded = false;
    std::function<void(Dialog&)> onModal = [](Dialog&) {};
    std::function<Band(Gadget&)> onBand = [](Gadget&) { return Band{}; };
    std::function<void(Gadget&)> onDrag = [](Gadget&) {};
    std::function<int32_t(const std::vector<MenuItem>&)> onPopup = [](const std::vector<MenuItem>&) { return 0; };
    std::function<void()> onBox = [] {};
    std::function<void()> onShow = [] {};
    Point popupCorner;
    int cancels = 0;
    std::vector<MenuItem> menu;
    std::u16string edited;
    int64_t wakeAt = -1;
    std::atomic<int> wakeUps{ 0 };
    Place redrawn;
};

inline VX3GadgetShape ShapeOf(int32_t kind, int32_t id, uint32_t flags = 0, int32_t width = 0, int32_t height = 0)
{
    return { kind, id, flags, width, height, 1 };
}
constexpr uint32_t fills = VX3_FLAG_FIT_H | VX3_FLAG_FIT_V | VX3_FLAG_SCALE_H | VX3_FLAG_SCALE_V;

// Code of four letters as text, another number in digits.
inline std::string CodeText(int32_t code)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(code >> shift);
    return code > 0x20000000 ? text : std::to_string(code);
}

// What a module has under a dialog: writes every callback into the log, and does what the
// test puts under the callback's name.
class ModuleDialog
{
public:
    ModuleDialog(Log& ownLog, std::string ownName);
    ~ModuleDialog() { Free(); }
    void Create(); // anew, after Free
    void Free()
    {
        if (handle)
            Desk::Services()->dialog->free(std::exchange(handle, 0));
    }
    bool Open(VX3WindowPlace place = { 7, 0, -1, -1, 300, 200 }) { return Desk::Services()->dialog->open(handle, &place); }
    bool IsOpen() const { return Desk::Services()->dialog->isOpen(handle); }
    VX3Bool Note(const std::string& callback)
    {
        log.Add(name + " " + callback);
        if (auto found = on.find(callback); found != on.end() && found->second)
            std::function<void()>(found->second)();
        return answers.count(callback) ? answers[callback] : callback != "askClose";
    }

    Log& log;
    const std::string name;
    std::map<std::string, std::function<void()>> on;
    std::map<std::string, VX3Bool> answers;
    std::function<void(int32_t, const VX3Container*, VX3Container*)> onMessage;
    std::function<void(int32_t, const VX3Container*)> onCommand;
    bool hearsFocus = false; // writes focus messages down
    VX3Dialog handle = 0;
};

inline bool IsFocusMessage(int32_t code)
{
    return code == VX3_GUI_FOCUS_GOT || code == VX3_GUI_FOCUS_LOST;
}

inline ModuleDialog::ModuleDialog(Log& ownLog, std::string ownName)
    : log(ownLog)
    , name(std::move(ownName))
{
    Create();
}

inline void ModuleDialog::Create()
{
    static const VX3DialogTable table = {
        [](void* object) { return static_cast<ModuleDialog*>(object)->Note("createLayout"); },
        [](void* object) { return static_cast<ModuleDialog*>(object)->Note("initValues"); },
        [](void* object, int32_t id, const VX3Container* event) {
            auto* self = static_cast<ModuleDialog*>(object);
            if (self->onCommand)
                self->onCommand(id, event);
            return self->Note("command " + std::to_string(id));
        },
        [](void* object) { static_cast<ModuleDialog*>(object)->Note("timer"); },
        [](void* object, int32_t id, const VX3Container*) { static_cast<ModuleDialog*>(object)->Note("core " + std::to_string(id)); },
        [](void* object, int32_t code, const VX3Container* message, VX3Container* result) {
            auto* self = static_cast<ModuleDialog*>(object);
            if (self->onMessage)
                self->onMessage(code, message, result);
            return IsFocusMessage(code) && !self->hearsFocus ? 0 : self->Note(CodeText(code));
        },
        [](void* object) { return static_cast<ModuleDialog*>(object)->Note("askClose"); },
        [](void* object) { static_cast<ModuleDialog*>(object)->Note("destroyWindow"); },
    };
    handle = Desk::Services()->dialog->create(this, &table);
}

// The same for an area, of a least size that the test sets.
class ModuleArea
{
public:
    ModuleArea(Log& ownLog, std::string ownName);
    ~ModuleArea() { Free(); }
    void Free()
    {
        if (handle)
            Desk::Services()->area->free(std::exchange(handle, 0));
    }
    VX3Bool Note(const std::string& callback)
    {
        log.Add(name + " " + callback);
        if (auto found = on.find(callback); found != on.end() && found->second)
            std::function<void()>(found->second)();
        return 1;
    }

    Log& log;
    const std::string name;
    std::map<std::string, std::function<void()>> on;
    std::function<void(VX3Canvas, const VX3Rectangle&)> onDraw;
    std::function<void(const VX3Container*)> onInput;
    Size least = { 50, 40 };
    VX3Area handle = 0;
};

inline ModuleArea::ModuleArea(Log& ownLog, std::string ownName)
    : log(ownLog)
    , name(std::move(ownName))
{
    static const VX3AreaTable table = {
        [](void* object, int32_t* width, int32_t* height) {
            *width = static_cast<ModuleArea*>(object)->least.width;
            *height = static_cast<ModuleArea*>(object)->least.height;
        },
        [](void* object, VX3Canvas canvas, const VX3Rectangle* dirty) {
            auto* self = static_cast<ModuleArea*>(object);
            if (self->onDraw)
                self->onDraw(canvas, *dirty);
        },
        [](void* object, const VX3Container* event) {
            auto* self = static_cast<ModuleArea*>(object);
            if (self->onInput)
                self->onInput(event);
            return self->Note("input");
        },
        [](void* object, int32_t code, const VX3Container*) { return static_cast<ModuleArea*>(object)->Note(CodeText(code)); },
    };
    handle = Desk::Services()->area->create(this, &table);
}

// One core host, one toolkit, one desk. At the end everything of it is gone.
class DeskTest : public testing::Test
{
protected:
    DeskTest() { toolkit.desk = &desk; }
    ~DeskTest() override { EXPECT_EQ(desk.ThreadViolations(), expectedViolations); }

    static const VX3DialogServices& Dialogs() { return *Desk::Services()->dialog; }
    static const VX3GadgetServices& Gadgets() { return *Desk::Services()->gadget; }
    static const VX3AreaServices& Areas() { return *Desk::Services()->area; }
    static const VX3MenuServices& Menus() { return *Desk::Services()->menu; }
    static const VX3DrawServices& Drawing() { return *Desk::Services()->draw; }

    static bool Add(const ModuleDialog& dialog, const VX3GadgetShape& shape, const char* text = nullptr)
    {
        const core::Text shown(text ? text : "");
        return Gadgets().add(dialog.handle, &shape, text ? shown.Get() : nullptr, nullptr);
    }
    static bool Begin(const ModuleDialog& dialog, const VX3GadgetShape& shape) { return Gadgets().begin(dialog.handle, &shape, nullptr); }
    // The dialog behind a window that was opened last or before.
    Dialog& WindowOf(size_t index = 0) { return *desk.Windows().at(index); }
    Gadget& Find(int32_t id, size_t window = 0)
    {
        Gadget* gadget = desk.FindGadget(WindowOf(window), id);
        EXPECT_NE(gadget, nullptr);
        return *gadget;
    }
    void Advance(int64_t milliseconds)
    {
        toolkit.now += milliseconds;
        desk.RunTimers();
    }
    static bool Post(int32_t id, int64_t first = 0, int64_t second = 0, const VX3Container* data = nullptr)
    {
        return core::MessageServices()->postCore(id, first, second, data);
    }

    core::CoreHost host{ core::HostSettings() };
    Log log;
    FakeToolkit toolkit{ log };
    Desk desk{ toolkit };
    uint64_t expectedViolations = 0;
};

} // namespace vx3::gui

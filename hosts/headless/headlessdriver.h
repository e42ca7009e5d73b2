// A user for a host without a screen: gestures go straight to the toolkit and the desk,
// and after each of them the main loop turns once.
//
// Points are in the contents of a gadget, as its module counts them, whatever is scrolled
// away. What a user could not do is a failure: a point that cannot be seen, a gadget that
// is hidden, a window that a modal one holds up, a value that is none of a gadget's.
//
// Main thread only.
#pragma once

#include <functional>

#include "gui/script.h"
#include "headless/headlesstoolkit.h"

namespace vx3::headless {

class HeadlessDriver : public gui::Driver
{
public:
    HeadlessDriver(gui::Desk& ownDesk, HeadlessToolkit& ownToolkit)
        : desk(ownDesk)
        , toolkit(ownToolkit)
    {
    }
    // Does a module still work on something that will be shown? Asked by Settle.
    void SetWorking(std::function<bool()> function) { isWorking = std::move(function); }

    void Mouse(gui::Gadget& gadget, gui::Point at, int32_t channel, uint32_t qualifiers, bool isPressed, bool isDouble) override;
    void MoveMouse(gui::Gadget& gadget, gui::Point at, uint32_t qualifiers) override;
    void Wheel(gui::Gadget& gadget, gui::Point at, int32_t value, uint32_t qualifiers) override;
    void Key(gui::Dialog& window, int32_t code, uint32_t qualifiers, const std::u16string& text) override;
    void Push(gui::Gadget& gadget) override;
    void SetValue(gui::Gadget& gadget, double value) override;
    void SetText(gui::Gadget& gadget, const std::u16string& text) override;
    void ChooseMenu(gui::Dialog& window, int32_t id) override;
    void Close(gui::Dialog& window) override;
    void Answer(const std::string& answer) override;
    void Advance(int milliseconds) override;
    void Settle() override;
    bool Shot(gui::Dialog& window, const std::string& file) override;
    std::string DumpDisplayList(gui::Dialog& window) override;
    std::string DumpMenu() override;
    bool TakeRefusal() override { return toolkit.User().TakeRefusal(); }

private:
    bool CanUse(gui::Dialog& window);
    bool CanUse(gui::Gadget& gadget);
    bool CanPointAt(gui::Gadget& gadget, gui::Point at);
    void Press(gui::Gadget& gadget, const gui::Input& input);
    void Release(gui::Gadget& gadget, gui::Point at, int32_t channel);
    void KeyInPopup(const gui::Input& input);
    void KeyInWindow(gui::Dialog& window, const gui::Input& input);
    void FocusNext(gui::Dialog& window, bool goesBack);
    bool IsQuiet() const;

    gui::Desk& desk;
    HeadlessToolkit& toolkit;
    std::function<bool()> isWorking;
    gui::Gadget* pressed = nullptr; // by the left button; compared, never followed
};

} // namespace vx3::headless

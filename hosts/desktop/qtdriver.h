// Scripts on Qt: every gesture is an event that goes through Qt's queue to the widget that a
// user would have reached with it.
//
// Things that a user could not do, and questions that find no answer, are failures of the
// script. Main thread only.
#pragma once

#include <functional>
#include <string>

#include <QEvent>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include "gui/script.h"
#include "headless/scripteduser.h"
#include "qttoolkit.h"

namespace vx3::desktop {

class QtDriver final : public gui::Driver, private ScriptHost
{
public:
    QtDriver(gui::Desk& ownDesk, QtToolkit& ownToolkit);
    // Does a module still work on something that will be shown? Asked by Settle.
    void SetWorking(std::function<bool()> function) { isWorking = std::move(function); }

    // Plays a script to its end. Answers an empty text, or what did not go as it says; the rest
    // of the script is left then.
    std::string RunScript(const std::string& text, gui::ScriptProgram program, std::function<void(const std::string& line)> output);

    void Mouse(Gadget& gadget, Point at, int32_t channel, uint32_t qualifiers, bool isPressed, bool isDouble) override;
    void MoveMouse(Gadget& gadget, Point at, uint32_t qualifiers) override;
    void Wheel(Gadget& gadget, Point at, int32_t value, uint32_t qualifiers) override;
    void Key(Dialog& window, int32_t code, uint32_t qualifiers, const std::u16string& text) override;
    void Push(Gadget& gadget) override;
    void SetValue(Gadget& gadget, double value) override;
    void SetText(Gadget& gadget, const std::u16string& text) override;
    void ChooseMenu(Dialog& window, int32_t id) override;
    void Close(Dialog& window) override;
    void Answer(const std::string& answer) override { user.Queue(answer); }
    void Advance(int milliseconds) override;
    void Settle() override;
    bool Shot(Dialog& window, const std::string& file) override;
    std::string DumpDisplayList(Dialog& window) override; // a failure: drawings are not kept
    std::string DumpMenu() override { return user.Shown(); }
    bool TakeRefusal() override { return user.TakeRefusal(); }

private:
    // What a point of a gadget is on the screen.
    struct Spot {
        QWidget* widget = nullptr; // none: it cannot be seen
        QPoint screen;
    };

    bool Step(const char* nested) override;
    int32_t ChooseFrom(QMenu& menu, const std::vector<gui::MenuItem>& rows) override;
    bool Ask(const std::string& question, std::string& answer) override;
    void Show(const std::string& text) override { user.Show(text); }
    void Fail(const std::string& why) override { user.Fail(why); }
    std::string FolderOfScenario() override { return folder; }

    Spot SpotOf(Gadget& gadget, Point at) const;
    bool CanUse(Gadget& gadget);
    void Press(Gadget& gadget, Point at, Qt::MouseButton button, uint32_t qualifiers, bool isDouble);
    void SendMouse(QEvent::Type type, QPoint screen, Qt::MouseButton button, uint32_t qualifiers);
    void Activate(Dialog& window);
    void Turn(); // of the main loop
    bool IsQuiet() const;

    gui::Desk& desk;
    QtToolkit& toolkit;
    headless::ScriptedUser user;
    std::function<bool()> isWorking;
    std::function<bool()> step;
    std::string folder;
    Qt::MouseButtons held;
    QPointer<QWindow> pointed; // got the press, and gets all up to the release
    QPoint pointer;            // on the screen
    int time = 0;              // ms, as the events say
};

} // namespace vx3::desktop

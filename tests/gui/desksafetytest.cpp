// What must not leave the desk: exceptions. A toolkit that has no memory stands for all of it.

#include <new>

#include "core/resources.h"
#include "deskfixture.h"
#include "gui/treestate.h"

using namespace vx3;
using namespace vx3::gui;

namespace {

enum : int32_t { AreaPlace = 3, TextPlace = 4, ButtonPlace = 5, SliderPlace = 6, NewPlace = 7 };

// Throws in every operation from a given one on.
class PoorToolkit : public FakeToolkit
{
public:
    using FakeToolkit::FakeToolkit;

    void Spend()
    {
        if (isPoor && left-- <= 0)
            throw std::bad_alloc();
    }
    void OpenWindow(Dialog& window) override
    {
        Spend();
        FakeToolkit::OpenWindow(window);
    }
    void MakeGadget(Gadget& gadget) override
    {
        Spend();
        FakeToolkit::MakeGadget(gadget);
    }
    void ShowGadget(Gadget& gadget, Change change) override
    {
        Spend();
        FakeToolkit::ShowGadget(gadget, change);
    }
    Size NeedOf(const Gadget& gadget) override
    {
        const_cast<PoorToolkit*>(this)->Spend();
        return FakeToolkit::NeedOf(gadget);
    }
    void ResizeWindow(Dialog& window, Size inside) override
    {
        Spend();
        FakeToolkit::ResizeWindow(window, inside);
    }
    void FocusGadget(Gadget& gadget) override
    {
        Spend();
        FakeToolkit::FocusGadget(gadget);
    }
    int TextWidth(std::u16string_view text) override
    {
        Spend();
        return FakeToolkit::TextWidth(text);
    }
    void ShowTitle(Dialog&) override { Spend(); }
    void SetCursor(int32_t) override { Spend(); }
    void OpenPopupEdit(Dialog&, const Place&, const std::u16string&) override { Spend(); }
    bool Ask(const std::u16string&) override
    {
        Spend();
        return true;
    }
    void RunModal(Dialog&) override { Spend(); }

    bool isPoor = false;
    int left = 0;
};

class DeskSafety : public testing::Test
{
protected:
    DeskSafety()
    {
        toolkit.desk = &desk;
        window.on["createLayout"] = [this] {
            for (const int32_t kind : { VX3_GADGET_AREA, VX3_GADGET_TEXT, VX3_GADGET_BUTTON, VX3_GADGET_SLIDER }) {
                const VX3GadgetShape shape = ShapeOf(kind, AreaPlace + kindCount++);
                Services().gadget->add(window.handle, &shape, core::Text(std::string_view("x")).Get(), nullptr);
            }
            Services().area->attach(area.handle, window.handle, AreaPlace);
            kindCount = 0;
        };
    }
    static const VX3GuiServices& Services() { return *Desk::Services(); }
    Gadget& Find(int32_t id) { return *desk.FindGadget(*desk.Windows().at(0), id); }

    core::CoreHost host{ core::HostSettings() };
    Log log;
    PoorToolkit toolkit{ log };
    Desk desk{ toolkit };
    ModuleDialog window{ log, "W" };
    ModuleArea area{ log, "area" };
    int kindCount = 0;
};

TEST_F(DeskSafety, AWindowThatThereIsNoMemoryForIsNotOpen)
{
    toolkit.isPoor = true;
    int failed = 0;
    for (; failed < 1000; ++failed) {
        toolkit.left = failed;
        const bool isOpen = window.Open({ 7, 0, -1, -1, 0, 0 });
        EXPECT_EQ(isOpen, window.IsOpen());
        if (isOpen)
            break;
        EXPECT_TRUE(desk.Windows().empty() && toolkit.windows.empty() && toolkit.made.empty()) << failed;
        desk.Deliver();
    }
    EXPECT_GT(failed, 10) << "it failed at each step";
    EXPECT_LT(failed, 1000);
    toolkit.isPoor = false;
    window.Free();
    EXPECT_TRUE(toolkit.windows.empty() && toolkit.made.empty());
}

TEST_F(DeskSafety, ACallWithoutMemoryAnswersZero)
{
    ASSERT_TRUE(window.Open());
    toolkit.isPoor = true;
    toolkit.left = 0;
    const VX3Dialog handle = window.handle;
    const core::Text text(std::string_view("longer"));
    const VX3GadgetShape shape = ShapeOf(VX3_GADGET_TEXT, NewPlace);
    const VX3GadgetShape group = ShapeOf(VX3_GADGET_GROUP, NewPlace);
    const VX3Rectangle place = { 0, 0, 10, 10 };
    EXPECT_FALSE(Services().gadget->add(handle, &shape, text.Get(), nullptr) || Services().gadget->exists(handle, NewPlace));
    EXPECT_FALSE(Services().gadget->begin(handle, &group, nullptr) || Services().gadget->exists(handle, NewPlace));
    EXPECT_FALSE(Services().gadget->setText(handle, TextPlace, text.Get()));
    EXPECT_FALSE(Services().gadget->update(handle, 0));
    EXPECT_FALSE(Services().gadget->focus(handle, ButtonPlace) || Services().area->activate(area.handle));
    EXPECT_FALSE(Services().dialog->setTitle(handle, text.Get()));
    EXPECT_FALSE(Services().box->ask(text.Get()));
    EXPECT_EQ(Services().draw->textWidth(0, reinterpret_cast<const VX3Unit*>(u"ab"), 2), 0);
    EXPECT_FALSE(Services().menu->popupEdit(
        handle, &place, text.Get(), [](void*, int32_t, const VX3String*) {}, nullptr));
    Services().menu->setCursor(VX3_CURSOR_BUSY);
    EXPECT_TRUE(window.IsOpen());
    toolkit.isPoor = false;
    EXPECT_TRUE(Services().gadget->add(handle, &shape, text.Get(), nullptr) && Services().gadget->update(handle, 0));
}

TEST_F(DeskSafety, WhatAUserDoesIsLeftUndoneRatherThanThrown)
{
    ASSERT_TRUE(window.Open());
    toolkit.isPoor = true;
    toolkit.left = 0;
    EXPECT_NO_THROW(desk.UserSetValue(Find(SliderPlace), 1000));
    EXPECT_NO_THROW(desk.UserResized(*desk.Windows().at(0), { 400, 300 }));
    EXPECT_NO_THROW(desk.PaletteChanged());
    window.on["close"] = nullptr;
    window.on["command 5"] = [&] { Services().dialog->close(window.handle, 0); };
    EXPECT_NO_THROW(desk.UserPressed(Find(ButtonPlace)));
    EXPECT_FALSE(window.IsOpen());
    EXPECT_TRUE(toolkit.made.empty());
    ModuleDialog modal{ log, "M" };
    const VX3WindowPlace place = { 7, 0, -1, -1, 30, 20 };
    toolkit.left = 1; // it opens, and cannot be run
    EXPECT_EQ(Services().dialog->openModal(modal.handle, &place), 0);
    EXPECT_FALSE(modal.IsOpen());
}

} // namespace

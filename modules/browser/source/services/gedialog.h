// Dialogs of the module over the host's: a window, one inside another, and one that holds
// up the rest.
//
// Main thread only. A dialog lives as long as its owner wants and is opened and closed any
// number of times; nothing may be expected of its gadgets while it is closed: every call
// then answers false, zero or an empty text. Without a GUI section none ever opens.
#pragma once

#include "services/allocation.h"
#include "services/basecontainer.h"
#include "services/geometry.h"
#include "services/hostbitmap.h"
#include "vx3/gui.h"

namespace browser {

class SubDialog;

// What is common to all: gadgets by number, and the callbacks.
class DialogBase
{
public:
    DialogBase() = default;
    virtual ~DialogBase();
    static void operator delete(void* block) { HostFree(block); }
    DialogBase(const DialogBase&) = delete;
    DialogBase& operator=(const DialogBase&) = delete;

    bool IsOpen() const;
    VX3Dialog Handle() const { return handle; }
    bool SetTimer(int32_t milliseconds); // 0 stops it
    bool PostMessage(int32_t code);      // comes back as Message, later

    // Layout.
    bool LoadLayout(int32_t number);
    bool BeginGroup(const VX3GadgetShape& shape, const String* title = nullptr);
    bool EndGroup();
    bool AddGadget(const VX3GadgetShape& shape, const String* text = nullptr, const String* tip = nullptr);
    bool FlushGroup(int32_t group);    // empties it and makes it the current one
    bool LayoutChanged(int32_t group); // at once; 0 for all of it
    bool AttachSubDialog(SubDialog& sub, int32_t gadget);
    bool SetWeights(int32_t splitter, const BaseContainer& weights);
    bool GetWeights(int32_t splitter, BaseContainer& weights) const;

    // Gadgets.
    bool HasGadget(int32_t id) const;
    bool Enable(int32_t id, bool enabled);
    bool Show(int32_t id, bool shown);
    bool Focus(int32_t id);
    bool HasFocus(int32_t id) const;
    bool SetText(int32_t id, const String& text);
    String GetText(int32_t id) const;
    bool SetRange(int32_t id, double least, double most, double step);
    bool SetValue(int32_t id, double value);
    double GetValue(int32_t id) const;
    bool SetIcon(int32_t id, int32_t normal, int32_t second = 0);
    bool SetBitmap(int32_t id, const VX3Bitmap* normal, const VX3Bitmap* second = nullptr);
    bool AddRow(int32_t combo, int32_t value, const String& text); // empty: a separator
    bool ClearRows(int32_t combo);
    bool SetDate(int32_t id, const VX3FileDate& date);
    bool GetDate(int32_t id, VX3FileDate& date) const;
    // What a scroll group shows of its child; x2 and y2 lie behind the last pixel.
    bool GetVisiblePart(int32_t scroll, Rectangle& part) const;
    bool SetVisiblePart(int32_t scroll, const Rectangle& part);

protected:
    virtual bool CreateLayout() { return true; }
    virtual bool InitValues() { return true; }
    virtual bool Command(int32_t id, const BaseContainer& event);
    virtual void Timer() { }
    virtual void CoreMessage(int32_t id, const BaseContainer& message);
    virtual bool Message(int32_t code, const BaseContainer& message, BaseContainer& result); // true: consumed
    virtual bool AskClose() { return false; }                                                // true: it stays open
    virtual void DestroyWindow() { }

    bool MakeHandle(); // false without a GUI section or memory
    // Closes it and lets the host forget it. First thing in the destructor of a subclass that
    // overrides a callback: later it would no longer be called.
    void FreeHandle();

private:
    static const VX3DialogTable table;

    VX3Dialog handle = 0;
};

// A window of its own.
class GeDialog : public DialogBase
{
public:
    bool Open(const VX3WindowPlace& place);
    bool Restore(int32_t id, int32_t subId); // with what a saved layout holds of it
    bool Close();
    bool SetTitle(const String& title);
    bool Raise();

    // The menu bar: MenuFlush, menus with rows, MenuFinish.
    bool MenuFlush();
    bool MenuBegin(int32_t text); // number of a resource text
    bool MenuEnd();
    bool MenuItem(int32_t id, int32_t text, uint32_t menuBits = 0);
    bool MenuCommand(int32_t command);
    bool MenuSeparator();
    bool MenuFinish();
    bool SetMenuItem(int32_t id, uint32_t menuBits);

    // See VX3MenuServices::popup. 0 if nothing was chosen.
    int32_t PopupMenu(const BaseContainer& menu);
};

// A dialog in a gadget of another.
class SubDialog : public DialogBase
{
public:
    bool Detach();

private:
    friend class DialogBase;
};

// A window that holds up all others.
class GeModalDialog : public DialogBase
{
public:
    int32_t Open(const VX3WindowPlace& place); // the result of Close, 0 if the user closed it
    bool Close(int32_t result);
};

} // namespace browser

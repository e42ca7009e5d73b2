// One gadget: its shape, its state and its place. The same tree of gadgets stands behind
// the windows of every host; what a toolkit makes of one hangs at `native`.
//
// State is written here first and then shown by the toolkit, and what a user does comes
// here first and then to the module (desk.h). Main thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "gui/geometry.h"
#include "vx3/gui.h"

namespace vx3::gui {

struct Area;
struct Dialog;
struct TreeState;

// A picture that a gadget shows: a copy of its own.
class Picture
{
public:
    Picture() = default;
    explicit Picture(const VX3Bitmap* copied);
    const VX3Bitmap* Get() const { return bitmap.get(); }
    explicit operator bool() const { return bitmap != nullptr; }

private:
    std::shared_ptr<VX3Bitmap> bitmap;
};

// What a toolkit makes of a gadget or a window.
class Native
{
public:
    virtual ~Native() = default;
};

struct ComboRow {
    int32_t value = 0;
    std::u16string text; // empty: a separator
};

struct Gadget {
    Gadget(Dialog& owner, const VX3GadgetShape& wanted)
        : dialog(&owner)
        , shape(wanted)
    {
    }

    bool IsGroup() const { return shape.kind < VX3_GADGET_TEXT; }
    bool Has(uint32_t flag) const { return (shape.flags & flag) != 0; }
    bool IsShown() const { return (shape.flags & VX3_FLAG_HIDDEN) == 0; }

    Dialog* dialog; // whose number space it is in
    VX3GadgetShape shape;
    Gadget* parent = nullptr; // none: the root of its dialog
    std::vector<std::unique_ptr<Gadget>> children;

    // State.
    std::u16string text; // of a group: its title, and as a page the title of its tab
    std::u16string tip;
    bool isEnabled = true;
    double value = 0;
    double least = 0;
    double most = 100;
    double step = 1;
    VX3FileDate date = {};
    std::vector<ComboRow> rows;
    Picture normal;
    Picture second;
    std::vector<double> weights; // of a splitter, one for each child

    // What stands in it; none for another kind or while it is empty.
    Area* area = nullptr;
    Dialog* inner = nullptr;
    std::shared_ptr<TreeState> tree;

    // Set by the layout, in the inside of the window. A scroll group's child keeps its place as
    // if nothing were scrolled; `scrolled` says how far it is, and `content` how large. `view` is the
    // size of what is seen of it: smaller than `place` by the bars that are shown. A tree is its own
    // scroll group.
    Size need;
    Place place;
    Point scrolled;
    Size content;
    Size view;

    // The desk's own.
    Place toldPart;      // of a scroll group: what its module was told that it shows
    bool isMade = false; // the toolkit has it
    bool isGone = false; // it left its dialog; its memory goes when the main loop is back

    std::unique_ptr<Native> native;
};

// One surface of a module.
struct Area {
    VX3Area handle = 0;
    void* object = nullptr;
    const VX3AreaTable* table = nullptr;
    Gadget* gadget = nullptr; // none: nowhere
    Size toldSize;            // the size that its module was told
};

struct MenuItem {
    enum class Kind { Item, Command, Menu, Separator };

    Kind kind = Kind::Item;
    int32_t id = 0;
    std::u16string text; // with `&` in front of a letter for the keyboard, `&&` for one `&`
    uint32_t bits = 0;   // VX3_MENU bits
    std::vector<MenuItem> children;
};

// How far a dialog is on its way through one opening and closing. The desk's own.
struct DialogLife {
    Gadget* wantedFocus = nullptr; // of a window: gets the focus when the toolkit has it
    bool isMade = false;           // of a window: the toolkit has it and its gadgets
    bool isShown = false;          // of a dialog inside another: its module thinks that it can be seen
    bool wantsClose = false;       // as soon as no callback runs in it
    bool isAsking = false;         // askClose runs
    bool isCreated = false;        // createLayout answered 1
    bool isFilled = false;         // initValues answered 1
    bool isHoldingUp = false;      // of a modal window: the toolkit runs it
    bool isLeaving = false;        // the toolkit and the module were told that it goes
    bool isDestroyed = false;      // destroyWindow was called
    bool isTellingSizes = false;
};

// A dialog of a module: a window, or inside another.
struct Dialog {
    VX3Dialog handle = 0;
    void* object = nullptr;
    const VX3DialogTable* table = nullptr;

    enum class State { Closed, Creating, Filling, Open, Closing };
    State state = State::Closed;
    Dialog* parent = nullptr;   // of a dialog inside another
    Gadget* holder = nullptr;   // where it stands in there
    std::vector<Dialog*> inner; // in the order of attaching
    std::unique_ptr<Gadget> root;
    Gadget* current = nullptr; // the group that gadgets are added to

    // Of a window.
    VX3WindowPlace opened = {};
    std::u16string title;
    Size size; // of its inside, without the menu bar
    Size leastSize;
    bool isModal = false;
    int32_t result = 0;
    std::vector<MenuItem> menu;
    std::vector<std::vector<MenuItem>*> menuPath; // while it is being built
    Gadget* focus = nullptr;
    std::unique_ptr<Native> native;

    DialogLife life;
    int calls = 0; // callbacks and nested operations that run in it or in a dialog inside

    bool IsOpen() const { return state == State::Filling || state == State::Open; }
    Dialog& Window() { return parent ? parent->Window() : *this; }
};

} // namespace vx3::gui

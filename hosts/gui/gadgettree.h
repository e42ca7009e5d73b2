// The tree of gadgets behind a window: building it, searching it, taking it apart.
//
// A dialog inside another hangs at the gadget that holds it: whoever climbs or descends
// goes through. Nothing here calls a module.
#pragma once

#include <functional>

#include "gui/deskstate.h"

namespace vx3::gui {

// By its number, in the dialog itself; none for 0.
Gadget* FindGadgetOf(const Dialog& dialog, int32_t id);
// Of the gadgets inside as well, those of dialogs inside included, each before its children.
void ForEachGadget(Gadget& gadget, const std::function<void(Gadget&)>& function);

Gadget* AroundOf(const Gadget& gadget); // its parent, or what holds its dialog
bool IsInside(const Gadget& gadget, const Gadget& group);
bool CanBeUsed(const Gadget& gadget); // it is enabled, with all around it
bool IsSeen(const Gadget& gadget);    // nothing around it is hidden or another page

// The child of a group that stands at a point of the window's inside, and so on down to the
// deepest; none outside.
Gadget* GadgetAt(Dialog& window, Point inside);

void MakeRoot(DeskState& desk, Dialog& dialog);
// None if the group can have no such child.
Gadget* AddGadget(Gadget& group, const VX3GadgetShape& shape);
// Its state is whole: the toolkit gets it, if it has the window.
void MakeNative(DeskState& desk, Gadget& gadget);
// A dialog's gadgets, once its window is there.
void MakeNatives(DeskState& desk, Gadget& gadget);
// Takes gadgets away for good. The dialogs in them have left before.
void DropChildren(DeskState& desk, Gadget& group, size_t from = 0);
void DropRoot(DeskState& desk, Dialog& dialog);

void LeaveGadget(DeskState& desk, Area& area);

bool IsMade(const Gadget& gadget);
void Show(DeskState& desk, Gadget& gadget, Change change);

} // namespace vx3::gui

// What values a kind of gadget has, and which of them it can have.
#pragma once

#include "gui/gadget.h"

namespace vx3::gui {

bool HasText(const Gadget& gadget);
bool IsWrittenInto(const Gadget& gadget); // by the user, if it is not read-only
bool HasValue(const Gadget& gadget);
bool HasRange(const Gadget& gadget);

// The nearest value that the gadget can have.
double ClampedValue(const Gadget& gadget, double value);

// Gives it that value; one that the user writes into shows the text of the row from then on.
void TakeValue(Gadget& gadget, double value);

} // namespace vx3::gui

// The volumes below the computer.
#pragma once

#include "model/browserinterface.h"

namespace browser {

// Brings them up to date; true if one came or went. Any thread.
bool ListVolumes(BrowserContentNode& computer);

} // namespace browser

// One page of the preference window.
#pragma once

#include <string>

#include "core/registry.h"

class QWidget;

namespace vx3::desktop {

// The elements of the description that lies beside the module's binary, with the module's
// texts. Lines of it that cannot be read are told on the console.
QWidget* MakePage(const core::RegisteredPage& page, const std::string& binary);

} // namespace vx3::desktop

#include "gui/guarded.h"

#include "core/hoststate.h"

namespace vx3::gui {

void TellUndone() noexcept
{
    try {
        core::WriteConsoleLine("something in a window was left undone: there is no memory");
    } catch (const std::exception&) {
        return; // not even for that
    }
}

} // namespace vx3::gui

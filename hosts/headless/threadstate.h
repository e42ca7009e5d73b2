// What the other threads of this process are doing at this moment.
#pragma once

namespace vx3::headless {

// False while a thread beside the calling one computes or waits for a disk.
bool OtherThreadsSleep();

} // namespace vx3::headless

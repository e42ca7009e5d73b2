// What the system lets a thread say about itself.
#pragma once

#include <string>

namespace vx3::core {

// The part of a name that the system can show: tools see 15 characters, so the
// common beginning of long names gives way and the telling end stays.
std::string ShortThreadName(const std::string& name);

void NameThisThread(const std::string& name);
void LowerPriorityOfThisThread(); // a wish: refusal is not an error

} // namespace vx3::core

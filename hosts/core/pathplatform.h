// What differs between systems in the text of a path and in the bytes of a name:
// pathposix.cpp and pathwindows.cpp.
#pragma once

#include <string>
#include <string_view>

#include "textbuffer.h"

namespace vx3::core {

extern const VX3Unit pathSeparator;
extern const bool hasDrives;

inline bool IsSeparator(VX3Unit unit)
{
    return unit == '/' || unit == '\\';
}

// The units of what no directory part can be shortened to: `/`, or `C:\`. 0 for a path
// that does not begin at a root.
int32_t RootLength(UnitSpan path);

// The native bytes of a path or a name, and the way back.
std::string BytesOfUnits(UnitSpan units);
int32_t UnitsOfBytes(std::string_view bytes, VX3Unit* units); // `units` has room for as many as there are bytes

bool IsNameAllowed(UnitSpan name);

} // namespace vx3::core

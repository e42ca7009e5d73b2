// CRC-32 of IEEE 802.3 (reflected, polynomial 0xEDB88320, start all ones, result
// complemented), and the hash of URL texts that is stored on disk.
//
// A state is the register in front of the final complement, so that the hash of a text
// can be continued: the hashes of all prefixes of a text cost one pass.
#pragma once

#include <cstddef>
#include <cstdint>

#include "services/string.h"

namespace browser {

using CrcState = uint32_t;

constexpr CrcState crcStart = 0xFFFFFFFF;
constexpr uint32_t FinishCrc(CrcState state)
{
    return ~state;
}

CrcState ContinueCrc(CrcState state, const void* bytes, size_t length);

// Continues over lower-case units, each as two bytes, high byte first.
CrcState ContinueCrcOfUnits(CrcState state, Units lower);

// Continues over one unit.
CrcState ContinueCrcOfUnit(CrcState state, VX3Unit unit);

// Continues over the lower-case form of `units`, however long they are.
CrcState ContinueCrcFolding(CrcState state, Units units);

} // namespace browser

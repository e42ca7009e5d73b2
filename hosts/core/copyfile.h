// The bytes of one file to another.
#pragma once

#include "fileoperations.h"

struct statx;

namespace vx3::core {

// Copies the contents of an open regular file into an empty one, in pieces that the
// progress hears of. Holes stay holes and count as bytes.
bool CopyContents(int source, int target, OperationProgress& progress);

// Gives an open file or folder the rights and dates that another had.
bool CopyRightsAndDates(const struct statx& from, int target);

} // namespace vx3::core

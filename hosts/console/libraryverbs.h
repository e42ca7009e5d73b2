// What the verbs behind `lib` have in common.
#pragma once

#include "libraryscan.h"
#include "options.h"

namespace vx3::console {

// A library file and what is in it.
struct ReadLibrary {
    LibraryFile file;
    LibraryScan scan;
};

// Fails if there is no file, or none that is a library.
Failure OpenLibrary(const std::string& path, ReadLibrary& library);

// The end of a verb that has told what there is to tell: says what is wrong with the file.
int EndOf(const std::string& path, const ReadLibrary& library);

const std::string& LibraryPath(const Command& command); // FILE
std::string ItemTypeText(const LibraryItem& item);

} // namespace vx3::console

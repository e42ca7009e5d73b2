// What the verbs behind `lib` have in common.
#pragma once

#include <cstdio>

#include "jsonwriter.h"
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
int FailWith(const Failure& failure); // says it

// With --json, a document of one entry that `fill` writes the fields of.
template <class Fill>
void TellEntry(const Command& command, Fill fill)
{
    if (!command.Has(Option::Json))
        return;
    JsonWriter json(stdout);
    json.BeginEntry();
    fill(json);
    json.EndEntry();
}

} // namespace vx3::console

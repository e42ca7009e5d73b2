// The module's texts by number, and its diagnostics.
#pragma once

#include "services/filepath.h"

namespace browser {

// Numbers of the texts that the module shows; the texts stand in res/strings.
namespace Texts {
enum : int32_t {
    ModuleName = 10000,
    Computer = 10217,
    Network = 10218,
    Presets = 10219,
    Catalogs = 10220,
    Recent = 10221,
    Search = 10222,
    Favourites = 10223,
    DefaultObjects = 10224,
    UnknownType = 10340,
    DamagedLibraries = 10407,
};
}

// Loads the resource table beside the module's binary; false if there is none.
bool LoadResources(const FilePath& modulePath);
void FreeResources();

// The text of a number; empty if it is unknown or no resources are loaded.
String ResourceText(int32_t number);

void WriteConsole(const char* line);
void ReportCriticalStop(const char* file = __builtin_FILE(), int32_t line = __builtin_LINE());

} // namespace browser

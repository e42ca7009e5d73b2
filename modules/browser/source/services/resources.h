// The module's texts by number, and its diagnostics.
#pragma once

#include "services/filepath.h"
#include "services/texts.h"

namespace browser {

// Loads the resource table beside the module's binary; false if there is none.
bool LoadResources(const FilePath& modulePath);
void FreeResources();
VX3Resources* LoadedResources(); // none if nothing is loaded

// The text of a number; "#NUMBER" if there is none, and empty without resources.
String ResourceText(int32_t number);
// The same with values in the places of %1 to %9, which a language may put in any order.
// Empty without memory: a sentence with a hole says something else.
String ResourceText(int32_t number, std::span<const String> values);

void WriteConsole(const char* line);
void ReportCriticalStop(const char* file = __builtin_FILE(), int32_t line = __builtin_LINE());

} // namespace browser

// A shared library of the system.
#pragma once

#include <string>

namespace vx3::core {

void* OpenLibrary(const std::string& path, std::string& error); // none: see error
void* FindSymbol(void* library, const char* name);              // none if there is none
void CloseLibrary(void* library);

std::string ProgramFolder(); // of the program that runs; empty if the system does not say

} // namespace vx3::core

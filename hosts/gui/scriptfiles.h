// Files that a script makes and takes away beside the program that it plays. Names are
// relative and stay below the folder of the scenario. Everything throws ScriptError.
#pragma once

#include <string>

namespace vx3::gui {

// With its name as its contents, and the folders that it needs.
void MakeScenarioFile(const std::string& folder, const std::string& name);
void MakeScenarioFolder(const std::string& folder, const std::string& name);
void RemoveFromScenario(const std::string& folder, const std::string& name);
// Never over what exists.
void RenameInScenario(const std::string& folder, const std::string& from, const std::string& to);

} // namespace vx3::gui

// What modules have registered, for hosts that show it and run it.
//
// Lists are in the order of registration. Entries belong to the module that was
// called when they came (moduleloader.h says which) and are taken out after its last
// action 3; their objects are the module's and are never destructed from here. Main
// thread, but for the table of published functions, which any thread may search.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vx3/registry.h"

namespace vx3::core {

// The module whose entry function runs; none for the host itself.
using Registrant = const void*;

struct RegisteredCommand {
    int32_t id = 0;
    std::string name; // UTF-8; empty for an id that the host knows
    uint32_t flags = 0;
    int32_t icon = 0;
    std::string help;
    void* object = nullptr;
    const VX3CommandTable* table = nullptr;
    Registrant owner = nullptr;

    bool Execute() const;
    bool Restore(int32_t subId) const; // its window, from the saved layout; false if it opens none
    uint32_t State() const;            // VX3_COMMAND bits; enabled if the command does not say
};

struct RegisteredPage {
    int32_t id = 0;
    std::string name;
    std::string description;
    int32_t sort = 0;
    void* object = nullptr;
    const VX3PrefsPageTable* table = nullptr;
    Registrant owner = nullptr;
};

// Gathers the commands of its owner.
struct RegisteredMenu {
    int32_t id = 0; // may be that of a command as well
    std::string name;
    Registrant owner = nullptr;
    size_t position = 0; // of the commands in RegisteredCommands, so many came before it
};

const std::vector<RegisteredCommand>& RegisteredCommands();
const RegisteredCommand* FindCommand(int32_t id); // the one registered last
const std::vector<RegisteredMenu>& RegisteredMenus();
const std::vector<RegisteredPage>& RegisteredPages();
std::vector<int32_t> RegisteredIcons();
const VX3Bitmap* FindIcon(int32_t id); // none if there is none; the registry's

Registrant SetRegistrant(Registrant module); // returns the one before
void TakeOut(Registrant module);
void TakeOutEverything();

} // namespace vx3::core

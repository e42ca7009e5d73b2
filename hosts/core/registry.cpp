#include "registry.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>

#include "hoststate.h"
#include "services.h"
#include "values.h"

namespace vx3::core {

namespace {

struct RegisteredIcon {
    int32_t id;
    VX3Bitmap* bitmap; // owned
    Registrant owner;
};

struct PublishedTable {
    int32_t id;
    int32_t version;
    int32_t size;
    const void* table;
    Registrant owner;
};

Registrant registrant = nullptr;
std::vector<RegisteredCommand> commands;
std::vector<RegisteredMenu> menus;
std::vector<RegisteredPage> pages;
std::vector<RegisteredIcon> icons;

std::mutex publishedLock;
std::vector<PublishedTable> published; // under publishedLock

template <class Entry>
bool Append(std::vector<Entry>& list, Entry entry)
{
    try {
        list.push_back(std::move(entry));
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

std::string Utf8OrEmpty(const VX3String* text)
{
    return text ? ToUtf8(*text) : std::string();
}

VX3Bool RegisterCommand(int32_t id, const VX3String* name, uint32_t flags, int32_t icon, const VX3String* help, void* object,
                        const VX3CommandTable* table)
{
    if (!table)
        return 0;
    return Append(commands, { id, Utf8OrEmpty(name), flags, icon, Utf8OrEmpty(help), object, table, registrant });
}

VX3Bool RegisterMenu(int32_t id, const VX3String* name)
{
    return Append(menus, { id, Utf8OrEmpty(name), registrant, commands.size() });
}

VX3Bool RegisterPrefsPage(int32_t id, const VX3String* name, const char* description, int32_t sort, void* object,
                          const VX3PrefsPageTable* table)
{
    if (!table)
        return 0;
    return Append(pages, { id, Utf8OrEmpty(name), description ? description : "", sort, object, table, registrant });
}

VX3Bool RegisterIcon(int32_t id, const VX3Bitmap* bitmap)
{
    VX3Bitmap* copy = bitmap ? BitmapServices()->clone(bitmap) : nullptr;
    if (!copy)
        return 0;
    for (RegisteredIcon& icon : icons)
        if (icon.id == id) {
            BitmapServices()->free(icon.bitmap);
            icon = { id, copy, registrant };
            return 1;
        }
    if (Append(icons, { id, copy, registrant }))
        return 1;
    BitmapServices()->free(copy);
    return 0;
}

VX3Bool Publish(int32_t id, int32_t version, int32_t size, const void* table)
{
    if (!table)
        return 0;
    std::lock_guard guard(publishedLock);
    for (const PublishedTable& entry : published)
        if (entry.id == id)
            return 0; // others may hold the table that stands there
    return Append(published, { id, version, size, table, registrant });
}

void Withdraw(int32_t id)
{
    std::lock_guard guard(publishedLock);
    std::erase_if(published, [id](const PublishedTable& entry) { return entry.id == id; });
}

const void* Find(int32_t id, int32_t version, int32_t size)
{
    std::lock_guard guard(publishedLock);
    for (const PublishedTable& entry : published)
        if (entry.id == id)
            return entry.version >= version && entry.size >= size ? entry.table : nullptr;
    return nullptr;
}

VX3Container* Preferences(int32_t id)
{
    HostState* host = CurrentHost();
    return host ? host->preferences.Find(id) : nullptr;
}

// Before the commands are taken out: menus move up by those in front of them.
template <class Predicate>
void TakeOutMenus(Predicate isGone)
{
    std::erase_if(menus, isGone);
    for (RegisteredMenu& menu : menus) {
        const auto end = commands.begin() + static_cast<std::ptrdiff_t>(menu.position);
        menu.position -= static_cast<size_t>(std::count_if(commands.begin(), end, isGone));
    }
}

template <class Predicate>
void TakeOutIf(Predicate isGone)
{
    TakeOutMenus(isGone);
    std::erase_if(commands, isGone);
    std::erase_if(pages, isGone);
    std::erase_if(icons, [&](const RegisteredIcon& icon) {
        if (isGone(icon))
            BitmapServices()->free(icon.bitmap);
        return isGone(icon);
    });
    std::lock_guard guard(publishedLock);
    std::erase_if(published, isGone);
}

} // namespace

bool RegisteredCommand::Execute() const
{
    return table->execute && table->execute(object);
}

bool RegisteredCommand::Restore(int32_t subId) const
{
    return table->restore && table->restore(object, subId);
}

uint32_t RegisteredCommand::State() const
{
    return table->getState ? table->getState(object) : static_cast<uint32_t>(VX3_COMMAND_ENABLED);
}

const std::vector<RegisteredCommand>& RegisteredCommands()
{
    return commands;
}

const RegisteredCommand* FindCommand(int32_t id)
{
    auto found = std::find_if(commands.rbegin(), commands.rend(), [id](const RegisteredCommand& command) { return command.id == id; });
    return found == commands.rend() ? nullptr : &*found;
}

const std::vector<RegisteredMenu>& RegisteredMenus()
{
    return menus;
}

const std::vector<RegisteredPage>& RegisteredPages()
{
    return pages;
}

std::vector<int32_t> RegisteredIcons()
{
    std::vector<int32_t> ids;
    for (const RegisteredIcon& icon : icons)
        ids.push_back(icon.id);
    return ids;
}

const VX3Bitmap* FindIcon(int32_t id)
{
    for (const RegisteredIcon& icon : icons)
        if (icon.id == id)
            return icon.bitmap;
    return nullptr;
}

Registrant SetRegistrant(Registrant module)
{
    return std::exchange(registrant, module);
}

void TakeOut(Registrant module)
{
    TakeOutIf([module](const auto& entry) { return entry.owner == module; });
}

void TakeOutEverything()
{
    TakeOutIf([](const auto&) { return true; });
}

const VX3RegistryServices* RegistryServices()
{
    static constexpr VX3RegistryServices services = { RegisterCommand, RegisterPrefsPage, RegisterIcon, Publish, Withdraw, Find,
                                                      Preferences,     RegisterMenu };
    return &services;
}

} // namespace vx3::core

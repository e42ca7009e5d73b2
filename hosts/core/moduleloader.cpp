#include "moduleloader.h"

#include <filesystem>

#include "hoststate.h"
#include "registry.h"
#include "services.h"
#include "sharedlibrary.h"
#include "values.h"

namespace vx3::core {

namespace {

constexpr const char* entryName = "vx3_main";

int liveModules = 0; // between action 1 and action 3

// What the module registers meanwhile is noted as its own.
class RegistrantScope
{
public:
    explicit RegistrantScope(Registrant module)
        : before(SetRegistrant(module))
    {
    }
    RegistrantScope(const RegistrantScope&) = delete;
    RegistrantScope& operator=(const RegistrantScope&) = delete;
    ~RegistrantScope() { SetRegistrant(before); }

private:
    Registrant before;
};

} // namespace

ModuleLoader::~ModuleLoader()
{
    End();
    Unload();
}

bool ModuleLoader::Load(const std::string& binary)
{
    End();
    Unload();
    error.clear();
    // A name without a slash would be searched for in the folders of the system.
    std::error_code failure;
    path = std::filesystem::absolute(binary, failure).string();
    std::string reason;
    library = OpenLibrary(path, reason);
    if (!library) {
        error = "The module could not be loaded: " + reason;
        return false;
    }
    entry = reinterpret_cast<VX3EntryFunction>(FindSymbol(library, entryName));
    if (!entry) {
        error = path + " is not a module: it has no function " + entryName;
        Unload();
        return false;
    }
    return true;
}

bool ModuleLoader::Begin(const VX3Host* table)
{
    if (!entry || loaded) {
        error = entry ? "The module has been started already" : "No module is loaded";
        return false;
    }
    loaded = true;
    ++liveModules;
    Path modulePath(path);
    int32_t answer = Call(VX3_ACTION_LOAD, const_cast<VX3Host*>(table), nullptr, modulePath.Get());
    if (answer != VX3_RESULT_OK) {
        error = answer == VX3_RESULT_HOST_TOO_OLD ? "The module needs a newer host: " + path
                                                  : "The module refused to load (" + std::to_string(answer) + "): " + path;
        return false;
    }
    VX3ResourceRequest request = { 1 };
    Send(VX3_MESSAGE_RESOURCES, &request);
    if (request.pending != 0) // texts are missing, which the module may live with
        WriteConsoleLine("The module found no resources: " + path);
    if (Call(VX3_ACTION_START) != VX3_RESULT_OK) {
        error = "The module does not take part in this run: " + path;
        return false;
    }
    started = true;
    uint32_t startOfRun = 0;
    Send(VX3_MESSAGE_RUN_TIMING, &startOfRun);
    return true;
}

void ModuleLoader::AllLoaded()
{
    if (started)
        Send(VX3_MESSAGE_ALL_LOADED);
}

bool ModuleLoader::Start(const VX3Host* table)
{
    if (!Begin(table))
        return false;
    AllLoaded();
    return true;
}

void ModuleLoader::Tell(const VolumeChange& change)
{
    if (!started)
        return;
    Path place(change.path);
    Text text;
    if (!PathServices()->getText(place.Get(), text.Get()))
        return;
    VX3VolumeChange data = { *text.Get(), change.isRemoved };
    Send(VX3_MESSAGE_VOLUME, &data);
}

void ModuleLoader::End()
{
    if (!loaded)
        return;
    if (started)
        Send(VX3_MESSAGE_ENDING);
    started = false;
    Call(VX3_ACTION_END);
    loaded = false;
    TakeOut(this);
    if (--liveModules == 0 && CurrentHost())
        CurrentHost()->preferences.Park();
}

void ModuleLoader::Unload()
{
    if (library)
        CloseLibrary(library);
    library = nullptr;
    entry = nullptr;
}

int32_t ModuleLoader::Call(int32_t action, void* arg1, void* arg2, void* arg3)
{
    if (!entry)
        return VX3_RESULT_REFUSED;
    RegistrantScope scope(this);
    return entry(action, arg1, arg2, arg3);
}

int32_t ModuleLoader::Send(intptr_t message, void* data)
{
    return Call(VX3_ACTION_MESSAGE, reinterpret_cast<void*>(message), data);
}

} // namespace vx3::core

#include "testmodule.h"

#include <filesystem>
#include <fstream>

#include "core/hoststate.h"
#include "core/registry.h"
#include "core/sharedlibrary.h"
#include "core/values.h"

namespace vx3::testing {

TestModule::TestModule(CheckedTable& table)
    : checks(table)
{
}

TestModule::~TestModule()
{
    End();
    Unload();
}

bool TestModule::Load(const std::string& binary)
{
    End();
    Unload();
    path = std::filesystem::absolute(binary).string();
    library = core::OpenLibrary(path, error);
    if (library)
        entry = reinterpret_cast<VX3EntryFunction>(core::FindSymbol(library, "vx3_main"));
    if (library && !entry)
        error = path + " has no function vx3_main";
    return entry != nullptr;
}

void TestModule::Use(VX3EntryFunction function)
{
    End();
    Unload();
    entry = function;
    path = "/module/linked.so"; // no file: the code is in the test program
}

int32_t TestModule::LoadAction()
{
    checks.OpenWindow();
    isLoaded = true;
    core::Path modulePath(path);
    return Call(VX3_ACTION_LOAD, const_cast<VX3Host*>(checks.Table()), nullptr, modulePath.Get());
}

bool TestModule::Start()
{
    if (LoadAction() != VX3_RESULT_OK) {
        error = "action 1 was refused";
        return false;
    }
    VX3ResourceRequest request = { 1 };
    Send(VX3_MESSAGE_RESOURCES, &request);
    isStarted = Call(VX3_ACTION_START) == VX3_RESULT_OK;
    if (!isStarted) {
        error = "action 2 was refused";
        return false;
    }
    uint32_t startOfRun = 0;
    Send(VX3_MESSAGE_RUN_TIMING, &startOfRun);
    Send(VX3_MESSAGE_ALL_LOADED);
    return true;
}

void TestModule::End()
{
    if (!isLoaded)
        return;
    if (isStarted)
        Send(VX3_MESSAGE_ENDING);
    Call(VX3_ACTION_END);
    isLoaded = isStarted = false;
    checks.CloseWindow();
    core::TakeOut(this);
    if (core::CurrentHost())
        core::CurrentHost()->preferences.Park();
}

void TestModule::Unload()
{
    if (library)
        core::CloseLibrary(library);
    library = nullptr;
    entry = nullptr;
}

int32_t TestModule::Call(int32_t action, void* arg1, void* arg2, void* arg3)
{
    if (!entry)
        return VX3_RESULT_REFUSED;
    const core::Registrant before = core::SetRegistrant(this);
    checks.EnterAction(action);
    const int32_t result = entry(action, arg1, arg2, arg3);
    checks.LeaveAction();
    core::SetRegistrant(before);
    return result;
}

int32_t TestModule::Send(intptr_t message, void* data)
{
    return Call(VX3_ACTION_MESSAGE, reinterpret_cast<void*>(message), data);
}

bool MappingExists(const std::string& fileName)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with("/" + fileName))
            return true;
    }
    return false;
}

} // namespace vx3::testing

// A module that a test takes through its life action by action, under the checks.
//
// Opens the calling window of the CheckedTable at the first entry call and closes it
// when the last action 3 has returned. Main thread only.
#pragma once

#include <string>

#include "checkedtable.h"
#include "vx3/entry.h"

namespace vx3::testing {

class TestModule
{
public:
    explicit TestModule(CheckedTable& table); // borrowed
    ~TestModule();                            // as End and Unload
    TestModule(const TestModule&) = delete;
    TestModule& operator=(const TestModule&) = delete;

    bool Load(const std::string& binary); // false: see Error()
    void Use(VX3EntryFunction function);  // a module that is linked into the test

    // Action 1, message 1, action 2, messages 1001084 and 1000; false if one is refused.
    bool Start();
    void End(); // message 200000272 if started, and action 3
    void Unload();

    int32_t Call(int32_t action, void* arg1 = nullptr, void* arg2 = nullptr, void* arg3 = nullptr);
    int32_t LoadAction(); // action 1 with the table
    int32_t Send(intptr_t message, void* data = nullptr);
    const std::string& Error() const { return error; }

private:
    CheckedTable& checks;
    void* library = nullptr;
    VX3EntryFunction entry = nullptr;
    std::string path;
    std::string error;
    bool isLoaded = false;
    bool isStarted = false;
};

// Whether a file of this name is mapped into the process; after a good unload it is not.
bool MappingExists(const std::string& fileName);

} // namespace vx3::testing

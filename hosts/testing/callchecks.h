// The checks behind CheckedTable, as one state of the process.
//
// Begin and End stand round each call of a wrapped function. They see a call as its
// rule and its arguments as words, so that nothing here depends on types.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "callrule.h"
#include "checkedtable.h"
#include "heldlocks.h"
#include "objectregistry.h"

namespace vx3::testing {

enum class Window : uint8_t { NotOpened, Open, Closed };

class CallChecks
{
public:
    void Reset(Checks newDepth);

    // False: the call must not go through.
    bool Begin(const Rule& rule, const int64_t* words);
    // After a call that went through.
    void End(const Rule& rule, const int64_t* words, int64_t result);

    void Violate(const char* function, const std::string& what);
    std::vector<std::string> Violations(bool forget);
    void SetListener(std::function<void(const std::string&)> newListener);

    void SetWindow(Window newWindow) { window.store(newWindow); }
    std::atomic<int32_t> action{ 0 };
    std::atomic<uint64_t> calls{ 0 };
    ObjectRegistry objects;

private:
    bool CheckWindow(const Rule& rule);
    void CheckThread(const Rule& rule);
    static std::string CheckHeld(const Rule& rule);
    bool CheckArgument(const Rule& rule, const int64_t* words, std::size_t place);
    bool CheckObject(const Rule& rule, const Arg& arg, int64_t word);
    bool CheckLock(const Rule& rule, const int64_t* words, const Arg& arg);
    void ReportStop(const Rule& rule, const int64_t* words);
    void EndArgument(const Rule& rule, const int64_t* words, std::size_t place, int64_t result);
    void Release(const Rule& rule, const int64_t* words, std::size_t arguments);

    Checks depth = Checks::Full;
    std::thread::id mainThread;
    std::atomic<Window> window{ Window::NotOpened };
    mutable std::mutex lock;
    std::vector<std::string> violations;              // under lock
    std::function<void(const std::string&)> listener; // under lock
};

CallChecks& TheChecks();

// The locks of the calling thread.
HeldLocks& LocksOfThisThread();

} // namespace vx3::testing

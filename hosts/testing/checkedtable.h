// A host's table that checks how it is called.
//
// Every function of every section is wrapped by what tablerows.h says of it. A call
// that breaks a rule becomes a sentence which begins with the name of the function,
// such as "memory.free: the block was never given or is freed already". A call that
// would do harm (a dead object, a second free, a lock taken twice, any call outside the
// window) is not passed on and gives its failure value; others are passed on.
//
// One lives at a time, made and ended on the main thread; its functions may be called
// by any thread. The table itself stays readable for ever, so that a call after the end
// is reported instead of crashing.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "vx3/host.h"

namespace vx3::testing {

enum class Checks {
    Full,
    Light // threads, window, locks and plain arguments; nothing is kept for each object
};

class CheckedTable
{
public:
    explicit CheckedTable(const VX3Host* base, Checks depth = Checks::Full);
    ~CheckedTable(); // as CloseWindow
    CheckedTable(const CheckedTable&) = delete;
    CheckedTable& operator=(const CheckedTable&) = delete;

    const VX3Host* Table() const;

    // The time in which the table may be called: from the first entry call to the end of
    // the last action 3. Closed at first. CloseWindow looks for locks still held by the
    // main thread; what is not given back is told by LeakReport.
    void OpenWindow();
    void CloseWindow();
    // Round each call of an entry function; [start-end] calls want action 2 or 3.
    void EnterAction(int32_t action);
    void LeaveAction();

    std::vector<std::string> Violations() const;
    std::vector<std::string> TakeViolations(); // and forgets them
    // Also tells each violation at once; none by default. Any thread.
    void SetListener(std::function<void(const std::string&)> listener);

    // A line for each source file and line that holds blocks, and for each call that made
    // objects which still live. Empty if all was given back, and always with Checks::Light.
    std::string LeakReport() const;

    uint64_t CallCount() const; // of all functions; for tests of cost
};

} // namespace vx3::testing

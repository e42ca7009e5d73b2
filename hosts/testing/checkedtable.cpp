#include "checkedtable.h"

#include "callchecks.h"
#include "layer.h"
#include "threadshim.h"

namespace vx3::testing {

namespace {

struct CheckLayer {
    static constexpr bool Wants(const Rule&) { return true; }

    template <class RowType, class Result, class... Args>
    static Result Pass(const Rule& rule, Result (*original)(Args...), Args... args)
    {
        const int64_t words[] = { WordOf(args)..., 0 };
        if (!TheChecks().Begin(rule, words))
            return FailureOf<Result>(rule);
        if constexpr (std::is_void_v<Result>) {
            original(args...);
            TheChecks().End(rule, words, 0);
        } else {
            Result result = {};
            if constexpr (std::is_same_v<Result, VX3Thread*>)
                result = CreateThroughShim(original, args...);
            else
                result = original(args...);
            TheChecks().End(rule, words, WordOf(result));
            return result;
        }
    }
};

constexpr const char* entryFunction = "vx3_main";

void CheckNoLockHeld(const char* when)
{
    HeldLocks& held = LocksOfThisThread();
    if (held.Count() > 0)
        TheChecks().Violate(entryFunction, std::string("a lock is held ") + when);
    held.Clear();
}

} // namespace

CheckedTable::CheckedTable(const VX3Host* base, Checks depth)
{
    TheChecks().Reset(depth);
    LayeredTable<CheckLayer>::Wrap(base);
}

CheckedTable::~CheckedTable()
{
    CloseWindow();
}

const VX3Host* CheckedTable::Table() const
{
    return &LayeredTable<CheckLayer>::table;
}

void CheckedTable::OpenWindow()
{
    TheChecks().SetWindow(Window::Open);
}

void CheckedTable::CloseWindow()
{
    CheckNoLockHeld("at the end");
    TheChecks().SetWindow(Window::Closed);
}

void CheckedTable::EnterAction(int32_t action)
{
    TheChecks().action.store(action);
}

void CheckedTable::LeaveAction()
{
    CheckNoLockHeld("when the entry function returns");
    TheChecks().action.store(0);
}

std::vector<std::string> CheckedTable::Violations() const
{
    return TheChecks().Violations(false);
}

std::vector<std::string> CheckedTable::TakeViolations()
{
    return TheChecks().Violations(true);
}

void CheckedTable::SetListener(std::function<void(const std::string&)> listener)
{
    TheChecks().SetListener(std::move(listener));
}

std::string CheckedTable::LeakReport() const
{
    return TheChecks().objects.Report();
}

uint64_t CheckedTable::CallCount() const
{
    return TheChecks().calls.load();
}

} // namespace vx3::testing

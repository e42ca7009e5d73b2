// A host's table whose n-th call of a class fails.
//
// A failed call gives its documented failure value and, unless told otherwise, does not go
// through; only what closes a file is still called. After a failed read, write or seek the
// file fails every later call but close and free, and after a failed entry a walk is over
// and not sound.
//
// One lives at a time. Plans are made while no other thread calls; the functions of the
// table may be called by any thread, and calls are then counted in the order in which
// they come.
#pragma once

#include <cstdint>

#include "callrule.h"
#include "vx3/host.h"

namespace vx3::testing {

enum class Failing { Once, FromThereOn };

// How far a failed call goes all the same.
enum class Manner : uint8_t {
    Refused,
    Halfway, // a read gives half of what is there, a write stores half; other calls are refused
    Done     // all the way, and tells of a failure; for calls that make nothing to be freed
};

class FaultPlan
{
public:
    explicit FaultPlan(const VX3Host* base);
    ~FaultPlan(); // as Clear
    FaultPlan(const FaultPlan&) = delete;
    FaultPlan& operator=(const FaultPlan&) = delete;

    const VX3Host* Table() const;

    // Fails the n-th call of a class from now, counted from 1. Classes have plans of
    // their own; setting one starts the count of its class anew.
    void Fail(FailClass kind, int64_t nth, Failing failing = Failing::Once, Manner manner = Manner::Refused);
    void Clear(); // all plans, all counts

    int64_t CallsOf(FailClass kind) const;    // since the last plan of the class
    int64_t FailuresOf(FailClass kind) const; // how many of them failed
};

// Runs `body` with the 1st, the 2nd, … call of a class failing, up to a run in which
// none failed. Returns how many runs had a failure, for a test to look at.
template <class Body>
int64_t FailEachInTurn(FaultPlan& plan, FailClass kind, Failing failing, Body&& body)
{
    for (int64_t nth = 1;; ++nth) {
        plan.Fail(kind, nth, failing);
        body(nth);
        const bool failed = plan.FailuresOf(kind) > 0;
        plan.Clear();
        if (!failed)
            return nth - 1;
    }
}

} // namespace vx3::testing

// The thread that opens the libraries while windows may be open already. Started once,
// by the message that all modules are up; ended and waited for at the end of the run.
#pragma once

#include "services/vx3thread.h"

namespace browser {

class ThreadedPresetLoading final : public VX3Thread
{
public:
    ~ThreadedPresetLoading() override { Stop(); }

protected:
    bool TestBreak() override { return false; }
    void Main() override;
    const char* GetThreadName() const override { return "ThreadedPresetLoading"; }
};

} // namespace browser

#include "headless/scripteduser.h"

#include <utility>

namespace vx3::headless {

bool ScriptedUser::Take(const std::string& question, std::string& answer)
{
    if (answers.empty()) {
        Fail("no answer is queued for:\n" + question);
        return false;
    }
    answer = std::move(answers.front());
    answers.pop_front();
    return true;
}

bool ScriptedUser::TakeRefusal()
{
    if (!std::exchange(isRefused, false) || failures.size() != 1)
        return false;
    failures.clear();
    return true;
}

} // namespace vx3::headless

#include "headless/scripteduser.h"

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

} // namespace vx3::headless

// The user of a host without a screen: answers that were given beforehand, and what did
// not go as the script said. A question that finds no answer is a failure of the script.
// Main thread only.
#pragma once

#include <deque>
#include <string>
#include <vector>

namespace vx3::headless {

class ScriptedUser
{
public:
    void Queue(std::string answer) { answers.push_back(std::move(answer)); }
    // The next answer to what is asked. False, and a failure, if there is none.
    bool Take(const std::string& question, std::string& answer);
    bool HasAnswers() const { return !answers.empty(); }

    void Fail(std::string failure) { failures.push_back(std::move(failure)); }
    // A failure that `refused` of a script expects: a user cannot do this.
    void Refuse(std::string failure)
    {
        Fail(std::move(failure));
        isRefused = failures.size() == 1;
    }
    bool TakeRefusal(); // true if nothing else has failed: that is forgotten then
    const std::vector<std::string>& Failures() const { return failures; }

    // What was shown to the user last: a menu, a row a line, or a box.
    void Show(std::string text) { shown = std::move(text); }
    const std::string& Shown() const { return shown; }

private:
    std::deque<std::string> answers;
    std::vector<std::string> failures;
    std::string shown;
    bool isRefused = false; // the one failure
};

} // namespace vx3::headless

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

#include <sys/vfs.h>

#include "mountwatch.h"
#include "volumes.h"

namespace vx3::core {

namespace {

constexpr auto patience = std::chrono::seconds(3);

// Shared with a thread that may wait for a dead server as long as the program runs, so
// whoever needs it last frees it.
struct Probes {
    std::mutex lock;
    std::condition_variable changed;
    std::set<std::string> underWay; // under lock
};

struct Answer {
    bool isThere = false; // under the lock of the probes
    bool isGood = false;
};

std::shared_ptr<Probes> TheProbes()
{
    static auto probes = std::make_shared<Probes>();
    return probes;
}

bool AskDirectly(const std::string& path)
{
    struct statfs facts;
    return statfs(path.c_str(), &facts) == 0;
}

void AskAndTell(std::shared_ptr<Probes> probes, std::shared_ptr<Answer> answer, std::string path)
{
    bool isGood = AskDirectly(path);
    std::lock_guard guard(probes->lock);
    *answer = { true, isGood };
    probes->underWay.erase(path);
    probes->changed.notify_all();
}

} // namespace

bool VolumeAnswers(const std::string& path)
{
    // Disks are asked often, before each look into their root: no thread for them.
    if (TheMounts().AnswersAtOnce(path))
        return AskDirectly(path);
    auto probes = TheProbes();
    auto answer = std::make_shared<Answer>();
    std::unique_lock guard(probes->lock);
    auto deadline = std::chrono::steady_clock::now() + patience;
    // Another question to a dead server would only leave one more thread waiting.
    auto isFree = [&] { return !probes->underWay.contains(path); };
    if (!probes->changed.wait_until(guard, deadline, isFree))
        return false;
    probes->underWay.insert(path);
    try {
        std::thread(AskAndTell, probes, answer, path).detach();
    } catch (const std::system_error&) {
        probes->underWay.erase(path);
        return false;
    }
    return probes->changed.wait_until(guard, deadline, [&] { return answer->isThere; }) && answer->isGood;
}

} // namespace vx3::core

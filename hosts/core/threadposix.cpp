#include "threadposix.h"

#include <cctype>

#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace vx3::core {

namespace {

constexpr size_t shownCharacters = 15;
constexpr int backgroundNiceness = 10;

} // namespace

std::string ShortThreadName(const std::string& name)
{
    std::string tail = name;
    if (size_t colon = tail.rfind(": "); tail.size() > shownCharacters && colon != std::string::npos)
        tail.erase(0, colon + 2);
    if (tail.size() <= shownCharacters)
        return tail;
    tail.erase(0, tail.size() - shownCharacters);
    for (size_t i = 0; i < tail.size() / 2; ++i)
        if (std::isupper(static_cast<unsigned char>(tail[i])))
            return tail.substr(i);
    return tail;
}

void NameThisThread(const std::string& name)
{
    if (!name.empty())
        pthread_setname_np(pthread_self(), ShortThreadName(name).c_str());
}

void LowerPriorityOfThisThread()
{
    // Niceness belongs to a thread on this system, whatever the name of the call says.
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), backgroundNiceness);
}

} // namespace vx3::core

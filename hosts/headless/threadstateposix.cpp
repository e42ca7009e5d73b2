#include <filesystem>
#include <fstream>
#include <string>

#include <sys/syscall.h>
#include <unistd.h>

#include "headless/threadstate.h"

namespace vx3::headless {

namespace {

// The letter behind the name, which stands in brackets and may itself hold brackets.
char StateOf(const std::filesystem::path& thread)
{
    std::ifstream file(thread / "stat");
    std::string line;
    std::getline(file, line);
    const size_t end = line.rfind(')');
    return end == line.npos || end + 2 >= line.size() ? 'X' : line[end + 2];
}

} // namespace

bool OtherThreadsSleep()
{
    const std::string own = std::to_string(syscall(SYS_gettid));
    std::error_code failed;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task", failed)) {
        if (entry.path().filename() == own)
            continue;
        const char state = StateOf(entry.path());
        if (state == 'R' || state == 'D')
            return false;
    }
    return true;
}

} // namespace vx3::headless

#include <algorithm>
#include <cerrno>
#include <climits>

#include <unistd.h>

#include "localpath.h"
#include "mountwatch.h"

namespace vx3::core {

namespace {

// The way so far, and what is still to go.
class Way
{
public:
    explicit Way(const std::string& path)
        : rest(path)
    {
    }
    bool Go();
    const std::string& Place() const { return place; }

private:
    std::string TakeName();
    bool Enter(const std::string& name);
    bool Follow(const std::string& link);

    static constexpr int mostLinks = 40; // as the system has it
    std::string place = "/";             // without links
    std::string rest;
    int links = 0;
};

bool Way::Go()
{
    if (!rest.starts_with('/') || !TheMounts().IsOnThisMachine(place))
        return false;
    while (!rest.empty())
        if (!Enter(TakeName()))
            return false;
    return true;
}

// Empty for two slashes, and behind the last one.
std::string Way::TakeName()
{
    const size_t slash = rest.find('/');
    std::string name = rest.substr(0, slash);
    rest.erase(0, slash == std::string::npos ? slash : slash + 1);
    return name;
}

bool Way::Enter(const std::string& name)
{
    if (name.empty() || name == ".")
        return true;
    if (name == "..") {
        place.erase(std::max<size_t>(place.rfind('/'), 1));
        return true;
    }
    const std::string next = (place == "/" ? "" : place) + "/" + name;
    if (!TheMounts().IsOnThisMachine(next)) // before anything is asked there
        return false;
    char target[PATH_MAX];
    const ssize_t length = readlink(next.c_str(), target, sizeof(target));
    if (length >= 0)
        return Follow(std::string(target, static_cast<size_t>(length)));
    if (errno != EINVAL) // not there, or not to be reached
        return false;
    place = next;
    return true;
}

bool Way::Follow(const std::string& link)
{
    if (link.starts_with('/'))
        place = "/";
    rest = link + "/" + rest;
    return ++links <= mostLinks;
}

} // namespace

std::string FindLocalPath(const std::string& path)
{
    Way way(path);
    return way.Go() ? way.Place() : std::string();
}

} // namespace vx3::core

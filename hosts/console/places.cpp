#include "places.h"

#include <algorithm>
#include <iterator>

namespace vx3::console {

namespace {

constexpr const char* schemes[] = { "file", "preset", "catalog", "network", "favorite", "recent", "search", "baselist" };
constexpr const char* localFiles = "file://localhost";

// The word in front of ":/", or an empty text.
std::string SchemeOf(const std::string& argument)
{
    size_t colon = argument.find(":/");
    if (colon == std::string::npos || colon == 0)
        return {};
    std::string word = argument.substr(0, colon);
    bool isWord = std::all_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    return isWord ? word : std::string();
}

bool IsKnown(const std::string& scheme)
{
    return std::find(std::begin(schemes), std::end(schemes), scheme) != std::end(schemes);
}

core::Text TextOfBytes(const std::string& bytes)
{
    core::Text text;
    core::SetNativeName(*text.Get(), bytes);
    return text;
}

bool Exists(const Session& session, const std::string& path)
{
    return session.Host().folder->exists(core::Path(path).Get()) != 0;
}

NodeHandle FindNode(const Session& session, Url& url)
{
    VX3Node* node = nullptr;
    session.Browser().tree->findNodeByUrl(url.Get(), VX3_FIND_PLAIN | VX3_FIND_POPULATE, nullptr, &node);
    return NodeHandle(session.Browser(), node);
}

NodeHandle FindNearest(const Session& session, Url& url)
{
    VX3Node* node = nullptr;
    session.Browser().tools->findNearest(url.Get(), &node);
    return NodeHandle(session.Browser(), node);
}

// The tree finds names whatever their case. A file system that tells `A` from `a` must
// not have the one deleted for the other.
bool IsExactly(const Session& session, const NodeHandle& node, Place& place)
{
    if (place.NativePath().empty())
        return true;
    Url found = UrlOf(session.Browser(), node);
    return found.NativePath() == place.NativePath();
}

// The first part of `path` below `folder`.
std::string FirstPartBelow(const std::string& folder, const std::string& path)
{
    size_t begin = folder == "/" ? 1 : folder.size() + 1;
    size_t end = std::min(path.find('/', begin), path.size());
    return begin < path.size() ? path.substr(begin, end - begin) : std::string();
}

bool LiesBelow(const std::string& folder, const std::string& path)
{
    bool isPrefix = path.compare(0, folder.size(), folder) == 0;
    return isPrefix && path.size() > folder.size() && (folder == "/" || path[folder.size()] == '/');
}

Failure NotFound(const Place& place, const std::string& reason)
{
    return { Exit::NotFound, Quoted(place.Argument()) + ": not found" + reason };
}

// A part of the path that exists but begins with a point, so that no listing has it.
Failure ExplainHidden(const Place& place, const std::string& part, bool isLast)
{
    if (isLast)
        return { Exit::NotFound, Quoted(place.Argument()) + " is hidden, and the browser does not show hidden items" };
    return { Exit::NotFound,
             Quoted(place.Argument()) + " lies below the hidden folder " + Shown(part) + ", which the browser does not show" };
}

// `nearest` is the deepest node on the way to the place.
Failure ExplainFile(const Session& session, Place& place, const NodeHandle& nearest)
{
    Url url = UrlOf(session.Browser(), nearest);
    std::string folder = url.NativePath();
    const std::string& path = place.NativePath();
    if (folder.empty() || !LiesBelow(folder, path))
        return NotFound(place, "");
    if (!IsHolder(AttributesOf(session.Browser(), nearest)))
        return NotFound(place, "; " + Quoted(folder) + " is not a folder");
    if (Failure failure = CheckReadable(session, url))
        return failure;
    std::string part = FirstPartBelow(folder, path);
    std::string whole = (folder == "/" ? "" : folder) + "/" + part;
    if (Exists(session, whole) && part[0] == '.')
        return ExplainHidden(place, part, whole == path);
    if (Exists(session, whole))
        return NotFound(place, "; " + Quoted(whole) + " exists, but the browser does not show it");
    return NotFound(place, "; the deepest folder that exists is " + Quoted(folder));
}

Failure Explain(const Session& session, Place& place)
{
    if (place.HasUnknownScheme() && !Exists(session, place.NativePath()))
        return NotFound(place, "; there is no scheme '" + SchemeOf(place.Argument()) + "'");
    if (place.NativePath().empty())
        return NotFound(place, "");
    NodeHandle nearest = FindNearest(session, place.Address());
    return nearest ? ExplainFile(session, place, nearest) : NotFound(place, "");
}

} // namespace

Place::Place(const Session& session)
    : url(session.Browser())
{
}

Place::Place(const Session& session, const std::string& newArgument)
    : argument(newArgument)
    , url(session.Browser())
{
    std::string scheme = SchemeOf(argument);
    hasUnknownScheme = !scheme.empty() && !IsKnown(scheme);
    std::string prefix = std::string(localFiles) + "/";
    if (argument == localFiles || argument.compare(0, prefix.size(), prefix) == 0)
        SetFile(AbsolutePath("/" + argument.substr(std::min(prefix.size(), argument.size()))));
    else if (IsKnown(scheme))
        SetUrl(argument);
    else
        SetFile(AbsolutePath(argument));
}

void Place::SetFile(const std::string& path)
{
    nativePath = path;
    bytes = path;
    url.SetFile(core::Path(path));
}

void Place::SetUrl(const std::string& text)
{
    bytes = text;
    url.SetText(TextOfBytes(text));
}

std::string Place::LastName() const
{
    size_t slash = bytes.rfind('/');
    return slash == std::string::npos ? bytes : bytes.substr(slash + 1);
}

Place Place::Parent(const Session& session) const
{
    Place parent(session);
    size_t slash = std::min(bytes.rfind('/'), bytes.size());
    std::string above = bytes.substr(0, slash);
    if (!above.empty() && above.back() == ':')
        above += '/';
    parent.argument = above.empty() ? "/" : above;
    if (nativePath.empty())
        parent.SetUrl(parent.argument);
    else
        parent.SetFile(parent.argument);
    return parent;
}

NodeHandle FindPlace(const Session& session, Place& place, Failure& failure)
{
    NodeHandle node = FindNode(session, place.Address());
    if (node && IsExactly(session, node, place))
        return node;
    failure = Explain(session, place);
    return NodeHandle();
}

Failure CheckReadable(const Session& session, Url& folder)
{
    std::string path = folder.NativePath();
    if (path.empty())
        return {};
    const VX3FolderServices* services = session.Host().folder;
    VX3FolderWalk* walk = services->startWalk(core::Path(path).Get(), 0);
    if (!walk)
        return { Exit::Refused, "the folder " + Quoted(path) + " cannot be read" };
    services->endWalk(walk);
    return {};
}

bool IsTaken(const Session& session, const NodeHandle& folder, const core::Text& name)
{
    Url url = UrlOf(session.Browser(), folder);
    std::string path = url.NativePath();
    core::Path joined;
    if (!path.empty() && session.Host().path->join(core::Path(path).Get(), name.Get(), joined.Get()))
        return session.Host().folder->exists(joined.Get()) != 0;
    Url child(session.Browser());
    session.Browser().urls->join(url.Get(), name.Get(), child.Get());
    return static_cast<bool>(FindNode(session, child));
}

} // namespace vx3::console

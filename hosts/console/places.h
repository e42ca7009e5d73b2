// From an argument of the command line to a node, or to the reason why there is none.
#pragma once

#include <string>

#include "nodes.h"
#include "outcome.h"
#include "session.h"

namespace vx3::console {

// What an argument means: an absolute path, or a URL of a scheme that the browser knows.
class Place
{
public:
    Place(const Session& session, const std::string& newArgument);

    const std::string& Argument() const { return argument; }
    const std::string& NativePath() const { return nativePath; } // empty if the place is not of the file system
    Url& Address() { return url; }
    // The last part, as the operating system has it; empty for `/` and for a root.
    std::string LastName() const;
    Place Parent(const Session& session) const;
    // An argument that looks like a URL of a scheme that there is not.
    bool HasUnknownScheme() const { return hasUnknownScheme; }

private:
    explicit Place(const Session& session);
    void SetFile(const std::string& path);
    void SetUrl(const std::string& bytes);

    std::string argument;
    std::string nativePath;
    std::string bytes; // path or URL text that the address was made from
    Url url;
    bool hasUnknownScheme = false;
};

// The node of a place, or none and the reason in `failure`.
NodeHandle FindPlace(const Session& session, Place& place, Failure& failure);

// Why the children of a folder may be missing: Exit::Refused if it cannot be read.
Failure CheckReadable(const Session& session, Url& folder);

// True if anything at all has this name in the folder, shown by the browser or not.
bool IsTaken(const Session& session, const NodeHandle& folder, const core::Text& name);

} // namespace vx3::console

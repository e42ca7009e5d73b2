// The folders above a folder, to notice links that lead back into them.
#pragma once

#include <string>
#include <vector>

#include "filestatus.h"

namespace vx3::core {

// The folder itself counts. Its path is looked at on the first question, since most
// folders hold no link to a folder. One thread at a time.
class Ancestors
{
public:
    explicit Ancestors(std::string folderPath)
        : folder(std::move(folderPath))
    {
    }
    bool Contain(const FileIdentity& identity);

private:
    // Both ways up: along the path, which may run over links, and along `..`. Only the
    // first ends every circle of links; only the second knows the real parents.
    void CollectAlongPath();
    void CollectParents();

    std::string folder;
    bool isCollected = false;
    std::vector<FileIdentity> identities;
};

enum class FollowedStatus {
    Nothing, // no such entry
    Broken,  // the link's own status, since it leads nowhere or back
    Whole    // the status of its target
};
FollowedStatus ReadFollowedStatus(int folder, const char* name, Ancestors& ancestors, struct statx& status, Freshness freshness);

} // namespace vx3::core

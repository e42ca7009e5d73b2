// Operations on whole files and folders, on paths of native bytes.
//
// None of them replaces what exists or follows a link. A failed one leaves both ends
// as they were, but for a removal, which stops where it met the failure.
#pragma once

#include <string>

#include "vx3/folder.h"

namespace vx3::core {

// The caller's progress function and what it said.
class OperationProgress
{
public:
    OperationProgress(VX3ProgressFunction callback, void* callbackUser)
        : function(callback)
        , user(callbackUser)
    {
    }
    bool IsWanted() const { return function != nullptr; }
    bool IsCancelled() const { return isCancelled; }
    bool BeginElement(int64_t bytes) { return Report(1, bytes); } // false: stop
    bool AddBytes(int64_t bytes) { return Report(0, bytes); }     // false: stop

private:
    bool Report(int32_t count, int64_t bytes)
    {
        constexpr int32_t doing = 2;
        if (function && function(user, doing, count, bytes, 0) < 0)
            isCancelled = true;
        return !isCancelled;
    }

    VX3ProgressFunction function;
    void* user;
    bool isCancelled = false;
};

bool MakeFolder(const std::string& path);
bool RenameWithoutReplacing(const std::string& from, const std::string& to);
// Can `moved` go to `target`, or into it, by a new name alone? Where `target` is a link to
// a folder, that folder counts; of `moved` the link itself does.
bool AreOnOneVolume(const std::string& target, const std::string& moved);
bool CopyTree(const std::string& from, const std::string& to, OperationProgress& progress);
bool RemoveTree(const std::string& path, OperationProgress& progress);
bool MoveToTrash(const std::string& path, int64_t size, OperationProgress& progress);

bool IsMountPoint(const std::string& path);

// Takes away what a failed copy has left, also where its folders are read-only.
void RemoveOwnRemains(const std::string& path);

} // namespace vx3::core

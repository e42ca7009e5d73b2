#include "callrule.h"

namespace vx3::testing {

static constexpr const char* objectNames[] = { "none",        "memory block", "binary file", "data file", "compressor", "folder walk",
                                               "volume walk", "folder watch", "bitmap",      "thread",    "semaphore",  "resources" };
static_assert(std::size(objectNames) == static_cast<std::size_t>(Object::Count));

static constexpr const char* failNames[] = { "nothing",    "memory",      "open",      "read",         "write",
                                             "seek",       "inspect",     "rename",    "createFolder", "copy",
                                             "remove",     "startWalk",   "nextEntry", "watch",        "loadResource",
                                             "loadBitmap", "threadStart", "semaphore", "register",     "publish" };
static_assert(std::size(failNames) == static_cast<std::size_t>(FailClass::Count));

const char* NameOf(Object kind)
{
    return objectNames[static_cast<std::size_t>(kind)];
}

const char* NameOf(FailClass kind)
{
    return failNames[static_cast<std::size_t>(kind)];
}

} // namespace vx3::testing

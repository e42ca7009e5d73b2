#include "diskcalls.h"

#include <cerrno>
#include <climits>
#include <map>
#include <utility>

#include <unistd.h>

namespace {

struct Record {
    std::map<std::string, int> failures;
    std::function<void()> beforeLock;
    std::vector<std::string> calls;
};

Record* record = nullptr;

std::string LastPart(const std::string& path)
{
    return path.substr(path.find_last_of('/') + 1);
}

std::string NameOf(int descriptor)
{
    char path[PATH_MAX];
    const ssize_t length = readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), path, sizeof(path));
    return length > 0 ? LastPart(std::string(path, static_cast<size_t>(length))) : "?";
}

// The error that this call is to give; 0: none.
int FailureOf(const char* call)
{
    return record ? std::exchange(record->failures[call], 0) : 0;
}

int Pass(const char* call, int descriptor, int (*real)(int))
{
    if (record)
        record->calls.push_back(call + (" " + NameOf(descriptor)));
    if (const int error = FailureOf(call)) {
        errno = error;
        return -1;
    }
    return real(descriptor);
}

} // namespace

extern "C" int __real_fsync(int descriptor);
extern "C" int __wrap_fsync(int descriptor)
{
    return Pass("fsync", descriptor, __real_fsync);
}

extern "C" int __real_fdatasync(int descriptor);
extern "C" int __wrap_fdatasync(int descriptor)
{
    return Pass("fdatasync", descriptor, __real_fdatasync);
}

extern "C" int __real_flock(int descriptor, int operation);
extern "C" int __wrap_flock(int descriptor, int operation)
{
    if (record && record->beforeLock)
        std::exchange(record->beforeLock, nullptr)();
    if (const int error = FailureOf("flock")) {
        errno = error;
        return -1;
    }
    return __real_flock(descriptor, operation);
}

extern "C" int __real_renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags);
extern "C" int __wrap_renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags)
{
    if (record)
        record->calls.push_back("rename " + LastPart(from) + " " + LastPart(to));
    return __real_renameat2(fromFolder, from, toFolder, to, flags);
}

namespace vx3::core {

DiskCalls::DiskCalls()
{
    record = new Record;
}

DiskCalls::~DiskCalls()
{
    delete std::exchange(record, nullptr);
}

void DiskCalls::FailNext(const std::string& call, int error)
{
    record->failures[call] = error;
}

void DiskCalls::BeforeNextLock(std::function<void()> action)
{
    record->beforeLock = std::move(action);
}

std::vector<std::string> DiskCalls::Take()
{
    return std::exchange(record->calls, {});
}

} // namespace vx3::core

// A whole new file in the place of an old one.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "codecsource.h"
#include "services.h"
#include "values.h"

namespace vx3::core {

namespace {

constexpr mode_t newFileMode = 0666; // less the umask
constexpr mode_t permissionBits = 07777;

// The file itself where the path is a link to one, so that the link stays.
std::string FollowLinks(const std::string& path)
{
    std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    return real ? std::string(real.get()) : path;
}

// A file of a name that nobody else has, in the same folder, because a rename works inside one volume only.
int OpenBeside(const std::string& target, std::string& name)
{
    static std::atomic<uint32_t> counter{ 0 };
    constexpr int attempts = 100;
    std::string folder = target.substr(0, target.rfind('/') + 1);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        name = folder + ".vx3save" + std::to_string(::getpid()) + "-" + std::to_string(counter++);
        int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode);
        if (file >= 0 || errno != EEXIST)
            return file;
    }
    return -1;
}

bool WriteAll(int file, const ByteBuffer& bytes)
{
    for (size_t done = 0; done < bytes.size();) {
        ssize_t count = ::write(file, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += size_t(count);
    }
    return true;
}

// A pipe or a device must not be replaced by a file, nor a file lose its permissions.
bool TakeOverMode(int file, const std::string& target)
{
    struct stat old;
    if (::stat(target.c_str(), &old) != 0)
        return errno == ENOENT;
    return S_ISREG(old.st_mode) && ::fchmod(file, old.st_mode & permissionBits) == 0;
}

bool ReplaceNativeFile(const std::string& path, const ByteBuffer& bytes)
{
    std::string target = FollowLinks(path);
    std::string name;
    int file = OpenBeside(target, name);
    if (file < 0)
        return false;
    bool written = TakeOverMode(file, target) && WriteAll(file, bytes) && ::fsync(file) == 0;
    written = ::close(file) == 0 && written;
    if (written && std::rename(name.c_str(), target.c_str()) == 0)
        return true;
    ::unlink(name.c_str());
    return false;
}

bool WriteMemory(const VX3Path& path, const ByteBuffer& bytes)
{
    const VX3FileServices* files = FileServices();
    VX3BinaryFile* file = files->create();
    bool written = file && files->open(file, &path, VX3_OPEN_CREATE, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR)
        && files->write(file, bytes.data(), int64_t(bytes.size())) && files->close(file);
    files->free(file);
    return written;
}

} // namespace

bool ReplaceFile(const VX3Path& path, const ByteBuffer& bytes)
{
    if (BlockOf(path))
        return WriteMemory(path, bytes);
    std::string native = NativeBytes(path);
    return !native.empty() && ReplaceNativeFile(native, bytes);
}

} // namespace vx3::core

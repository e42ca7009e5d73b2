#include "codecsource.h"

#include <algorithm>

#include "services.h"

namespace vx3::core {

namespace {

constexpr int64_t maximumFileLength = int64_t(1) << 30;

} // namespace

PictureFile::~PictureFile()
{
    FileServices()->free(file); // closes as well
}

bool PictureFile::Open(const VX3Path& path)
{
    const VX3FileServices* files = FileServices();
    file = files->create();
    if (!file || !files->open(file, &path, VX3_OPEN_READ, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR))
        return false;
    length = files->length(file);
    return length >= 0;
}

int64_t PictureFile::ReadAt(int64_t offset, void* bytes, int64_t count)
{
    if (offset < 0 || offset >= length || count <= 0)
        return 0;
    if (!FileServices()->seek(file, offset, VX3_SEEK_ABSOLUTE))
        return -1;
    return FileServices()->read(file, bytes, std::min(count, length - offset));
}

bool PictureFile::ReadAll(ByteBuffer& bytes)
{
    if (length > maximumFileLength)
        return false;
    bytes.resize(size_t(length));
    return ReadAt(0, bytes.data(), length) == length;
}

} // namespace vx3::core

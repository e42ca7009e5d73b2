#include "journalreplay.h"

#include <algorithm>

#include "core/values.h"

namespace vx3::testing {

namespace {

bool WriteInto(const VX3Host* table, const core::Path& path, int32_t mode, int64_t offset, std::string_view bytes)
{
    const VX3FileServices& files = *table->file;
    VX3BinaryFile* file = files.create();
    if (!file)
        return false;
    const auto length = static_cast<int64_t>(bytes.size());
    const bool isWritten = files.open(file, path.Get(), mode, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR)
        && files.seek(file, offset, VX3_SEEK_ABSOLUTE) && (bytes.empty() || files.write(file, bytes.data(), length));
    const bool isClosed = files.close(file);
    files.free(file);
    return isWritten && isClosed;
}

} // namespace

bool ReplayStep(const VX3Host* table, std::string_view folder, const JournalStep& step, int64_t units)
{
    const std::string prefix = std::string(folder) + "/";
    const core::Path path(prefix + step.path);
    switch (step.kind) {
    case JournalStep::Kind::Create: return WriteInto(table, path, VX3_OPEN_CREATE, 0, {});
    case JournalStep::Kind::Write:
        return WriteInto(table, path, VX3_OPEN_UPDATE, step.offset,
                         std::string_view(step.bytes).substr(0, static_cast<std::size_t>(units)));
    case JournalStep::Kind::CreateFolder: return table->folder->createFolder(path.Get());
    case JournalStep::Kind::Remove: return table->folder->remove(path.Get(), 0, 0, nullptr, nullptr, nullptr);
    case JournalStep::Kind::Rename: {
        const core::Path newPath(prefix + step.newPath);
        return table->folder->rename(path.Get(), newPath.Get());
    }
    }
    return false;
}

} // namespace vx3::testing

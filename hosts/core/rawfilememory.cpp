#include "memoryblock.h"
#include "rawfile.h"
#include "values.h"
#include "vx3/file.h"

namespace vx3::core {

namespace {

class MemoryFile : public RawFile
{
public:
    explicit MemoryFile(MemoryBlock& shared)
        : block(shared)
    {
        block.Retain();
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() override { block.Release(); }

    int64_t ReadAt(int64_t offset, void* bytes, int64_t count) override { return block.Read(offset, bytes, count); }
    bool WriteAt(int64_t offset, const void* bytes, int64_t count) override { return block.Write(offset, bytes, count); }
    int64_t Length() override { return block.Length(); }
    bool Sync() override { return true; }
    bool Close() override { return true; }

private:
    MemoryBlock& block;
};

} // namespace

std::unique_ptr<RawFile> OpenMemoryFile(const VX3Path& path, int32_t mode, std::string& reason)
{
    MemoryBlock* block = BlockOf(path);
    if (!block || (mode != VX3_OPEN_READ && !block->writable) || (mode == VX3_OPEN_CREATE && !block->Resize(0))) {
        reason = "this memory cannot be written";
        return nullptr;
    }
    return std::make_unique<MemoryFile>(*block);
}

} // namespace vx3::core

#include "ui/folderposition.h"

namespace browser {

namespace {

struct Record {
    uint64_t address = 0; // hash of the text, letter case and all
    uint64_t lastUse = 0; // 0: empty
    FolderPosition position;
};

constexpr size_t recordCount = 512;
constinit Record records[recordCount];
constinit uint64_t useCount = 0;

// FNV-1a: with 64 bits no two of so few folders meet.
uint64_t HashOf(Units text)
{
    uint64_t hash = 0xCBF29CE484222325;
    for (VX3Unit unit : text)
        hash = (hash ^ unit) * 0x100000001B3;
    return hash;
}

Record* FindRecord(uint64_t address)
{
    for (Record& record : records)
        if (record.lastUse && record.address == address)
            return &record;
    return nullptr;
}

Record& OldestRecord()
{
    Record* oldest = records;
    for (Record& record : records)
        if (record.lastUse < oldest->lastUse)
            oldest = &record;
    return *oldest;
}

} // namespace

void StoreFolderPosition(BrowserURL& folder, const FolderPosition& position)
{
    const uint64_t address = HashOf(folder.GetText().View());
    Record* known = FindRecord(address);
    (known ? *known : OldestRecord()) = { address, ++useCount, position };
}

bool FindFolderPosition(BrowserURL& folder, FolderPosition& position)
{
    Record* known = FindRecord(HashOf(folder.GetText().View()));
    if (!known)
        return false;
    known->lastUse = ++useCount;
    position = known->position;
    return true;
}

void ForgetFolderPositions()
{
    for (Record& record : records)
        record = {};
    useCount = 0;
}

} // namespace browser

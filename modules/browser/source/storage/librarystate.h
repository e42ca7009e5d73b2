// What a library is: what stands in its file and what is known of it while it is open.
//
// Everything here is guarded by the lock of its BrowserDatabase, which the functions of this
// folder that take a LibraryState expect to be held.
#pragma once

#include <atomic>

#include "storage/bitmapcache.h"
#include "storage/chunkio.h"
#include "storage/itemlist.h"

namespace browser {

constexpr int32_t currentVersion = 7;
constexpr int32_t noSlot = -1;
constexpr int32_t firstItemId = 1;

// How a file was when this process last had it open; one that has changed since is somebody
// else's, and nothing is written over it.
struct FileStamp {
    int64_t length = -1; // -1: there is no file
    FileDate date = {};
};

// A file that the last reader of a payload left open for the next one. Readers take and leave
// it while they share the library's lock; a writer closes it, since it may have read ahead what
// is about to change.
class IdleReader
{
public:
    IdleReader() = default;
    ~IdleReader() { Leave(nullptr); }
    IdleReader(const IdleReader&) = delete;
    IdleReader& operator=(const IdleReader&) = delete;

    BinaryFile* Take() { return file.exchange(nullptr, std::memory_order_acq_rel); } // none if another has it
    void Leave(BinaryFile* read) { Destroy(file.exchange(read, std::memory_order_acq_rel)); }

private:
    std::atomic<BinaryFile*> file = nullptr;
};

struct LibraryState {
    LibraryState() = default;
    LibraryState(const LibraryState&) = delete;
    LibraryState& operator=(const LibraryState&) = delete;

    bool IsOpen() const { return openCount > 0 || isResting; } // for writers

    FilePath filePath;
    FilePath imagePath; // folder of what lies outside of the file, unless `dataInFile`
    ItemList items;
    DatabaseBitmapCache bitmapCache;
    int32_t itemCount = 0;
    int32_t nextItemId = firstItemId; // below 1: no id is left
    int32_t slot = noSlot;            // of the table; none once it is closed
    int32_t attachCount = 0;          // of the tree

    BinaryFile file; // of writers, open while `openCount` is not 0
    IdleReader idleReader;
    int32_t openCount = 0;
    bool isResting = false; // open nevertheless, behind a payload, until the next write
    FileStamp stamp;

    uint64_t headLength = 0; // of the first chunk's payload
    uint64_t endOffset = 0;  // of the closing chunk, where the next one goes; 0: there is no file
    uint64_t safeEnd = 0;    // where the log ended when the disk last had all of it
    uint64_t infoOffset = 0; // 0: none
    uint64_t categoryOffset = 0;
    uint64_t legacyOffset = 0; // of all items in one chunk

    int32_t version = currentVersion;
    int32_t loadedVersion = currentVersion;
    String libraryName;           // the URL that all paths of items begin with
    BaseContainer localizedNames; // text by packed language code
    String category;
    bool hasCategory = false;

    bool dirty = false; // something is not in the file yet
    bool infoDirty = false;
    bool categoryDirty = false;
    std::atomic<bool> readOnly = false; // also asked without the lock
    bool protectedLibrary = false;      // `readOnly` for good
    bool referenceCopy = false;
    bool damaged = false;
    bool dataInFile = true;
    bool rewriteWanted = false;
    bool needsBackup = false;        // before the next write
    bool hasUnsafePayloads = false;  // behind `safeEnd`
    bool hasUnsafeDeletions = false; // marked since the file was opened
    bool mustRewrite = false;        // before anything is appended: the disk may have lost payloads
    bool hasLostPayload = false;     // one that the disk did not have was left out of a rewrite
    bool isDetached = false;         // memory has not what the file has, which is never written over then
    bool isDisplaced = false;        // the file stands under its other name, since a renaming failed
};

// How the file is now.
FileStamp StampOf(const FilePath& path);
bool operator==(const FileStamp& a, const FileStamp& b);

// The file's name with something behind it, in the same folder.
[[nodiscard]] bool MakeSibling(const FilePath& path, const char* suffix, FilePath& sibling);

bool RemoveFile(const FilePath& path); // also true if there is none

// The container of the info chunk, and of the category's.
[[nodiscard]] bool MakeInfo(const LibraryState& library, BaseContainer& info);
[[nodiscard]] bool MakeCategory(const LibraryState& library, BaseContainer& category);

} // namespace browser

// What a library file holds, read as the browser reads it: one walk over the chunks, in
// which containers are read and payloads are passed over.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/values.h"
#include "librarycontainer.h"
#include "libraryfile.h"
#include "vx3/folder.h"

namespace vx3::console {

enum class Severity {
    Note,  // worth knowing, and allowed
    Damage // no writer leaves this behind
};

struct Finding {
    const char* code; // for programs
    Severity severity = Severity::Note;
    uint64_t offset = 0;
    int32_t item = 0; // id; 0 if it is about none
    std::string sentence;
};

// What was noticed. Counts all, and keeps no more than anybody would read.
class Findings
{
public:
    void Note(const char* code, uint64_t offset, const std::string& sentence, int32_t item = 0);
    void Damage(const char* code, uint64_t offset, const std::string& sentence, int32_t item = 0);
    const std::vector<Finding>& All() const { return findings; }
    size_t LeftOut() const { return leftOut; }
    size_t DamageCount() const { return damageCount; }

private:
    void Add(Finding finding);

    std::vector<Finding> findings;
    size_t leftOut = 0;
    size_t damageCount = 0;
};

struct LibraryPreview {
    int32_t number = 0;
    int32_t width = 0;
    int32_t height = 0;
    int32_t grade = 0;
    int64_t offset = 0; // of its chunk; 0: in a file outside
    std::string file;   // name of that file
};

struct LibraryData {
    int64_t offset = 0; // of its chunk; 0: none in the file
    int32_t mode = 0;
    int64_t unpacked = 0; // bytes
};

enum StorageMode : int32_t { StorageRaw = 0, StorageOldPacked = 1, StoragePacked = 2 };

struct LibraryItem {
    int32_t id = 0;
    uint64_t chunk = 0;    // offset of the chunk that tells of it
    bool isEmpty = false;  // its record could not be read
    std::string path;      // the whole URL
    core::Text pathUnits;  // the same
    uint32_t pathHash = 0; // as stored
    int32_t type = 0;
    int32_t subtype = 0;
    VX3FileDate created = {};
    VX3FileDate changed = {};
    std::optional<LibraryData> data;
    std::vector<LibraryPreview> previews;
    std::vector<LibraryPreview> oldPreviews; // where versions below 5 kept them
};

struct ChunkCount {
    int64_t chunks = 0;
    uint64_t bytes = 0; // with headers
};

struct LibraryScan {
    uint64_t fileLength = 0;
    WalkEnd end = WalkEnd::NoLibrary;
    bool isUnreadable = false; // a container could not be read, which ends the scan too
    uint64_t stop = 0;         // where the scan ended; behind the closing chunk
    int32_t version = 7;
    core::Text name; // URL of the library
    bool isReadOnly = false;
    std::vector<std::pair<uint32_t, std::string>> names; // by packed language code
    std::optional<std::string> category;
    int32_t infoChunks = 0;
    std::optional<uint64_t> infoOffset; // of the last one
    std::optional<uint64_t> categoryOffset;
    std::map<uint32_t, ChunkCount> chunks; // by tag; kinds that are not known under tag::none
    uint64_t liveBytes = 0;
    uint64_t deadBytes = 0;
    int32_t nextItemId = 1; // below 1: none is left
    bool hasOldItems = false;
    std::vector<LibraryItem> items;
    Findings findings;

    bool IsLibrary() const { return end != WalkEnd::NoLibrary; }
    bool IsDamaged() const; // as the browser sees it
    bool IsRewriteDue() const { return deadBytes > liveBytes; }
    const LibraryItem* FindItem(int32_t id) const; // none if there is no such item
    // The path of an item behind the URL of the library; all of it if it is not below that.
    std::string PathInside(const LibraryItem& item) const;

    std::unordered_map<int32_t, size_t> places; // of items, by id
};

constexpr int32_t currentVersion = 7;
constexpr int32_t versionWithIds = 3;  // of payload chunks
constexpr int32_t versionWithUrls = 4; // before it, items of an old chunk may belong to no library
constexpr int32_t versionWithPreviewPlace = 5;

LibraryScan ScanLibrary(LibraryFile& file);

std::string LanguageText(uint32_t packed); // "us"
VX3FileDate UnpackDate(ContainerView packed);

std::string Counted(int64_t count, const char* what); // "1 item", "2 items"
std::string ChunkText(const Chunk& chunk);            // "the chunk 'bina' of item 5"

} // namespace vx3::console

// The file and folder sections of a host's table on a tree in memory.
//
// Behaves as the core host's sections do on a disk, with dates that a test sets, marks
// that need no rights, and counters of what was asked. Memory paths work as ever; data
// files and picture codecs of the base table go on using the disk. A removal is for
// good, whatever the host is set to.
//
// One lives at a time. Builder calls are for the main thread while nobody uses the
// table; the functions of the table may be called by any thread.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "vx3/host.h"

namespace vx3::testing {

// What was asked of the file system.
enum class Asked : uint8_t {
    Exists,
    Inspect,
    Date,
    CreateFolder,
    Rename,
    Move,
    Copy,
    Remove,
    SameVolume,
    Probe,
    Walk,
    Entry,
    Volumes,
    Open,
    Watch,
    Count
};

struct MemoryImage; // a whole tree, kept aside

class MemoryFileSystem
{
public:
    explicit MemoryFileSystem(const VX3Host* base); // only the folder `/`
    ~MemoryFileSystem();
    MemoryFileSystem(const MemoryFileSystem&) = delete;
    MemoryFileSystem& operator=(const MemoryFileSystem&) = delete;

    const VX3Host* Table() const;

    // Builders. Paths are absolute native bytes; missing folders above are made. A listing
    // gives entries in the order in which they came. What exists is replaced.
    void AddFolder(std::string_view path);
    void AddFile(std::string_view path, std::string_view bytes, const VX3FileDate& date = {}); // no date: now
    void AddLink(std::string_view path, std::string_view target);
    void AddSpecial(std::string_view path); // a pipe
    void AddVolume(std::string_view path, std::string_view label, uint32_t attributes = 0);
    void Remove(std::string_view path);
    void SetDates(std::string_view path, const VX3FileDate& created, const VX3FileDate& modified);
    void SetReadOnly(std::string_view path, bool value = true);
    void SetHidden(std::string_view path, bool value = true);
    void SetBundle(std::string_view path, bool value = true);
    void SetUnreadable(std::string_view path, bool value = true); // cannot be opened or listed
    void SetListingOrder(std::string_view folder, const std::initializer_list<std::string_view>& names);
    void BreakListing(std::string_view folder, int64_t entries); // a walk breaks off behind so many
    void FailProbe(std::string_view volume, bool value = true);
    void SetFreeBytes(int64_t bytes);  // -1: without an end
    void SetCaseSensitive(bool value); // before the first entry

    bool Exists(std::string_view path) const;
    std::string BytesOf(std::string_view path) const; // empty if it is no file
    // The whole tree as text: a line for each entry, sorted, folders with a slash at the
    // end, files with `=` and their bytes.
    std::string Listing(std::string_view folder = "/") const;

    std::shared_ptr<const MemoryImage> Keep() const;
    void Restore(const std::shared_ptr<const MemoryImage>& image);

    int64_t CountOf(Asked what) const;
    void ResetCounts();
};

} // namespace vx3::testing

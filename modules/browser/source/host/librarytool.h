// One library file that a tool has open, beside those that the browser shows.
//
// Owns its library, which is in the table as long as it lives, and keeps the file open for
// writing from the first change on. Made and closed on the main thread; in between one
// thread at a time. Refuses what would lose something: see the public header.
#pragma once

#include "storage/browserdatabaseitem.h"
#include "storage/librarytable.h"
#include "vx3/librarytools.h"

namespace browser {

enum class LibraryOutcome : int32_t {
    Ok = VX3_LIBRARY_OK,
    NotFound = VX3_LIBRARY_NOT_FOUND,
    Exists = VX3_LIBRARY_EXISTS,
    Folder = VX3_LIBRARY_FOLDER,
    Unreadable = VX3_LIBRARY_UNREADABLE,
    NoLibrary = VX3_LIBRARY_NO_LIBRARY,
    Damaged = VX3_LIBRARY_DAMAGED,
    ReadOnly = VX3_LIBRARY_READ_ONLY,
    Protected = VX3_LIBRARY_PROTECTED,
    InUse = VX3_LIBRARY_IN_USE,
    NameTaken = VX3_LIBRARY_NAME_TAKEN,
    Changed = VX3_LIBRARY_CHANGED,
    NotWritten = VX3_LIBRARY_NOT_WRITTEN,
    BadPath = VX3_LIBRARY_BAD_PATH,
    NoData = VX3_LIBRARY_NO_DATA,
    TooLarge = VX3_LIBRARY_TOO_LARGE,
    NoPicture = VX3_LIBRARY_NO_PICTURE,
    Full = VX3_LIBRARY_FULL,
    NoMemory = VX3_LIBRARY_NO_MEMORY,
    BackupThere = VX3_LIBRARY_BACKUP_THERE,
};

enum class LibraryAccess : int32_t { Read = VX3_LIBRARY_READ, Change = VX3_LIBRARY_CHANGE };

class ToolItem;

class LibraryTool
{
public:
    // Takes the library over.
    explicit LibraryTool(BrowserDatabase& opened)
        : library(&opened)
    {
    }
    LibraryTool(const LibraryTool&) = delete;
    LibraryTool& operator=(const LibraryTool&) = delete;

    [[nodiscard]] static LibraryOutcome Create(const FilePath& file, const String* name, LibraryTool*& tool);
    [[nodiscard]] static LibraryOutcome Open(const FilePath& file, LibraryAccess access, LibraryTool*& tool);
    static LibraryOutcome Close(LibraryTool* tool); // and frees it

    BrowserDatabase& Library() const { return *library; }
    [[nodiscard]] LibraryOutcome SetName(const String& name);
    [[nodiscard]] LibraryOutcome Freeze();
    [[nodiscard]] LibraryOutcome Compact();

    // --- Items, by the path behind the library's address (libraryitemtool.cpp) ---

    [[nodiscard]] LibraryOutcome FindItem(const String& path, VX3LibraryItem& item) const;
    [[nodiscard]] LibraryOutcome NextItem(int32_t& place, VX3LibraryItem& item) const;
    [[nodiscard]] LibraryOutcome PutData(const String& path, int32_t type, const void* bytes, int64_t length);
    [[nodiscard]] LibraryOutcome GetData(const String& path, Block& data) const;
    [[nodiscard]] LibraryOutcome RemoveItem(const String& path);
    [[nodiscard]] LibraryOutcome MoveItem(const String& from, const String& to);

    // --- Previews (librarypreviewtool.cpp) ---

    [[nodiscard]] LibraryOutcome PutPreview(const String& path, int32_t number, int32_t grade, const void* bytes, int64_t length);
    [[nodiscard]] LibraryOutcome GetPreview(const String& path, int32_t number, Block& bytes) const;
    [[nodiscard]] LibraryOutcome PreviewAt(const String& path, int32_t index, PreviewInfo& info) const;

private:
    [[nodiscard]] LibraryOutcome BeginChange();
    [[nodiscard]] LibraryOutcome EndHold();
    [[nodiscard]] LibraryOutcome BeginWhole();
    [[nodiscard]] LibraryOutcome Flush();
    LibraryOutcome WhyNotHeld() const;
    LibraryOutcome WhyNotStored();

    LibraryOutcome FindAddress(const String& path, String& address) const;
    LibraryOutcome OpenOwn(const String& path, ToolItem& item) const;
    LibraryOutcome Demand(const String& path, ToolItem& item, bool& isNew);
    LibraryOutcome Describe(const BrowserDatabaseItem& item, VX3LibraryItem& out) const;
    LibraryOutcome Fill(BrowserDatabaseItem& item, int32_t type, const void* bytes, int64_t length);

    BrowserDatabase* const library;
    bool isHeld = false;    // the file is open for writing
    bool isChanged = false; // something is to be written at the end
};

// A handle on an item, without the flush of each change that others end with.
class ToolItem
{
public:
    ToolItem() = default;
    ~ToolItem() { Reset(); }
    ToolItem(const ToolItem&) = delete;
    ToolItem& operator=(const ToolItem&) = delete;

    void Reset(BrowserDatabaseItem* handle = nullptr) { delete std::exchange(item, handle); }
    explicit operator bool() const { return item != nullptr; }
    BrowserDatabaseItem* operator->() const { return item; }
    BrowserDatabaseItem& operator*() const { return *item; }

private:
    BrowserDatabaseItem* item = nullptr;
};

// After something failed for memory or for another reason: is there so much?
[[nodiscard]] bool IsMemoryShort(int64_t size);

} // namespace browser

// One open library: its file, its items, and what is known of it while it is open.
//
// Made for a path, then loaded, or told to make an empty file. The table of libraries
// (librarytable.h) owns it. One reader-writer lock guards everything in it: writers hold it
// exclusively, readers of payloads share it and use a file of their own. Handles of items
// (browserdatabaseitem.h) hold no lock; the library waits for the last one before it goes.
#pragma once

#include "services/hostlock.h"
#include "storage/hashindex.h"
#include "storage/librarystate.h"

namespace browser {

class BrowserDatabaseItem;

enum LibraryFlags : uint32_t {
    LibraryMain = 1,       // takes slot 0
    LibraryUser = 2,       // takes slot 1
    LibraryExternal = 256, // data and previews go to files of a folder beside the library
};

enum class Force : bool { No, Yes };        // write even if nothing is marked as changed
enum class AllowRewrite : bool { No, Yes }; // if one is due
enum class IgnoreReadOnly : bool { No, Yes };

class BrowserDatabase
{
public:
    // `subFolder` names the folder of what lies outside, "image" if it is empty. Without a free
    // slot the library works in memory and makes no file.
    BrowserDatabase(const FilePath& path, const String& subFolder, uint32_t flags);
    ~BrowserDatabase();
    static void operator delete(void* block) { HostFree(block); }
    BrowserDatabase(const BrowserDatabase&) = delete;
    BrowserDatabase& operator=(const BrowserDatabase&) = delete;

    // --- The file ---

    [[nodiscard]] bool CreateEmptyFile();
    // False if there is no such file, or if the disk or the memory failed: then it is empty, and is
    // not written. One that is damaged is loaded as far as it goes.
    [[nodiscard]] bool Load();
    bool Flush(Force force = Force::No, AllowRewrite allowRewrite = AllowRewrite::No, IgnoreReadOnly ignoreReadOnly = IgnoreReadOnly::No);
    void FlushDirty();
    bool FreezeReadOnly(bool rewrite);
    void ClearReadOnly();
    // Writes what is changed and the whole library anew.
    bool Compact();
    // At the end: as it is told, but never over a library that is read-only.
    bool FlushAtEnd(bool compact);
    // The file stays open for writers until Release, so that many changes cost one opening.
    bool HoldFile();
    bool ReleaseFile(); // false if anything written was lost

    // --- Items: null without one; the caller must give a handle back with Release or Destroy ---

    BrowserDatabaseItem* OpenItem(const String& path, Force force = Force::No);
    bool MoveItem(const String& from, const String& to);
    bool DeleteItem(const String& path);

    // --- Names ---

    bool SetLibraryName(const String& name);
    bool SetLocalizedName(const String& name);
    String GetDisplayName(bool useFileName) const;
    // Another address for the library and all that is in it; false if it is taken.
    bool MoveLibrary(const String& newPrefix);
    bool SetCategory(const String& text);
    bool GetCategory(String& text) const; // false for none

    // --- What it is like ---

    String GetLibraryName() const;
    FilePath GetFilePath() const;
    int32_t GetSlot() const;
    int32_t CountItems() const;
    bool IsReadOnly() const;
    bool IsDirty() const;
    bool HasFile() const; // one that was loaded or made here
    bool IsDamaged() const;
    bool NeedsRewrite() const;
    bool IsReferenceCopy() const;
    bool TakeDamaged(bool clear); // whether it is; forgotten with `clear`
    void MarkReadOnly();          // in memory alone
    void MarkProtected();
    void MarkReferenceCopy();
    int32_t AttachCount() const;
    void Attach(int32_t difference);

    // For handles, and for whoever reads many items.
    LibraryState& State() { return state; }
    const LibraryState& State() const { return state; }
    ReadWriteLock& Lock() CB_UNCHECKED { return lock; }
    void CountHandle(int32_t difference) { handles.fetch_add(difference, std::memory_order_acq_rel); }
    void NoteChanged(ItemRecord& record); // with the lock held

private:
    friend class LibraryTable;

    bool FlushLocked(Force force, AllowRewrite allowRewrite, IgnoreReadOnly ignoreReadOnly);
    bool WriteLocked();
    bool RewriteLocked();
    bool TakeItems(const String& name, const String& suffix);
    void DropItems();
    bool EnterItems();
    void LeaveIndex();
    String FindFreeName(String& suffix);
    void TakeName(const String& name, const String& suffix);
    bool RenameItems(const String& oldName, const String& newName);
    BrowserDatabaseItem* CreateItem(const String& path, uint32_t hash);
    void WaitForHandles();

    mutable ReadWriteLock lock;
    LibraryState state;
    std::atomic<int32_t> handles = 0;
};

} // namespace browser

// The libraries that are open, by slot. Slot 0 is the main database, 1 the user's library;
// all others take the first free one from 2 on.
//
// Owns them. Opening and closing is for one thread at a time; looking is for any. A lock of
// its own guards the list and is the innermost one of the module.
#pragma once

#include "storage/browserdatabase.h"

namespace browser {

constexpr int32_t mainSlot = 0;
constexpr int32_t userSlot = 1;

// A library that stays open at least as long as this; or none.
class LibraryRef
{
public:
    LibraryRef() = default;
    explicit LibraryRef(BrowserDatabase* counted)
        : library(counted)
    {
    }
    LibraryRef(LibraryRef&& other) noexcept
        : library(std::exchange(other.library, nullptr))
    {
    }
    LibraryRef& operator=(LibraryRef&& other) noexcept
    {
        std::swap(library, other.library);
        return *this;
    }
    ~LibraryRef()
    {
        if (library)
            library->CountHandle(-1);
    }

    explicit operator bool() const { return library != nullptr; }
    BrowserDatabase* operator->() const { return library; }
    BrowserDatabase* Get() const { return library; }

private:
    BrowserDatabase* library = nullptr;
};

// Makes a library and enters it; none without memory. Without a free slot it is in no list:
// its maker frees it then.
BrowserDatabase* MakeLibrary(const FilePath& path, const String& subFolder, uint32_t flags);
// Takes it out of the table and frees it, without writing anything.
void CloseLibrary(BrowserDatabase* library);

int32_t LibrarySlots();              // one behind the last slot in use
LibraryRef GetLibrary(int32_t slot); // none if the slot is out of range or empty
LibraryRef GetFirstLibrary();        // slot 0
LibraryRef FindLibraryByFile(const FilePath& path);
// The one whose name the path begins with, at a "/" or its end; slot 0 for files.
LibraryRef FindLibraryForPath(const String& path, bool useFallback);
LibraryRef FindLibraryByName(const String& name, const BrowserDatabase* except);
String GetLibraryName(const String& path); // as it is shown
// The names of those that could not be read whole, with ", " between them. False if all could.
bool ListChangedNames(String& text, bool clear);

bool CompactAll();
void CloseAll(bool flush, bool compact);

// For the constructor and destructor of a library.
int32_t TakeSlot(BrowserDatabase& library, uint32_t flags); // noSlot if there is none
void GiveSlot(int32_t slot);
void FreeTableIfEmpty(); // and the index, which nobody uses then

// Handles of any library.
BrowserDatabaseItem* FindItem(const String& path);
BrowserDatabaseItem* FindItem(const String& path, uint32_t hash);
BrowserDatabaseItem* FindWritableItem(const String& path); // none if its library is read-only

} // namespace browser

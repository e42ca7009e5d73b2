// What other modules do with libraries and their items, by address.
//
// The main and the user's own library come up and go down with the content model. Opening and
// closing is for the main thread or the loader's; items are for any.
#pragma once

#include "model/browserurl.h"
#include "storage/librarytable.h"

namespace browser {

constexpr int32_t noLibrary = -1;

// A library in the table, or none: one that found no slot would belong to nobody.
BrowserDatabase* MakeOwnedLibrary(const FilePath& path, const String& subFolder, uint32_t flags);
// Of the folder beside a library file where payloads of another module's library go.
[[nodiscard]] bool NameDataFolder(const FilePath& file, String& name);

// At the start: the library of the browser itself, and that of what new objects begin as. A
// file that is not there yet is made when there is something to keep.
void OpenOwnLibraries();
void ForgetOwnLibraries(); // before the table of libraries goes

// Adds a library of another module's: its id, or -1. One that has no file yet is made.
int32_t RegisterLibrary(BrowserURL& location, const String& name, const FilePath& file);
bool UnregisterLibrary(int32_t id); // false if it is in use or could not be written
// The id of the library that holds an address, or -1; 1 for the user's library, which may
// not be there yet.
int32_t GetLibraryId(BrowserURL& url);

bool ItemExists(BrowserURL& url);
// `name` may be none, and `data` none for one that is left as it is.
bool StoreItem(int32_t id, BrowserURL& url, int32_t type, const String* name, const void* data, int64_t length);
// What is there of an item; each of the out values may be none.
bool ReadItem(int32_t id, BrowserURL& url, int32_t* type, BaseContainer* settings, Block* data);

// Tells of libraries that could not be read whole, in a box or on the console; once with
// `clear`.
void TellOfDamagedLibraries(bool clear);

} // namespace browser

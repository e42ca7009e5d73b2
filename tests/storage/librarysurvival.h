// A library file that may hold anything: it is opened, read to the last payload, written, and
// opened again. What was there the first time has to be there the second time.
#pragma once

#include <set>

#include "libraryitems.h"
#include "storage/itempayloads.h"
#include "storage/librarytable.h"

namespace vx3::tests {

using ItemsById = std::map<int32_t, std::string>; // path, type and content

inline ItemsById ItemsOf(browser::BrowserDatabase& library)
{
    ItemsById items;
    ForEachItem(library, [&](browser::BrowserDatabaseItem& item) {
        items[item.GetId()] = Utf8(item.GetPath()) + " " + std::to_string(item.GetType()) + " " + ContentOf(item);
    });
    return items;
}

// Two that name one chunk come from no writer; only the first one keeps it when a file is written anew.
inline bool SharesPayloads(browser::BrowserDatabase& library)
{
    browser::Array<browser::PayloadReference> payloads;
    std::set<uint64_t> offsets;
    ForEachItem(library, [&](browser::BrowserDatabaseItem& item) {
        (void)browser::ListPayloads(const_cast<browser::ItemRecord&>(item.Record()), payloads);
    });
    for (const browser::PayloadReference& payload : payloads)
        offsets.insert(payload.offset);
    return offsets.size() < payloads.Count();
}

// What is wrong with how a file is treated; empty if all is well. `items` are what it held.
inline std::string CheckSurvival(const browser::FilePath& file, ItemsById& items)
{
    browser::BrowserDatabase* library = browser::MakeLibrary(file, browser::String(), 0);
    if (!library || !library->Load()) {
        browser::CloseLibrary(library);
        return "it is not loaded";
    }
    items = ItemsOf(*library);
    const bool isReadOnly = library->IsReadOnly(), isShared = SharesPayloads(*library);
    const bool isWritten = library->Flush(browser::Force::Yes, browser::AllowRewrite::Yes);
    browser::CloseLibrary(library);
    if (!isWritten)
        return "it is not written";
    library = browser::MakeLibrary(file, browser::String(), 0);
    const bool isLoaded = library && library->Load();
    const bool isDamaged = isLoaded && library->IsDamaged();
    const ItemsById again = isLoaded ? ItemsOf(*library) : ItemsById();
    browser::CloseLibrary(library);
    for (const auto& [id, item] : items)
        if (!again.count(id) || (!isShared && again.at(id) != item))
            return "item " + std::to_string(id) + " was: " + item + ", and is: " + (again.count(id) ? again.at(id) : "missing");
    return isDamaged && !isReadOnly ? "it is damaged when it has been written" : "";
}

} // namespace vx3::tests

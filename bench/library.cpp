// A library of many items on a real disk: written, opened, searched, changed and compacted.

#include <filesystem>

#include "core/values.h"
#include "groups.h"
#include "openlibrary.h"
#include "records.h"
#include "steps.h"

namespace vx3::bench {

using browser::BrowserDatabase;
using browser::String;

namespace {

constexpr char libraryFile[] = "ours.libvx"; // in the folder of the run

std::string FileOf(const std::string& folder)
{
    return folder + '/' + libraryFile;
}

Library Load(const std::string& folder, size_t count)
{
    Library library = MakeLibrary(FileOf(folder));
    Demand(library->Load() && !library->IsDamaged() && library->CountItems() == static_cast<int32_t>(count), "loading the library");
    return library;
}

browser::FileDate DateOf(int64_t seconds)
{
    const time_t time = seconds;
    tm parts = {};
    gmtime_r(&time, &parts);
    const auto part = [](int value) { return static_cast<uint16_t>(value); };
    return { part(parts.tm_year + 1900), part(parts.tm_mon + 1), part(parts.tm_mday),
             part(parts.tm_hour),        part(parts.tm_min),     part(parts.tm_sec) };
}

Item AddItem(BrowserDatabase& library, size_t number)
{
    const ItemRow row = MakeRow(number);
    const browser::FileDate changed = DateOf(row.changed);
    Item item(library.OpenItem(String(row.path.c_str())));
    Demand(item && item->SetType(row.type, row.subtype) && item->SetName(String(row.name.c_str())) && item->SetCreated(DateOf(row.created))
               && item->SetChanged(changed) && item->SetData(Payload(number, dataBytes), dataBytes, false)
               && item->AddPreviewBytes(Payload(number, previewBytes), previewBytes, { 0, previewSide, previewSide, 1, changed }),
           "adding an item");
    return item;
}

// --- Writing ---

void WriteAtOnce(const std::string& folder, size_t count)
{
    double start = NowSeconds();
    Library library = MakeEmptyLibrary(FileOf(folder));
    Demand(library->HoldFile(), "opening the library");
    for (size_t i = 0; i < count; i++)
        AddItem(*library, i);
    Demand(library->Flush(), "writing the library");
    library->ReleaseFile();
    PrintCaseOf("bulk_ms", count, (NowSeconds() - start) * millisecond, "ms");
    PrintCaseOf("file_MiB", count, MebibytesOf(FileOf(folder)), "MiB");
    const double bytesOfAll = MebibytesOf(FileOf(folder)) * (1 << 20);
    const double payloadBytes = dataBytes + previewBytes + 2 * browser::chunkHeaderSize;
    PrintCaseOf("record_bytes", count, bytesOfAll / static_cast<double>(count) - payloadBytes, "B");
}

// The same bytes as if each item were written by somebody else: data, preview, record.
void WriteLog(const std::string& folder, size_t count)
{
    Library library = MakeEmptyLibrary(FileOf(folder));
    Demand(library->HoldFile(), "opening the library");
    for (size_t i = 0; i < count; i++) {
        AddItem(*library, i);
        Demand(library->Flush(), "writing an item");
    }
    library->ReleaseFile();
}

void WriteOneByOne(const std::string& folder, size_t count)
{
    Library library = MakeEmptyLibrary(FileOf(folder));
    double start = NowSeconds();
    for (size_t i = 0; i < count; i++)
        AddItem(*library, i).release()->Release();
    PrintCaseOf("commit_off_us", count, (NowSeconds() - start) * microsecond / static_cast<double>(count), "us");
    Demand(!library->IsDirty(), "writing each item");
}

// --- Reading ---

void OpenAs(const char* name, const std::string& folder, size_t count)
{
    double start = NowSeconds();
    Library library = Load(folder, count);
    PrintCaseOf(name, count, (NowSeconds() - start) * millisecond, "ms");
}

void Open(const std::string& folder, size_t count)
{
    double before = PrivateBytes(), start = NowSeconds();
    Library library = Load(folder, count);
    PrintCaseOf("open_index_ms", count, (NowSeconds() - start) * millisecond, "ms");
    PrintCaseOf("loaded_bytes_per_item", count, (PrivateBytes() - before) / static_cast<double>(count), "B");
}

Item Find(const std::string& path)
{
    return Item(browser::FindItem(String(path.c_str())));
}

void Use(const std::string& folder, size_t count)
{
    Library library = Load(folder, count);
    uint64_t random = orderSeed;
    size_t found = 0;
    Latencies lookups, previews;
    for (size_t i = 0; i < lookupCount; i++) {
        const String path(PathOfItem(NextRandom(&random) % count).c_str());
        lookups.Time([&] { found += Item(browser::FindItem(path)) != nullptr; });
    }
    Demand(found == lookupCount, "finding an item");
    for (size_t i = 0; i < previewCount; i++) {
        const Item item = Find(PathOfItem(NextRandom(&random) % count));
        browser::Block bytes;
        previews.Time([&] { found += item->GetPreviewBytes(0, bytes) && bytes.Size() == previewBytes; });
    }
    Demand(found == lookupCount + previewCount, "reading a preview");
    lookups.Print("lookup", count, nanosecond, "ns");
    previews.Print("preview", count, microsecond, "us");
}

// --- Making it smaller ---

void Shrink(const std::string& folder, size_t count)
{
    Library library = Load(folder, count);
    std::vector<String> paths;
    for (size_t i = 1; i < count; i += 2)
        paths.emplace_back(PathOfItem(i).c_str());
    double start = NowSeconds();
    for (const String& path : paths)
        Demand(library->DeleteItem(path), "deleting an item");
    Demand(library->Flush(), "writing what is deleted");
    PrintCaseOf("delete_half_ms", count, (NowSeconds() - start) * millisecond, "ms");
    start = NowSeconds();
    Demand(library->Compact(), "compacting the library");
    PrintCaseOf("compact_ms", count, (NowSeconds() - start) * millisecond, "ms");
    PrintCaseOf("compacted_MiB", count, MebibytesOf(FileOf(folder)), "MiB");
}

constexpr Step steps[] = {
    { "bulk", WriteAtOnce },
    { "open", Open },
    { "cold", [](const std::string& folder, size_t count) { OpenAs("cold_open_index_ms", folder, count); } },
    { "use", Use },
    { "shrink", Shrink },
    { "log", WriteLog },
    { "openlog", [](const std::string& folder, size_t count) { OpenAs("log_open_index_ms", folder, count); } },
    { "commits", WriteOneByOne },
    { "growth", [](const std::string& folder, size_t) { MeasureLibraryGrowth(folder); } },
};

} // namespace

Library MakeLibrary(const std::string& file)
{
    core::Path path(file);
    Library library(browser::MakeLibrary(browser::FilePath::Of(path.Get()), String(), 0));
    Demand(library != nullptr, "making a library");
    return library;
}

Library MakeEmptyLibrary(const std::string& file)
{
    std::filesystem::remove(file);
    Library library = MakeLibrary(file);
    Demand(library->CreateEmptyFile() && library->SetLibraryName(String("preset://studio.libvx")), "making a library file");
    return library;
}

int MeasureLibrary(int count, char** arguments)
{
    Payload(0, 1); // made once, and not while anything is measured
    return RunStep(steps, count, arguments);
}

} // namespace vx3::bench

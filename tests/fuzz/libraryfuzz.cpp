// The bytes are a library file.
#include <map>
#include <memory>
#include <string>

#include "fuzz/expect.h"
#include "services/preferences.h"
#include "storage/browserdatabaseitem.h"
#include "storage/itempayloads.h"
#include "storage/librarytable.h"
#include "support/modulefixture.h"

namespace {

using browser::BrowserDatabase;
using browser::BrowserDatabaseItem;
using browser::ItemRecord;
using vx3::fuzz::Expect;

constexpr const char* libraryFile = "/lib/a.libvx";

struct ItemContent {
    std::string path;
    int32_t type = 0;
    std::string name;
    std::string data;
    std::map<int32_t, std::string> previews;
    bool operator==(const ItemContent&) const = default;
};
using Content = std::map<int32_t, ItemContent>;

vx3::testing::TestHost& Host()
{
    static auto* made = [] { // for as long as the process
        vx3::testing::TestHostOptions options;
        options.files = vx3::testing::Files::InMemory;
        auto* host = new vx3::testing::TestHost(options);
        browser::host = host->Table();
        browser::SetPreferenceDefaults();
        return host;
    }();
    return *made;
}

std::string TextOf(const browser::Block& block)
{
    return std::string(reinterpret_cast<const char*>(block.Bytes()), static_cast<size_t>(block.Size()));
}

// Where two records name one chunk only one of them keeps it.
std::map<int64_t, int> CountOffsets(const BrowserDatabase& library)
{
    std::map<int64_t, int> counts;
    browser::Array<browser::PayloadReference> payloads;
    for (size_t place = 0; place < library.State().items.PlaceCount(); place++)
        if (ItemRecord* record = library.State().items.At(place)) {
            payloads.Clear();
            Expect(browser::ListPayloads(*record, payloads), "listing payloads");
            for (const browser::PayloadReference& payload : payloads)
                counts[static_cast<int64_t>(payload.offset)]++;
        }
    return counts;
}

bool IsShared(const ItemRecord& record, const std::map<int64_t, int>& counts)
{
    browser::Array<browser::PayloadReference> payloads;
    Expect(browser::ListPayloads(const_cast<ItemRecord&>(record), payloads), "listing payloads");
    for (const browser::PayloadReference& payload : payloads)
        if (counts.at(static_cast<int64_t>(payload.offset)) > 1)
            return true;
    return false;
}

ItemContent ContentOf(BrowserDatabase& library, ItemRecord& record, bool withPayloads)
{
    record.node.load()->AddUses(record, 1);
    const BrowserDatabaseItem item(library, record);
    ItemContent content = { vx3::tests::Utf8(item.GetPath()), item.GetType(), vx3::tests::Utf8(item.GetName(false)), {}, {} };
    browser::Block bytes;
    if (withPayloads && item.GetData(bytes))
        content.data = TextOf(bytes);
    browser::PreviewInfo info;
    for (int32_t place = 0; withPayloads && item.PreviewAt(place, info); place++)
        if (info.number >= 0 && item.GetPreviewBytes(info.number, bytes))
            content.previews[info.number] = TextOf(bytes);
    return content;
}

// Of the items whose payloads are told: all of one that is not to be compared are left out.
Content ContentOf(BrowserDatabase& library, const std::map<int32_t, bool>& withPayloads)
{
    Content content;
    for (size_t place = 0; place < library.State().items.PlaceCount(); place++)
        if (ItemRecord* record = library.State().items.At(place)) {
            const auto told = withPayloads.find(record->id);
            content[record->id] = ContentOf(library, *record, told == withPayloads.end() || told->second);
        }
    return content;
}

std::map<int32_t, bool> WhichAreAlone(const BrowserDatabase& library)
{
    std::map<int32_t, bool> alone;
    const std::map<int64_t, int> counts = CountOffsets(library);
    for (size_t place = 0; place < library.State().items.PlaceCount(); place++)
        if (const ItemRecord* record = library.State().items.At(place))
            alone[record->id] = !IsShared(*record, counts);
    return alone;
}

BrowserDatabase* Load()
{
    BrowserDatabase* library = browser::MakeLibrary(vx3::tests::PathOf(libraryFile), browser::String(), 0);
    Expect(library && library->Load(), "a file that can be read is loaded, whatever is in it");
    return library;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    vx3::testing::MemoryFileSystem& files = Host().FileSystem();
    if (files.Exists("/lib"))
        files.Remove("/lib");
    files.AddFolder("/lib");
    files.AddFile(libraryFile, std::string_view(reinterpret_cast<const char*>(data), size));
    BrowserDatabase* library = Load();
    const bool isReadOnly = library->IsReadOnly();
    const std::map<int32_t, bool> alone = WhichAreAlone(*library);
    const Content loaded = ContentOf(*library, alone);
    Expect(library->Flush(browser::Force::Yes, browser::AllowRewrite::Yes), "it can be written");
    Expect(ContentOf(*library, alone) == loaded, "writing changes nothing in memory");
    browser::CloseLibrary(library);
    library = Load();
    Expect(isReadOnly || !library->IsDamaged(), "what was written is whole");
    Expect(ContentOf(*library, alone) == loaded, "what was loaded is there again");
    browser::CloseLibrary(library);
    return 0;
}

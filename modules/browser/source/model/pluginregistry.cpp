#include "model/pluginregistry.h"

#include "services/binaryfile.h"
#include "services/resources.h"

namespace browser {

namespace {

struct Entry {
    BrowserPluginInterface* plugin;
    MatchFiles matchFiles;
};

struct Registry {
    HostLock lock;
    Array<Entry> entries CB_GUARDED_BY(lock);
};

Registry* registry = nullptr;

bool EntryAt(size_t index, Entry& out)
{
    if (!registry)
        return false;
    LockGuard guard(registry->lock, LockRank::Registry);
    if (index >= registry->entries.Count())
        return false;
    out = registry->entries[index];
    return true;
}

// The first plugin that takes part in matching and answers to the URL or the header.
// An entry that is added meanwhile is not asked.
BrowserPluginInterface* FirstThatIdentifies(BrowserURL& url, IdentifyHeader header)
{
    Entry entry;
    const auto count = static_cast<size_t>(GetPluginCount());
    for (size_t i = 0; i < count && EntryAt(i, entry); i++)
        if (entry.matchFiles == MatchFiles::Yes && entry.plugin->Identify(url, header))
            return entry.plugin;
    return nullptr;
}

// The number of bytes, 0 if nothing could be read.
int32_t ReadHead(BrowserURL& url, uint8_t* head)
{
    FilePath path;
    if (!url.GetFile(path))
        return 0;
    BinaryFile file;
    if (!file.Open(path, OpenMode::Read))
        return 0;
    int64_t length = file.Read(head, IDENTIFY_HEADER_BYTES);
    return length > 0 ? static_cast<int32_t>(length) : 0;
}

BrowserPluginInterface* TestDeep(BrowserURL& url, BrowserPluginInterface* candidate)
{
    uint8_t head[IDENTIFY_HEADER_BYTES];
    IdentifyHeader header = { head, ReadHead(url, head) };
    if (!header.length)
        return nullptr;
    if (candidate && candidate->Identify(url, header))
        return candidate;
    return FirstThatIdentifies(url, header);
}

} // namespace

KnownPlugins knownPlugins;

bool CreatePluginRegistry()
{
    if (!registry)
        registry = Make<Registry>()();
    return registry != nullptr;
}

void FreePluginRegistry()
{
    Destroy(registry);
    registry = nullptr;
    knownPlugins = {};
}

bool RegisterPlugin(BrowserPluginInterface* plugin, MatchFiles matchFiles)
{
    if (!plugin || !registry)
        return false;
    LockGuard guard(registry->lock, LockRank::Registry);
    for (const Entry& entry : registry->entries)
        if (entry.plugin == plugin)
            return false;
    if (!registry->entries.Append({ plugin, matchFiles }))
        return false;
    NoteContentChange();
    return true;
}

void UnregisterPlugin(BrowserPluginInterface* plugin)
{
    if (!registry)
        return;
    LockGuard guard(registry->lock, LockRank::Registry);
    for (size_t i = 0; i < registry->entries.Count(); i++) {
        if (registry->entries[i].plugin != plugin)
            continue;
        registry->entries.RemoveAt(i);
        return NoteContentChange();
    }
}

int32_t GetPluginCount()
{
    if (!registry)
        return 0;
    LockGuard guard(registry->lock, LockRank::Registry);
    return static_cast<int32_t>(registry->entries.Count());
}

BrowserPluginInterface* GetPluginByIndex(int32_t index)
{
    Entry entry;
    return index >= 0 && EntryAt(static_cast<size_t>(index), entry) ? entry.plugin : nullptr;
}

bool DoesMatchFiles(BrowserPluginInterface* plugin)
{
    Entry entry;
    for (size_t i = 0; EntryAt(i, entry); i++)
        if (entry.plugin == plugin)
            return entry.matchFiles == MatchFiles::Yes;
    return false;
}

BrowserPluginInterface* FindPluginById(int32_t typeId)
{
    Entry entry;
    for (size_t i = 0; EntryAt(i, entry); i++)
        if (entry.plugin->GetTypeId(nullptr) == typeId)
            return entry.plugin;
    return nullptr;
}

bool FindPluginForUrl(BrowserURL& url, PluginTest test, BrowserPluginInterface** out)
{
    BrowserPluginInterface* found = FirstThatIdentifies(url, {});
    if (test == PluginTest::Deep)
        found = TestDeep(url, found);
    if (out)
        *out = found;
    return found != nullptr;
}

BrowserPluginInterface* PluginOf(BrowserContentNode& node)
{
    BrowserPluginInterface* plugin = node.GetPlugin(0);
    return plugin ? plugin : knownPlugins.unknownFile;
}

VX3PreviewDialog* CreatePreviewDialog(ContentRef node, uint32_t request)
{
    BrowserPluginInterface* plugin = node ? PluginOf(*node) : nullptr;
    return plugin ? plugin->CreatePreviewDialog(std::move(node), request) : nullptr;
}

int32_t ClosePreviewDialog(ContentRef node, VX3PreviewDialog* dialog)
{
    BrowserPluginInterface* plugin = node ? PluginOf(*node) : nullptr;
    return plugin ? plugin->ClosePreviewDialog(std::move(node), dialog) : 0;
}

int32_t PollPreviewDialog(ContentRef node, VX3PreviewDialog* dialog)
{
    BrowserPluginInterface* plugin = node ? PluginOf(*node) : nullptr;
    return plugin ? plugin->PollPreviewDialog(std::move(node), dialog) : 0;
}

bool OpenItem(ContentRef node, BrowserURL* url, uint32_t request)
{
    BrowserPluginInterface* plugin = nullptr;
    if (node)
        plugin = PluginOf(*node);
    else if (url)
        (void)FindPluginForUrl(*url, PluginTest::Deep, &plugin);
    return plugin && plugin->OpenItem(std::move(node), url, request);
}

void GetTypeName(ContentRef node, BrowserURL* url, String& out, TypeDetail detail)
{
    BrowserPluginInterface* plugin = nullptr;
    if (node)
        plugin = PluginOf(*node);
    else if (url)
        (void)FindPluginForUrl(*url, PluginTest::Quick, &plugin);
    if (plugin)
        plugin->GetTypeName(out, std::move(node), url, detail);
    else
        out = ResourceText(Texts::UnknownType);
}

} // namespace browser

// The plugins in a fixed order, which decides who is asked first.
//
// Entries are added at the end and taken out; positions from 0 to the count - 1 stay
// valid. The registry's lock is never held while a plugin runs.
#pragma once

#include "model/browserinterface.h"

namespace browser {

enum class PluginTest : bool { Quick, Deep }; // by the URL alone, or by the head of the content
enum class MatchFiles : bool { No, Yes };     // does the plugin take part in finding the type of a file?

// False without memory, without a plugin, and for one that is registered already.
[[nodiscard]] bool RegisterPlugin(BrowserPluginInterface* plugin, MatchFiles matchFiles);
void UnregisterPlugin(BrowserPluginInterface* plugin);
int32_t GetPluginCount();
BrowserPluginInterface* GetPluginByIndex(int32_t index); // none beyond the count
bool DoesMatchFiles(BrowserPluginInterface* plugin);
BrowserPluginInterface* FindPluginById(int32_t typeId);
// `out` may be none; else it is set, also to none.
bool FindPluginForUrl(BrowserURL& url, PluginTest test, BrowserPluginInterface** out);

// The plugins that are looked up by name; none until they are registered.
struct KnownPlugins {
    BrowserPluginInterface* folder = nullptr;
    BrowserPluginInterface* unknownFile = nullptr;
    BrowserPluginInterface* category = nullptr;
};
extern KnownPlugins knownPlugins;

// The sequence exists between these calls, on the main thread.
[[nodiscard]] bool CreatePluginRegistry();
void FreePluginRegistry(); // the plugins are their makers'

// The plugin of a node, or that for files of unknown type; none before start.
BrowserPluginInterface* PluginOf(BrowserContentNode& node);

// The ways from a node to its plugin.
VX3PreviewDialog* CreatePreviewDialog(ContentRef node, uint32_t request);
int32_t ClosePreviewDialog(ContentRef node, VX3PreviewDialog* dialog);
int32_t PollPreviewDialog(ContentRef node, VX3PreviewDialog* dialog);
bool OpenItem(ContentRef node, BrowserURL* url, uint32_t request);
void GetTypeName(ContentRef node, BrowserURL* url, String& out, TypeDetail detail);

} // namespace browser

#include "plugins/registryorder.h"

#include "model/pluginregistry.h"
#include "plugins/browserimageplugin.h"
#include "plugins/filetypes.h"

namespace browser {

namespace {

template <class Plugin, const FileType& type>
BrowserPluginInterface* MakePlugin()
{
    return Make<Plugin>()(type);
}

struct Row {
    BrowserPluginInterface* (*make)();
    MatchFiles matchFiles;
    BrowserPluginInterface* KnownPlugins::*known = nullptr; // where it is looked up by name
};

// Of two that share an extension the first wins: "mp2" is a movie.
constexpr Row order[] = {
    { MakePlugin<BrowserImagePlugin, imageFiles>, MatchFiles::Yes },
    { MakePlugin<FileTypePlugin, sceneFiles>, MatchFiles::Yes },
    { MakePlugin<FileTypePlugin, movieFiles>, MatchFiles::Yes },
    { MakePlugin<FileTypePlugin, unknownFileType>, MatchFiles::No, &KnownPlugins::unknownFile },
    { MakePlugin<FileTypePlugin, folderType>, MatchFiles::No, &KnownPlugins::folder },
    { MakePlugin<FileTypePlugin, scriptFiles>, MatchFiles::Yes },
    { MakePlugin<FileTypePlugin, soundFiles>, MatchFiles::Yes },
    { MakePlugin<FileTypePlugin, tonicFiles>, MatchFiles::Yes },
    { MakePlugin<FileTypePlugin, layoutFiles>, MatchFiles::Yes },
    { MakePlugin<FileTypePlugin, categoryType>, MatchFiles::No, &KnownPlugins::category },
};

// In the order of the rows; none where a plugin was left out.
BrowserPluginInterface* made[std::size(order)];

} // namespace

void RegisterAllPlugins()
{
    for (size_t i = 0; i < std::size(order); i++) {
        BrowserPluginInterface* plugin = order[i].make();
        if (!RegisterPlugin(plugin, order[i].matchFiles)) {
            delete plugin;
            continue;
        }
        made[i] = plugin;
        if (order[i].known)
            knownPlugins.*order[i].known = plugin;
    }
}

void FreeAllPlugins()
{
    knownPlugins = {};
    for (BrowserPluginInterface*& plugin : made) {
        UnregisterPlugin(plugin);
        delete std::exchange(plugin, nullptr);
    }
}

} // namespace browser

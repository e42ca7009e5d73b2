// The module's own plugins in their fixed order, which decides who is asked first.
#pragma once

namespace browser {

// At start, on the main thread, behind CreatePluginRegistry. A plugin that finds no
// memory is left out, and files of its type are of unknown type.
void RegisterAllPlugins();
// At the end, when no node refers to a plugin any more.
void FreeAllPlugins();

} // namespace browser

#include "host/servicetable.h"

namespace browser {

namespace {

VX3Browser table = {};

} // namespace

void PublishServiceTable()
{
    table = {};
    table.windows = WindowSection();
    table.tree = TreeSection();
    table.icons = IconSection();
    table.libraries = LibrarySection();
    table.items = ItemSection();
    table.plugins = PluginSection();
    table.urls = UrlSection();
    table.references = ReferenceSection();
    table.links = LinkSection();
    table.nodes = NodeSection();
    table.dispatch = DispatchSection();
    table.tools = ToolSection();
    (void)host->registry->publish(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION, sizeof table, &table);
}

void WithdrawServiceTable()
{
    host->registry->withdraw(VX3_BROWSER_TABLE);
}

} // namespace browser

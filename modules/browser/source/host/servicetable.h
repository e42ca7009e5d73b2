// The table that this module publishes for other modules: plain forwards to the
// operations of the folders below, laid out once.
#pragma once

#include "model/browserinterface.h"
#include "vx3/browser.h"

namespace browser {

void PublishServiceTable();
void WithdrawServiceTable();

// The sections, one file each or two.
const VX3BrowserWindows* WindowSection(); // none without a GUI
const VX3TreeFunctions* TreeSection();
const VX3IconFunctions* IconSection();
const VX3LibraryFunctions* LibrarySection();
const VX3ItemFunctions* ItemSection();
const VX3PluginFunctions* PluginSection();
const VX3UrlFunctions* UrlSection();
const VX3ReferenceFunctions* ReferenceSection();
const VX3LinkFunctions* LinkSection();
const VX3NodeFunctions* NodeSection();
const VX3DispatchFunctions* DispatchSection();
const VX3ToolFunctions* ToolSection();
extern const VX3LibraryToolFunctions libraryToolSection; // a part of the one for tools

// Both worlds' names of one object.
inline BrowserContentNode* FromC(VX3Node* node)
{
    return reinterpret_cast<BrowserContentNode*>(node);
}
inline VX3Node* ToC(BrowserContentNode* node)
{
    return reinterpret_cast<VX3Node*>(node);
}
inline BrowserPluginInterface* FromC(VX3Plugin* plugin)
{
    return reinterpret_cast<BrowserPluginInterface*>(plugin);
}
inline VX3Plugin* ToC(BrowserPluginInterface* plugin)
{
    return reinterpret_cast<VX3Plugin*>(plugin);
}
inline VX3Preview* ToC(Preview* preview)
{
    return reinterpret_cast<VX3Preview*>(preview);
}

// The reference of an argument that the callee consumes.
inline ContentRef Consume(VX3Node* node)
{
    return ContentRef::Adopt(FromC(node));
}
// A reference for the caller.
inline void GiveOut(ContentRef node, VX3Node** out)
{
    *out = ToC(node.Take());
}

} // namespace browser

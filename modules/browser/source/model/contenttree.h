// The one tree of everything that the browser shows, and its fixed roots.
//
// Made and taken down on the main thread; in between any thread reads the globals, which
// do not change then. The tree has no lock of its own: its nodes have.
#pragma once

#include "model/browserinterface.h"

namespace browser {

class BrowserDatabase;

class BrowserContentTree : public RTree
{
};

// The roots by their index in the interface.
enum class RootIndex : int32_t { Presets = 0, Catalogs = 1, Computer = 2, Recent = 3, Search = 4, Favourites = 5 };
constexpr size_t rootIndexCount = 6;

struct ContentTree {
    BrowserContentTree* tree = nullptr; // owned by host/contentmodel
    GlobalRef<BrowserContentNode> indexedRoots[rootIndexCount];
    GlobalRef<BrowserContentNode> network;
    GlobalRef<BrowserContentNode> defaultObjects;
    BrowserDatabase* mainDatabase = nullptr;     // of favourites, recent entries and stored previews; in slot 0
    BrowserDatabase* defaultsDatabase = nullptr; // of what new objects begin as; both belong to the table of libraries
    std::atomic<bool> ready = false;             // all libraries are loaded: the host may be told of changes

    BrowserContentNode* Computer() const { return indexedRoots[size_t(RootIndex::Computer)].Get(); }
    BrowserContentNode* Presets() const { return indexedRoots[size_t(RootIndex::Presets)].Get(); }
    void ForgetRoots();
};

extern ContentTree contentTree;

void GetRootByIndex(int32_t index, ContentRef& out);
void GetRootNode(ContentRef node, ContentRef& out); // the first top node, or the first child of `node`
bool AttachToRoot(ContentRef node, int32_t index);
void NotifyChanged(ContentRef node);
void RefreshVolumes();
// Sets the nodes, children of one parent, in this order in front of the other children.
bool ReorderChildren(int32_t reserved, BrowserContentNode* const* nodes, int32_t count);

} // namespace browser

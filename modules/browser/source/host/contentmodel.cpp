#include "host/contentmodel.h"

#include "host/librarymount.h"
#include "host/librarystore.h"
#include "model/browserfolders.h"
#include "model/browserutils.h"
#include "model/contenttree.h"
#include "model/pluginregistry.h"
#include "model/upcalls.h"
#include "model/urlresolver.h"
#include "nodes/categorynode.h"
#include "nodes/volumelist.h"
#include "plugins/registryorder.h"
#include "services/resources.h"
#include "storage/itempacking.h"
#include "storage/librarynames.h"
#include "ui/iconservice.h"
#include "ui/windowregistry.h"

namespace browser {

void ConnectNetworkResolver(bool (*resolver)(BrowserURL& url, FilePath& path));

namespace {

struct RootRow {
    const char* url;
    int32_t name;
    Icon icon;
    GlobalRef<BrowserContentNode>* root;
    bool belowPresets;
};

// In the order in which they stand in the tree.
constexpr size_t rootCount = 8;
void ListRoots(RootRow (&rows)[rootCount])
{
    auto* indexed = contentTree.indexedRoots;
    const RootRow all[rootCount] = {
        { "file:/", Texts::Computer, Icon::Computer, &indexed[size_t(RootIndex::Computer)], false },
        { "network:/", Texts::Network, Icon::FolderNetwork, &contentTree.network, false },
        { "preset:/", Texts::Presets, Icon::FolderPresets, &indexed[size_t(RootIndex::Presets)], false },
        { "defaultobject.libvx", Texts::DefaultObjects, Icon::Folder, &contentTree.defaultObjects, true },
        { "catalog:/", Texts::Catalogs, Icon::FolderCatalogs, &indexed[size_t(RootIndex::Catalogs)], false },
        { "favorite:/", Texts::Favourites, Icon::Favorites, &indexed[size_t(RootIndex::Favourites)], false },
        { "recent:/", Texts::Recent, Icon::Folder, &indexed[size_t(RootIndex::Recent)], false },
        { "search:/", Texts::Search, Icon::FolderSearch, &indexed[size_t(RootIndex::Search)], false },
    };
    for (size_t i = 0; i < rootCount; i++)
        rows[i] = all[i];
}

void MakeRoot(const RootRow& row)
{
    RTreeNode* parent = contentTree.tree;
    if (row.belowPresets)
        parent = contentTree.Presets();
    if (!parent)
        return;
    String url(row.url);
    ContentRef root(url.IsEmpty() ? nullptr : Make<CategoryNode>()(ResourceText(row.name), url, row.icon));
    if (!root)
        return;
    root->InsertLast(parent);
    row.root->Set(std::move(root));
}

void CloseLibraries(bool compact)
{
    ForgetOwnLibraries();
    CloseAll(true, compact);
}

bool PathOfNetworkUrl(BrowserURL& url, FilePath& path)
{
    ContentRef node;
    BrowserURL found;
    FindNetworkNode(url, node);
    return node && node->GetUrl(found, 0) && found.GetKnownFile(path);
}

void ConnectUpcalls()
{
    upcalls.makeIcon = GetIcon;
    upcalls.listVolumes = ListVolumes;
    upcalls.mountLibraries = LoadLibraries;
    upcalls.announceChange = AnnounceChange;
    upcalls.stampDate = [](BrowserContentNode& category, const FileDate& date) { static_cast<CategoryNode&>(category).StampDate(date); };
    ConnectNetworkResolver(PathOfNetworkUrl);
}

} // namespace

bool InitContentModel()
{
    ConnectUpcalls();
    RememberRestriction();
    if (CreatePluginRegistry())
        RegisterAllPlugins();
    OpenOwnLibraries();
    contentTree.tree = Make<BrowserContentTree>()();
    if (!contentTree.tree)
        return false;
    RootRow rows[rootCount];
    ListRoots(rows);
    for (const RootRow& row : rows)
        MakeRoot(row);
    return true;
}

// Rewriting a library takes its time, which a run of a moment is not made to wait for.
void ShutDownContentModel(bool quick)
{
    contentTree.ForgetRoots();
    if (contentTree.tree)
        contentTree.tree->RemoveChildren();
    if (host)
        CloseLibraries(!quick);
    if (host)
        DeleteTempFolder();
}

void FreeContentModel()
{
    contentTree.ForgetRoots();
    if (contentTree.tree)
        contentTree.tree->RemoveChildren();
    delete contentTree.tree;
    contentTree.tree = nullptr;
    contentTree.ready = false;
    FreeAllPlugins();
    FreePluginRegistry();
    CloseLibraries(false); // the message of the host's end need not have come
    FreeItemCompressor();
    ForgetCurrentLanguage();
    ForgetCategoryListings();
    ForgetFolders();
    ForgetLanguages();
    ConnectNetworkResolver(nullptr);
    upcalls = {};
}

} // namespace browser

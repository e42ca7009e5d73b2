#include "nodes/categorynode.h"

#include "model/contenttree.h"
#include "model/pluginregistry.h"
#include "model/upcalls.h"

namespace browser {

namespace {

constexpr uint32_t startFlags = Attribute::mark | Attribute::folder;
constexpr int64_t linkSize = 336; // bytes that progress counts for a stored link

std::atomic<bool> volumesListed = false;
std::atomic<bool> networkListed = false;

} // namespace

void ForgetCategoryListings()
{
    volumesListed = false;
    networkListed = false;
}

CategoryNode::CategoryNode(const String& ownName, const String& url, Icon icon)
    : BrowserContentNode(NodeClass::Category, startFlags)
    , name(ownName)
    , urlText(url)
    , kind(KindOf(url))
    , iconId(icon)
    , changeDate(CurrentDate())
{
}

CategoryNode::CategoryNode(const String& ownName, const String& url, const FilePath& imagePath)
    : BrowserContentNode(NodeClass::Category, startFlags)
    , name(ownName)
    , urlText(url)
    , kind(KindOf(url))
    , image(imagePath.IsEmpty() ? HostBitmap() : HostBitmap::Load(imagePath))
    , iconId(Icon::Folder)
{
}

CategoryNode::Kind CategoryNode::KindOf(const String& url)
{
    struct Row {
        const char* url;
        Kind kind;
    };
    constexpr Row rows[] = {
        { "file:/", Kind::Computer },
        { "preset:/", Kind::Presets },
        { "catalog:/", Kind::Catalogs },
        { "network:/", Kind::Network },
    };
    for (const Row& row : rows)
        if (url == String(row.url))
            return row.kind;
    return Kind::Other;
}

bool CategoryNode::IsFavourites() const
{
    return urlText == String("favorite:/");
}

BrowserPluginInterface* CategoryNode::GetPlugin(uint32_t)
{
    return knownPlugins.category;
}

bool CategoryNode::GetUrl(BrowserURL& out, uint32_t)
{
    NodeRef above;
    GetParent(above);
    if (!above) {
        out.SetText(urlText);
        return true;
    }
    // Kept: the parent's text and the own one are joined by a slash whatever they are.
    ContentOf(above)->GetUrl(out, 0);
    out.AppendAlways(urlText);
    return true;
}

bool CategoryNode::GetDate(DateKind, FileDate& out)
{
    LockGuard guard(dateLock, LockRank::Node);
    out = changeDate;
    return true;
}

void CategoryNode::StampDate(const FileDate& date)
{
    LockGuard guard(dateLock, LockRank::Node);
    changeDate = date;
    NoteContentChange();
}

uint32_t CategoryNode::GetAttributes(int64_t* size)
{
    if (size)
        *size = 0;
    return Attribute::category | Attribute::folder;
}

Preview* CategoryNode::GetPreview(uint32_t request, int32_t size)
{
    if (image) {
        HostBitmap copy = HostBitmap::Scaled(image.Get(), size);
        return copy ? Make<Preview>()(std::move(copy), 0u) : nullptr;
    }
    bool isOpen = (request & PreviewRequest::open) != 0 && iconId == Icon::Folder;
    return MakeIcon(isOpen ? Icon::FolderOpen : iconId, size);
}

int64_t CategoryNode::Populate()
{
    if (IsRemoved())
        return 1;
    switch (kind) {
    case Kind::Computer:
        if (upcalls.listVolumes && !volumesListed.exchange(true))
            RefreshVolumes();
        break;
    case Kind::Network:
        if (upcalls.listNetwork && !networkListed.exchange(true))
            upcalls.listNetwork(*this);
        break;
    case Kind::Presets:
        if (upcalls.mountLibraries)
            upcalls.mountLibraries();
        break;
    case Kind::Catalogs:
        if (upcalls.mountCatalogs)
            upcalls.mountCatalogs();
        break;
    case Kind::Other: break;
    }
    return 1;
}

ErrorCode CategoryNode::CreateFolder(ChangeMode mode, const String& newName, ContentRef* out)
{
    if (!IsFavourites() || !CanHoldChildren() || !upcalls.addCatalogFolder)
        return Error::newFolder;
    return mode == ChangeMode::Do ? upcalls.addCatalogFolder(*this, newName, out) : Error::none;
}

ErrorCode CategoryNode::CopyInto(ContentRef source, ChangeMode mode, const String* newName, Progress progress, uint32_t)
{
    if (!IsFavourites() || !source || !upcalls.addLink)
        return Error::copy;
    switch (source->GetNodeType()) {
    case NodeType::Directory:
    case NodeType::Network:
    case NodeType::Preset:
    case NodeType::Catalog: return mode == ChangeMode::Do ? AddLink(std::move(source), newName, progress) : Error::none;
    default: return Error::copy;
    }
}

ErrorCode CategoryNode::AddLink(ContentRef source, const String* newName, Progress progress)
{
    ErrorCode result = upcalls.addLink(*this, std::move(source), newName);
    if (result == Error::none && !progress.Report(ChangeMode::Do, linkSize))
        return Error::cancelled;
    return result;
}

} // namespace browser

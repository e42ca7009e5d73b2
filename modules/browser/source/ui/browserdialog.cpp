#include "ui/browserdialog.h"

#include "model/contenttree.h"
#include "model/urlresolver.h"
#include "nodes/directorynode.h"
#include "services/preferences.h"
#include "services/resources.h"
#include "ui/browsergadgets.h"
#include "ui/watchset.h"
#include "ui/windowregistry.h"

namespace browser {

BrowserDialog::BrowserDialog()
{
    folderDialog.Init(this, ViewMode::Icons);
}

BrowserDialog::~BrowserDialog()
{
    FreeHandle();
    SetCurrentNode(ContentRef());
}

// --- Going ---

void BrowserDialog::GoTo(ContentRef node, const Going& going)
{
    if (wasClosed)
        return;
    TakeTitle(going);
    compact = compact || going.compact;
    if (!(node == currentNode))
        panesAreStale = true;
    SetCurrentNode(std::move(node));
    const bool hasUrl = !currentNode || !currentUrl.GetText().IsEmpty();
    if (hasUrl) // Without memory there is no way back.
        (void)history.Push(currentUrl.GetText());
    ShowPossibleSteps();
    if (hasUrl && !fixedUrl)
        RememberPlace();
    if (going.force)
        ReadAgain();
    folderDialog.SetNode(currentNode, going.force, going.select, going.viewMode);
}

void BrowserDialog::TakeTitle(const Going& going)
{
    if (!going.title || going.title->IsEmpty())
        return;
    title = *going.title;
    (void)SetTitle(title);
}

// Everything that goes with the node: what is watched, the date, the URL.
void BrowserDialog::SetCurrentNode(ContentRef node)
{
    if (!(node == currentNode)) {
        const bool watches = WatchNode(node);
        if (isWatching)
            UnwatchNode(currentNode);
        isWatching = watches;
    }
    currentNode = std::move(node);
    const RTreeNode* rootView = wasClosed ? nullptr : contentTree.tree;
    announcedFor.store(currentNode ? currentNode.Get() : rootView, std::memory_order_relaxed);
    currentDate = {};
    currentUrl = BrowserURL();
    if (!currentNode)
        return;
    (void)currentNode->GetDate(DateKind::Modified, currentDate);
    (void)currentNode->GetUrl(currentUrl, 0);
}

void BrowserDialog::RememberPlace()
{
    (void)SetPreferenceText(Preference::LastPlace, currentUrl.GetText());
}

void BrowserDialog::ReadAgain()
{
    if (!currentNode)
        return;
    if (DirectoryNode* folder = AsDirectory(currentNode.Get()))
        folder->MarkDirty();
    currentNode->Populate();
}

void BrowserDialog::ShowPossibleSteps()
{
    (void)Enable(Gadget::back, history.CanGoBack());
    (void)Enable(Gadget::forward, history.CanGoForward());
    (void)Enable(Gadget::up, bool(currentNode));
}

bool BrowserDialog::GoToUrl(BrowserURL& url)
{
    ContentRef node;
    FindNodeByUrl(url, FindPlain, ContentRef(), node);
    if (!node)
        return false;
    GoTo(std::move(node));
    return true;
}

void BrowserDialog::ShowNode(ContentRef node, ContentRef select)
{
    Going going;
    going.select = std::move(select);
    GoTo(std::move(node), going);
}

void BrowserDialog::GoUp()
{
    NodeRef parent;
    if (currentNode)
        currentNode->GetParent(parent);
    if (!parent)
        return;
    ShowNode(ToContent(parent), currentNode);
}

void BrowserDialog::GoUpByUrl()
{
    if (!currentNode)
        return;
    BrowserURL above;
    ContentRef node;
    currentUrl.GetParent(above);
    if (!above.GetText().IsEmpty())
        FindNodeByUrl(above, FindPlain, ContentRef(), node);
    ShowNode(std::move(node), currentNode);
}

void BrowserDialog::Rescan()
{
    Going going;
    going.force = true;
    GoTo(currentNode, going);
}

// --- History ---

bool BrowserDialog::Step(BrowserHistory::Direction direction)
{
    const bool stepped = direction == BrowserHistory::Direction::Back ? history.Back(1) : history.Forward(1);
    if (stepped)
        GoToHistory();
    return stepped;
}

// Kept: a place that is gone shows the root view, and its empty URL becomes an entry.
void BrowserDialog::GoToHistory()
{
    String text;
    ContentRef node;
    (void)history.Get(0, text);
    currentUrl.SetText(text);
    BrowserURL url(text);
    FindNodeByUrl(url, FindPlain, ContentRef(), node);
    GoTo(std::move(node));
}

// The name of the node, of the file that is no longer there, or a word that says so.
String BrowserDialog::NameOfRow(const String& text) const
{
    BrowserURL url(text);
    ContentRef node;
    String name;
    FindNodeByUrl(url, FindPlain, ContentRef(), node);
    if (node)
        node->GetName(name);
    else if (url.HasFile())
        url.GetName(name);
    return name.IsEmpty() ? ResourceText(Texts::UnknownPlace) : name;
}

void BrowserDialog::ShowHistoryMenu(BrowserHistory::Direction direction)
{
    BaseContainer menu;
    String url;
    for (int32_t row = 1; history.GetRow(direction, row, url); row++)
        (void)menu.SetText(BrowserHistory::menuBase + row, NameOfRow(url));
    const int32_t choice = PopupMenu(menu);
    if (history.GoToChoice(direction, choice))
        GoToHistory();
}

// --- Fixed places ---

void BrowserDialog::GoToPlace(int32_t place)
{
    FilePath path;
    if (!host->run->place(place, path.Value()))
        return;
    BrowserURL url(path);
    (void)GoToUrl(url);
}

void BrowserDialog::GoToHome()
{
    BrowserURL url(GetPreferenceText(Preference::HomeUrl));
    if (!url.HasContent())
        return GoToPlace(VX3_PLACE_HOME);
    (void)GoToUrl(url);
}

void BrowserDialog::GoToRoot(int32_t index)
{
    ContentRef root;
    GetRootByIndex(index, root);
    if (root)
        GoTo(std::move(root));
}

// --- Panes ---

void BrowserDialog::UpdateSelectionPanes(bool force)
{
    const uint32_t changeCount = folderDialog.GetList().ChangeCount();
    if (changeCount == lastChangeCount && !panesAreStale && !force)
        return;
    lastChangeCount = changeCount;
    panesAreStale = false;
    folderDialog.ShowStatus();
}

void BrowserDialog::OpenInNewWindow(ContentRef node)
{
    (void)OpenBrowserWindow(std::move(node)); // All 16 may be open.
}

void BrowserDialog::SelectLater(ContentRef child)
{
    events.Post(BrowserEvent::Type::Select, NodeRef(child));
}

bool BrowserDialog::ActivateGadget(int32_t id)
{
    return id == Gadget::folderPane && folderDialog.ActivateView();
}

// --- Announcements ---

bool BrowserDialog::IsShown(const RTreeNode* node) const
{
    return node && announcedFor.load(std::memory_order_relaxed) == node;
}

void BrowserDialog::NodeChanged(const ContentRef& node)
{
    if (IsShown(node.Get()))
        events.Post(BrowserEvent::Type::ClearSelection, NodeRef(node));
}

void BrowserDialog::NodeChangedWithChild(const ContentRef& child, const RTreeNode* parent)
{
    if (child && IsShown(parent))
        events.Post(BrowserEvent::Type::Select, NodeRef(child));
}

void BrowserDialog::ChildLeft(const ContentRef& child, const RTreeNode* parent)
{
    if (child && IsShown(parent))
        events.Post(BrowserEvent::Type::Deselect, NodeRef(child));
}

// What changed was changed before this: the refresh that follows the flag sees it.
void BrowserDialog::NodeListChanged(const RTreeNode* node, const RTreeNode* parent)
{
    const RTreeNode* shown = announcedFor.load(std::memory_order_relaxed);
    const RTreeNode* above = parent ? parent : contentTree.tree;
    if (shown && (node == shown || above == shown))
        reloadAll.store(true, std::memory_order_release);
}

bool BrowserDialog::HasWork()
{
    return reloadAll.load(std::memory_order_relaxed) || reloadPane.load(std::memory_order_relaxed) || events.HasPending();
}

} // namespace browser

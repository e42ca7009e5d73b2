#include "ui/windowregistry.h"

#include "model/contenttree.h"
#include "model/urlresolver.h"
#include "services/guitools.h"
#include "services/preferences.h"
#include "ui/browserdialog.h"
#include "ui/watchset.h"

namespace browser {

namespace {

HostLock registryLock;
BrowserDialog* windows[windowSlots] CB_GUARDED_BY(registryLock) = {}; // owned; changed on the main thread only

BrowserDialog* activeDialog = nullptr; // main thread; one of `windows`

// The main thread alone changes slots, so it reads them without the lock.
BrowserDialog* WindowIn(int32_t slot) CB_UNCHECKED
{
    return windows[slot];
}

void SetWindow(int32_t slot, BrowserDialog* window)
{
    BrowserDialog* old = WindowIn(slot);
    {
        LockGuard guard(registryLock, LockRank::Windows);
        windows[slot] = window;
    }
    if (old) {
        ForgetActiveDialog(old);
        delete old;
    }
}

bool IsFree(int32_t slot)
{
    const BrowserDialog* window = WindowIn(slot);
    return !window || (!window->IsOpen() && !window->IsHandling());
}

// A new window in a slot, in place of one that was closed; none without memory.
BrowserDialog* MakeWindow(int32_t slot)
{
    auto* window = Make<BrowserDialog>()();
    if (window)
        SetWindow(slot, window);
    return window;
}

// The first slot that is empty or whose window is closed; -1 if all are open.
int32_t FindFreeSlot()
{
    for (int32_t slot = 0; slot < windowSlots; slot++)
        if (IsFree(slot))
            return slot;
    return -1;
}

bool OpenInSlot(int32_t slot, ContentRef node)
{
    BrowserDialog* window = MakeWindow(slot);
    if (!window)
        return false;
    Going going;
    if (node && !node->CanHoldChildren()) {
        NodeRef parent;
        node->GetParent(parent);
        going.select = std::move(node);
        node = ToContent(parent);
    }
    window->GoTo(std::move(node), going);
    if (window->OpenWindow(slot))
        return true;
    SetWindow(slot, nullptr);
    return false;
}

} // namespace

bool OpenBrowserWindow(ContentRef node)
{
    const int32_t slot = FindFreeSlot();
    return host->gui && slot >= 0 && OpenInSlot(slot, std::move(node));
}

bool OpenBrowserWindow(BrowserURL& url)
{
    BusyCursor busy;
    if (FindFreeSlot() < 0)
        return false;
    RefreshVolumes();
    ContentRef node;
    if (!url.GetText().IsEmpty())
        FindNearestNode(url, node);
    return OpenBrowserWindow(std::move(node));
}

bool RestoreBrowserWindow(int32_t slot)
{
    if (!host->gui || slot < 0 || slot >= windowSlots || !IsFree(slot))
        return false;
    BrowserDialog* window = MakeWindow(slot);
    if (!window)
        return false;
    if (window->RestoreWindow(slot, BrowserURL(GetPreferenceText(Preference::StartUrl))))
        return true;
    SetWindow(slot, nullptr);
    return false;
}

BrowserDialog* FindBrowserWindow(int32_t slot)
{
    if (slot == -1)
        return activeDialog;
    BrowserDialog* window = slot >= 0 && slot < windowSlots ? WindowIn(slot) : nullptr;
    return window && window->IsOpen() ? window : nullptr;
}

BrowserDialog* ActiveDialog()
{
    return activeDialog;
}

void SetActiveDialog(BrowserDialog* dialog)
{
    activeDialog = dialog;
}

void ForgetActiveDialog(const BrowserDialog* dialog)
{
    if (activeDialog == dialog)
        activeDialog = nullptr;
}

void CloseAllWindows()
{
    for (int32_t slot = 0; slot < windowSlots; slot++)
        SetWindow(slot, nullptr);
    ForgetWatches();
}

void AnnounceChange(ContentRef node)
{
    NodeRef parent;
    node->GetParent(parent);
    LockGuard guard(registryLock, LockRank::Windows);
    for (BrowserDialog* window : windows)
        if (window)
            window->NodeListChanged(node.Get(), parent.Get());
}

} // namespace browser

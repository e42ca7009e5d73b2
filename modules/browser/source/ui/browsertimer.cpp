// What a window does four times a second: the events that threads posted, then the one
// kind of refresh that is due.

#include "model/urlresolver.h"
#include "ui/browserdialog.h"

namespace browser {

void BrowserDialog::Timer()
{
    WindowHold hold(*this);
    DrainEvents();
    if (reloadAll.exchange(false, std::memory_order_acq_rel)) {
        reloadPane.store(false, std::memory_order_relaxed);
        folderDialog.Refresh();
        UpdateSelectionPanes(false);
        return;
    }
    if (currentNode && currentNode->IsRemoved())
        return LeaveRemovedNode();
    if (reloadPane.exchange(false, std::memory_order_acq_rel))
        folderDialog.Refresh();
}

// One event at a time, with no lock held: what an event asks for may list a folder.
void BrowserDialog::DrainEvents()
{
    bool reloaded = false;
    BrowserEvent event;
    for (uint32_t taken = 0; taken < EventRing::capacity && events.Take(event); taken++) {
        if (event.type == BrowserEvent::Type::ClearSelection) {
            if (event.node.Get() == currentNode.Get())
                folderDialog.GetList().ClearSelection();
        } else if (Select(event.node, event.type == BrowserEvent::Type::Select, reloaded)) {
            reloadPane.store(true, std::memory_order_relaxed);
        }
    }
}

// A node that is not in the list yet may have come since the folder was read; it is read
// once for all events of a tick.
bool BrowserDialog::Select(const NodeRef& node, bool selected, bool& reloaded)
{
    ContentViewEntryList& list = folderDialog.GetList();
    if (list.SetNodeSelected(node, selected))
        return true;
    if (reloaded || !currentNode)
        return false;
    reloaded = true;
    currentNode->Populate();
    folderDialog.Refresh();
    return list.SetNodeSelected(node, selected);
}

// The folder has gone: what is left of its URL is shown.
void BrowserDialog::LeaveRemovedNode()
{
    reloadPane.store(false, std::memory_order_relaxed);
    BrowserURL url = currentUrl;
    ContentRef node;
    FindNearestNode(url, node);
    GoTo(std::move(node));
}

} // namespace browser

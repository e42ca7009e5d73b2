#include "ui/eventring.h"

namespace browser {

void EventRing::Post(BrowserEvent::Type type, NodeRef node)
{
    LockGuard guard(lock, LockRank::Event);
    if (writeCount - readCount == capacity)
        return;
    BrowserEvent& slot = events[writeCount++ % capacity];
    slot.type = type;
    slot.node = std::move(node);
}

// What `out` held is given back outside the lock, since it may delete a node.
bool EventRing::Take(BrowserEvent& out)
{
    BrowserEvent taken;
    {
        LockGuard guard(lock, LockRank::Event);
        if (writeCount == readCount)
            return false;
        taken = std::exchange(events[readCount % capacity], BrowserEvent());
        readCount++;
    }
    out = std::move(taken);
    return true;
}

void EventRing::Clear()
{
    BrowserEvent event;
    while (Take(event)) { }
}

bool EventRing::HasPending()
{
    LockGuard guard(lock, LockRank::Event);
    return readCount != writeCount;
}

} // namespace browser

// What threads that may not touch a list want changed in it: a queue of fixed size, which
// the window empties in its timer.
//
// Belongs to a window. Any thread posts, the main thread takes. Each event is copied out
// under the lock and handled without it: handling waits for locks that a posting thread
// may hold.
#pragma once

#include "model/browserinterface.h"

namespace browser {

struct BrowserEvent {
    enum class Type : int32_t {
        None = 0,
        ClearSelection = 1, // if the node is the folder shown
        Select = 2,
        Deselect = 3
    };

    Type type = Type::None;
    NodeRef node;
};

class EventRing
{
public:
    static constexpr uint32_t capacity = 512;

    // Kept: with so many pending an event is dropped and nobody is told. The next refresh
    // sets the window right.
    void Post(BrowserEvent::Type type, NodeRef node) CB_NOT_HELD(lock);
    // The oldest event; false if there is none.
    [[nodiscard]] bool Take(BrowserEvent& out) CB_NOT_HELD(lock);
    bool HasPending() CB_NOT_HELD(lock);
    void Clear() CB_NOT_HELD(lock); // gives back what is pending

private:
    HostLock lock;
    // Counted up for ever; they may wrap. What lies between them is pending.
    uint32_t readCount CB_GUARDED_BY(lock) = 0;
    uint32_t writeCount CB_GUARDED_BY(lock) = 0;
    BrowserEvent events[capacity] CB_GUARDED_BY(lock);

    static_assert((capacity & (capacity - 1)) == 0, "a slot is found by the low bits of a count");
};

} // namespace browser

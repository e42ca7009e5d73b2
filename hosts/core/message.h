// The queue of core messages between the threads of a module and the main thread.
#pragma once

#include <cstdint>
#include <functional>

#include "vx3/container.h"

namespace vx3::core {

struct CoreMessage {
    int32_t id = 0;
    int64_t first = 0;
    int64_t second = 0;
    const VX3Container* data = nullptr; // none, or borrowed until the listener returns
};

// Who hears of messages, on the main thread: a host with dialogs hands them on. An
// empty function takes the listener away; messages without one are dropped.
void SetMessageListener(std::function<void(const CoreMessage&)> listener);

// Who hears that the open document has changed. Main thread.
void SetDocumentListener(std::function<void()> listener);

// Who wakes a main loop that sleeps, so that it calls CoreHost::DeliverMessages. Called on
// any thread, when something waits and nothing did before, and at once if something
// waits already. It must return soon and call nothing of the host: posting an event to
// the loop is meant. When SetWakeUp has returned, the one before is not called any more.
void SetWakeUp(std::function<void()> wakeUp);

// Says that something waits to be delivered. Any thread.
void RequestDelivery();
void BeginDelivery(); // what is requested from now on wakes again
bool IsDeliveryRequested();

// Hands out what is queued at this moment, in the order of posting. What a listener
// posts comes with the next call, so that one call always ends. A listener may call
// this again, which goes on with those that are left.
void DeliverQueuedMessages();
void DropMessages();

} // namespace vx3::core

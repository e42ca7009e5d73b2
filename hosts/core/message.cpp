#include "message.h"

#include <atomic>
#include <deque>
#include <mutex>
#include <new>
#include <optional>
#include <utility>

#include "hoststate.h"
#include "services.h"
#include "values.h"

namespace vx3::core {

namespace {

// A message with a copy of its data.
class QueuedMessage
{
public:
    QueuedMessage(int32_t id, int64_t first, int64_t second) { message = { id, first, second, nullptr }; }
    QueuedMessage(QueuedMessage&& other) noexcept
        : message(other.message)
        , data(std::exchange(other.data, {}))
        , hasData(other.hasData)
    {
    }
    QueuedMessage& operator=(QueuedMessage&&) = delete;
    ~QueuedMessage() { ContainerServices()->destruct(&data); }

    bool SetData(const VX3Container* from)
    {
        hasData = true;
        return ContainerServices()->copy(&data, from);
    }
    CoreMessage View() const
    {
        CoreMessage view = message;
        view.data = hasData ? &data : nullptr;
        return view;
    }

private:
    CoreMessage message;
    VX3Container data = {};
    bool hasData = false;
};

std::mutex queueLock;
std::deque<QueuedMessage> queue; // under queueLock

std::atomic<bool> isSomethingWaiting{ false };

std::mutex wakeUpLock;
std::function<void()> wakeUpFunction; // under wakeUpLock

std::function<void(const CoreMessage&)> messageListener; // main thread
std::function<void()> documentListener;                  // main thread

size_t CountQueue()
{
    std::lock_guard guard(queueLock);
    return queue.size();
}

std::optional<QueuedMessage> TakeFirst()
{
    std::lock_guard guard(queueLock);
    if (queue.empty())
        return std::nullopt;
    std::optional<QueuedMessage> first(std::move(queue.front()));
    queue.pop_front();
    return first;
}

void WakeUp()
{
    std::lock_guard guard(wakeUpLock); // held over the call, so that SetWakeUp waits for its end
    if (wakeUpFunction)
        wakeUpFunction();
}

VX3Bool PostCore(int32_t id, int64_t first, int64_t second, const VX3Container* data)
{
    QueuedMessage message(id, first, second);
    if (data && !message.SetData(data))
        return 0;
    try {
        std::lock_guard guard(queueLock);
        queue.push_back(std::move(message));
    } catch (const std::bad_alloc&) {
        return 0;
    }
    RequestDelivery();
    return 1;
}

void ShowText(const VX3String* text)
{
    ShowHostText(ToUtf8(*text));
}

void DocumentChanged()
{
    if (documentListener)
        documentListener();
}

} // namespace

void ShowHostText(const std::string& utf8)
{
    const HostSettings& settings = CurrentSettings();
    if (settings.onText)
        settings.onText(utf8);
    else
        WriteConsoleLine(utf8);
}

void SetMessageListener(std::function<void(const CoreMessage&)> listener)
{
    messageListener = std::move(listener);
}

void SetDocumentListener(std::function<void()> listener)
{
    documentListener = std::move(listener);
}

void SetWakeUp(std::function<void()> wakeUp)
{
    {
        std::lock_guard guard(wakeUpLock);
        wakeUpFunction = std::move(wakeUp);
    }
    if (isSomethingWaiting)
        WakeUp();
}

void RequestDelivery()
{
    if (!isSomethingWaiting.exchange(true))
        WakeUp();
}

void BeginDelivery()
{
    isSomethingWaiting = false;
}

bool IsDeliveryRequested()
{
    return isSomethingWaiting;
}

void DeliverQueuedMessages()
{
    for (size_t left = CountQueue(); left > 0; --left) {
        const std::optional<QueuedMessage> message = TakeFirst();
        if (!message)
            return;
        if (auto listener = messageListener) // a copy: the listener may replace itself
            listener(message->View());
    }
}

void DropMessages()
{
    while (TakeFirst()) { }
    BeginDelivery();
}

const VX3MessageServices* MessageServices()
{
    static constexpr VX3MessageServices services = { PostCore, ShowText, DocumentChanged };
    return &services;
}

} // namespace vx3::core

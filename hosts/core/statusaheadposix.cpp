#include "statusahead.h"

#include <csignal>
#include <functional>
#include <new>
#include <system_error>

#include "threadposix.h"

namespace vx3::core {

namespace {

const struct dirent64& EntryAt(const char* batch, size_t place)
{
    return *reinterpret_cast<const struct dirent64*>(batch + place);
}

// Signals are for the threads of the program.
class SignalsHeldBack
{
public:
    SignalsHeldBack()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
    }
    ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }

private:
    sigset_t before;
};

} // namespace

void StatusAhead::Start(int folder, const char* newBatch, size_t length, const WriteRights& rights)
{
    End();
    batch = newBatch;
    if (length < leastLength || std::thread::hardware_concurrency() < 2 || !FillSlots(length))
        return;
    SignalsHeldBack signals;
    try {
        thread = std::thread(&StatusAhead::Run, this, folder, std::cref(rights));
    } catch (const std::system_error&) {
        count = 0;
    }
}

void StatusAhead::End()
{
    ending.store(true, std::memory_order_relaxed);
    if (thread.joinable())
        thread.join();
    ending.store(false, std::memory_order_relaxed);
    count = next = 0;
}

bool StatusAhead::FillSlots(size_t length)
{
    constexpr size_t leastRecord = offsetof(struct dirent64, d_name) + 1;
    if (room < length / leastRecord) {
        room = 0;
        slots.reset(new (std::nothrow) Slot[length / leastRecord]);
        if (!slots)
            return false;
        room = length / leastRecord;
    }
    for (size_t place = 0; place < length; place += EntryAt(batch, place).d_reclen) {
        slots[count].state.store(Free, std::memory_order_relaxed);
        slots[count++].place = static_cast<uint32_t>(place);
    }
    return true;
}

bool StatusAhead::Take(size_t place, VX3FolderEntry& entry)
{
    while (next < count && slots[next].place < place)
        next++;
    if (next == count)
        return false;
    Slot& slot = slots[next];
    State state = Free;
    // Where the two meet, waiting for the other would take longer than to ask once more.
    if (slot.state.compare_exchange_strong(state, Claimed, std::memory_order_acq_rel) || state != Ready)
        return false;
    entry.flags = slot.flags;
    entry.size = slot.size;
    entry.created = slot.created;
    entry.modified = slot.modified;
    return true;
}

void StatusAhead::Run(int folder, const WriteRights& rights)
{
    NameThisThread("StatusAhead");
    for (size_t i = count; i-- > 0 && !ending.load(std::memory_order_relaxed);) {
        State state = Free;
        if (!slots[i].state.compare_exchange_strong(state, Claimed, std::memory_order_acq_rel))
            return; // the walk has come this far
        slots[i].state.store(Describe(folder, rights, slots[i]) ? Ready : LeftToCaller, std::memory_order_release);
    }
}

// Links and everything odd are left to the walk, and hidden entries, which it may pass over.
bool StatusAhead::Describe(int folder, const WriteRights& rights, Slot& slot)
{
    const struct dirent64& listed = EntryAt(batch, slot.place);
    struct statx status;
    if (listed.d_name[0] == '.' || listed.d_type == DT_LNK || listed.d_type == DT_UNKNOWN)
        return false;
    if (!ReadStatus(folder, listed.d_name, false, status, Freshness::Cached))
        return false;
    VX3FolderEntry entry = {};
    DescribeStatus(status, rights, dates, entry);
    slot.flags = entry.flags;
    slot.size = entry.size;
    slot.created = entry.created;
    slot.modified = entry.modified;
    return true;
}

} // namespace vx3::core

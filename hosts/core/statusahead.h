// Asks for the status of many entries on a second thread.
//
// A walk works through a batch of entries from its start; the second thread works from
// the end, and stops where it meets the walk. Each entry is asked for once, by whichever
// comes first, but for the one where they meet. Belongs to one walk.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <thread>

#include <dirent.h>

#include "filestatus.h"
#include "localdate.h"

namespace vx3::core {

class StatusAhead
{
public:
    // `batch` is what the system wrote of the open `folder`; it and `rights` must stay until
    // End. Does nothing for a batch that is not worth a thread, and without memory.
    void Start(int folder, const char* batch, size_t length, const WriteRights& rights);
    void End();
    ~StatusAhead() { End(); }

    // The entry that stands at `place` of the batch; true if it has been filled, but for
    // its name. Else the caller asks for it. The places of a batch are taken in order.
    bool Take(size_t place, VX3FolderEntry& entry);

private:
    enum State : uint8_t { Free, Claimed, Ready, LeftToCaller };

    struct Slot {
        std::atomic<State> state;
        uint32_t place; // in the batch
        uint32_t flags;
        int64_t size;
        VX3FileDate created;
        VX3FileDate modified;
    };

    bool FillSlots(size_t length);
    void Run(int folder, const WriteRights& rights);
    bool Describe(int folder, const WriteRights& rights, Slot& slot);

    static constexpr size_t leastLength = 128 * 1024; // some thousand entries
    const char* batch = nullptr;
    std::unique_ptr<Slot[]> slots;
    size_t room = 0;
    size_t count = 0;
    size_t next = 0; // the slot that Take looks at first
    LocalDates dates;
    std::atomic<bool> ending = false;
    std::thread thread;
};

} // namespace vx3::core

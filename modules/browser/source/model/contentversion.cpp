#include "model/contentversion.h"

#include <atomic>

namespace browser {

namespace {

std::atomic<uint64_t> version = 0;

} // namespace

uint64_t ContentVersion()
{
    return version.load(std::memory_order_acquire);
}

void NoteContentChange()
{
    version.fetch_add(1, std::memory_order_release);
}

} // namespace browser

#include "host/librarymount.h"

#include "model/contenttree.h"

namespace browser {

namespace {

VX3Semaphore* loadSemaphore = nullptr; // of the main thread; taken for the whole load
bool librariesLoaded = false;          // under the semaphore

} // namespace

bool CreateLoadSemaphore()
{
    if (!loadSemaphore)
        loadSemaphore = host->lock->createSemaphore(1);
    return loadSemaphore != nullptr;
}

void FreeLoadSemaphore()
{
    host->lock->freeSemaphore(loadSemaphore);
    loadSemaphore = nullptr;
}

// No library format is built into this module yet, so the load is over as it begins;
// from here on the host may be told of changes.
void LoadLibraries()
{
    if (loadSemaphore)
        host->lock->take(loadSemaphore);
    if (!librariesLoaded) {
        librariesLoaded = true;
        contentTree.ready = true;
    }
    if (loadSemaphore)
        host->lock->give(loadSemaphore);
}

void ForgetLibraries()
{
    librariesLoaded = false;
}

} // namespace browser

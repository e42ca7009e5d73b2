#include "host/moduleentry.h"

#include "host/startplugin.h"
#include "services/allocation.h"
#include "services/resources.h"
#include "vx3/entry.h"

namespace browser {

namespace {

constexpr uint32_t neededHostVersion = VX3_HOST_VERSION;

// How often the module was loaded and not yet ended; only the first load and the last
// end do work.
int32_t initCount = 0;

int32_t Load(const VX3Host* table, const VX3Path* path)
{
    if (++initCount != 1)
        return VX3_RESULT_OK;
    if (!table || table->version < neededHostVersion || !path)
        return VX3_RESULT_HOST_TOO_OLD;
    host = table;
    modulePath = Make<FilePath>()();
    if (modulePath)
        *modulePath = FilePath::Of(path);
    return VX3_RESULT_OK;
}

int32_t End()
{
    if (initCount == 0 || --initCount != 0 || !host)
        return VX3_RESULT_OK;
    PluginEnd();
    FreeResources();
    Destroy(modulePath);
    modulePath = nullptr;
    host = nullptr;
    return VX3_RESULT_OK;
}

} // namespace

} // namespace browser

int32_t vx3_main(int32_t action, void* arg1, void* arg2, void* arg3)
{
    using namespace browser;
    switch (action) {
    case VX3_ACTION_LOAD: return Load(static_cast<const VX3Host*>(arg1), static_cast<const VX3Path*>(arg3));
    case VX3_ACTION_START: return host && PluginStart();
    case VX3_ACTION_END: return End();
    case VX3_ACTION_VERSION: return VX3_ENTRY_VERSION;
    case VX3_ACTION_MESSAGE: return host && PluginMessage(reinterpret_cast<intptr_t>(arg1), arg2) ? VX3_RESULT_OK : VX3_RESULT_REFUSED;
    default: return VX3_RESULT_REFUSED; // VX3_ACTION_NONE among them
    }
}

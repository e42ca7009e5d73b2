// A module that keeps a block and never gives it back.
#include "vx3/entry.h"

static const VX3Host* host;

extern "C" __attribute__((visibility("default"))) int32_t vx3_main(int32_t action, void* arg1, void*, void*)
{
    constexpr size_t leakedSize = 48;
    constexpr int32_t leakedLine = 77;
    switch (action) {
    case VX3_ACTION_LOAD: host = static_cast<const VX3Host*>(arg1); return VX3_RESULT_OK;
    case VX3_ACTION_START: return host->memory->alloc(leakedSize, leakedLine, "leakingmodule.cpp", 0) ? VX3_RESULT_OK : 0;
    case VX3_ACTION_END: return VX3_RESULT_OK;
    default: return VX3_RESULT_REFUSED;
    }
}

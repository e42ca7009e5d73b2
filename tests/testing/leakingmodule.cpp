// A module that keeps a block and never gives it back.
#include "vx3/entry.h"

static const VX3Host* host;
static void* block;

// The message 424242 asks where the block is, so that the test can give it back in the end.
static int32_t TellBlock(intptr_t message, void* answer)
{
    constexpr intptr_t whereIsTheBlock = 424242;
    if (message != whereIsTheBlock)
        return VX3_RESULT_REFUSED;
    *static_cast<void**>(answer) = block;
    return VX3_RESULT_OK;
}

extern "C" __attribute__((visibility("default"))) int32_t vx3_main(int32_t action, void* arg1, void* arg2, void*)
{
    constexpr size_t leakedSize = 48;
    constexpr int32_t leakedLine = 77;
    switch (action) {
    case VX3_ACTION_LOAD: host = static_cast<const VX3Host*>(arg1); return VX3_RESULT_OK;
    case VX3_ACTION_START: block = host->memory->alloc(leakedSize, leakedLine, "leakingmodule.cpp", 0); return VX3_RESULT_OK;
    case VX3_ACTION_MESSAGE: return TellBlock(reinterpret_cast<intptr_t>(arg1), arg2);
    case VX3_ACTION_END: return VX3_RESULT_OK;
    default: return VX3_RESULT_REFUSED;
    }
}

// The entry of the module: the one symbol that it exports.
#pragma once

#include <cstdint>

#if defined(_WIN32)
#define VX3_EXPORT extern "C" __declspec(dllexport)
#else
#define VX3_EXPORT extern "C" __attribute__((visibility("default")))
#endif

VX3_EXPORT int32_t vx3_main(int32_t action, void* arg1, void* arg2, void* arg3);

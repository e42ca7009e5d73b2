/* Diagnostics. All calls return, whatever they report. */
#ifndef VX3_CONSOLE_H
#define VX3_CONSOLE_H

#include "types.h"

typedef struct VX3ConsoleServices {
    /* Writes one line. [any-thread] */
    void (*line)(const VX3String* text);
    /* Reports that the module has met a state that must not be; `file` is borrowed
     * until the call returns. The host tells the user and goes on. [any-thread] */
    void (*criticalStop)(const char* file, int32_t line);
    /* The same for debug builds. [any-thread] */
    void (*debugStop)(const char* file, int32_t line);
    /* Reports an error inside the module with a text of its own. [any-thread] */
    void (*internalError)(const VX3String* text);
} VX3ConsoleServices;

VX3_STATIC_ASSERT(sizeof(VX3ConsoleServices) == 4 * sizeof(void*), "laid out without gaps");

#endif

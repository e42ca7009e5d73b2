/* Resources of a module: texts by number in the user's language, dialog layouts, and
 * the host's lists of languages and keywords.
 *
 * A module keeps them in a folder `res` beside its binary: `strings/<code>.txt`,
 * `layouts/NUMBER.layout`, `descriptions/NAME.txt`, all in UTF-8.
 *
 * Texts stand one a line as `number = text`. The blanks round `=` may be left out and are no
 * part of the text; \n and \\ are escapes. A line that does not begin with a decimal number
 * and `=`, such as a comment with `#`, says nothing; of two lines of one number the later
 * holds. The number 0 is the name of the language itself, such as "English".
 */
#ifndef VX3_RESOURCE_H
#define VX3_RESOURCE_H

#include "types.h"

typedef struct VX3ResourceServices {
    /* Loads the resources beside a module's binary, or none. The caller must free
     * with `free`. [gui-thread] [may-block] */
    VX3Resources* (*load)(const VX3Path* module);
    void (*free)(VX3Resources* resources); /* None is allowed. [gui-thread] */
    /* Sets `text` to the text of a number: that of the user's language, else that of `us`,
     * else "#" and the number, such as "#10407", so that a missing text shows where it
     * belongs. The result is 0 for this mark; no resources give 0 and an empty text.
     * [any-thread] */
    VX3Bool (*text)(VX3Resources* resources, int32_t number, VX3String* text);
    /* The languages of the host, from index 0: name, code such as "us", and whether
     * it is the user's. 0 behind the last. The out arguments may be none. [any-thread] */
    VX3Bool (*language)(int32_t index, VX3String* name, VX3String* code, VX3Bool* isCurrent);
    /* The keywords that the host offers for content, from index 0; 0 behind the
     * last. [any-thread] */
    VX3Bool (*keyword)(int32_t index, VX3String* text);
} VX3ResourceServices;

VX3_STATIC_ASSERT(sizeof(VX3ResourceServices) == 5 * sizeof(void*), "laid out without gaps");

#endif

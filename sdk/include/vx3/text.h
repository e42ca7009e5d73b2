/* Text.
 *
 * A VX3String is a value of UTF-16 units, at most 2^30 of them. Copies are
 * independent of each other. One value is used by one thread at a time; different
 * values, also copies of one, may be used at once. A call that needs memory and gets
 * none answers 0 and leaves the old value. Positions and counts are in units; a
 * position outside the text is moved to its nearer end.
 *
 * Lower case is the simple case mapping of the Unicode Character Database, unit by
 * unit: it never changes the length, never looks at the locale, and is the same on
 * every system, because hashes of lower-case text are stored on disk. Units above
 * 0xFFFF in pairs of surrogates are left as they are.
 */
#ifndef VX3_TEXT_H
#define VX3_TEXT_H

#include "types.h"

enum {
    VX3_ENCODING_PLAIN = 0, /* literal text of source code: ASCII, other bytes as Latin-1 */
    VX3_ENCODING_UTF8 = 1   /* invalid bytes become U+FFFD */
};

typedef struct VX3TextServices {
    /* Frees what the value holds and leaves it empty. [any-thread] */
    void (*destruct)(VX3String* text);

    /* Makes `to` an independent copy of `from`. [any-thread] */
    VX3Bool (*copy)(VX3String* to, const VX3String* from);

    /* Sets the text from `length` bytes, or up to a terminating zero if `length` is
     * -1. The bytes are borrowed until the call returns. [any-thread] */
    VX3Bool (*set)(VX3String* text, const char* bytes, int32_t length, int32_t encoding);

    /* Sets the text from `count` units, borrowed until the call returns; they may
     * lie inside the old value. [any-thread] */
    VX3Bool (*setUnits)(VX3String* text, const VX3Unit* units, int32_t count);

    /* Writes the text as UTF-8 with a terminating zero into `bytes`, cut between two
     * characters if `capacity` is too small; a lone surrogate becomes U+FFFD.
     * Returns the bytes that the whole text needs, without the zero, and INT32_MAX for
     * more than that. `bytes` may be none if `capacity` is 0. [any-thread] */
    int32_t (*toUtf8)(const VX3String* text, char* bytes, int32_t capacity);

    /* The number of units. [any-thread] */
    int32_t (*length)(const VX3String* text);

    /* The units themselves and their number, borrowed until the value is changed or
     * destructed. Never none; not terminated. [any-thread] */
    const VX3Unit* (*view)(const VX3String* text, int32_t* length);

    /* Copies up to `count` units from position `from` into `units` and returns how
     * many there were. [any-thread] */
    int32_t (*read)(const VX3String* text, int32_t from, VX3Unit* units, int32_t count);

    /* Inserts `inserted` at a position; at the length it appends. `inserted` may be
     * the text itself. [any-thread] */
    VX3Bool (*insert)(VX3String* text, int32_t position, const VX3String* inserted);

    /* Takes `count` units out. [any-thread] */
    VX3Bool (*erase)(VX3String* text, int32_t position, int32_t count);

    /* Sets `part` to `count` units of `text` from `position`; a count of -1 means up
     * to the end. `part` may be `text`. [any-thread] */
    VX3Bool (*part)(const VX3String* text, int32_t position, int32_t count, VX3String* part);

    /* Exact comparison by unit: negative, 0 or positive. [any-thread] */
    int32_t (*compare)(const VX3String* a, const VX3String* b);

    /* The same on the lower-case forms. [any-thread] */
    int32_t (*compareFolding)(const VX3String* a, const VX3String* b);

    /* The order of names in lists: the lower-case forms unit by unit, and the exact
     * comparison for what is still equal. A total order, the same in every language;
     * digits count as characters. [any-thread] */
    int32_t (*order)(const VX3String* a, const VX3String* b);

    /* Writes a key of units into `units` and returns the units that the whole key
     * needs. Compared unit by unit, a shorter one first, keys stand in the order of
     * `order`; texts with equal keys still need `order`. The key of n units needs at
     * most 2n + 1. [any-thread] */
    int32_t (*orderKey)(const VX3String* text, VX3Unit* units, int32_t capacity);

    /* 1 if the units of `text` from `position` begin with all of `other`, compared
     * exactly, or in lower case if `fold` is set. [any-thread] */
    VX3Bool (*matchesAt)(const VX3String* text, int32_t position, const VX3String* other, VX3Bool fold);

    /* Sets `lower` to the lower-case form; it may be `text`. [any-thread] */
    VX3Bool (*toLower)(const VX3String* text, VX3String* lower);

    /* Writes the lower-case form of `count` units; `out` may be `in`. [any-thread] */
    void (*lowerUnits)(const VX3Unit* in, VX3Unit* out, int32_t count);

    /* The first position at or behind `from` where `what` stands, or -1. An empty
     * text is not found. [any-thread] */
    int32_t (*find)(const VX3String* text, const VX3String* what, int32_t from);

    /* The last position at or in front of `from` where `what` begins, or -1; `from`
     * -1 means the end. [any-thread] */
    int32_t (*findBackward)(const VX3String* text, const VX3String* what, int32_t from);

    /* Sets the text to a number in decimal digits, with zeros in front up to
     * `digits` digits. [any-thread] */
    VX3Bool (*setInteger)(VX3String* text, int64_t number, int32_t digits);

    /* Sets the text to a number with `decimals` places and a point, whatever the
     * locale; -1 gives the shortest form that reads back equal. [any-thread] */
    VX3Bool (*setFloat)(VX3String* text, double number, int32_t decimals);

    /* Reads the whole text as a whole number: an optional sign and digits. 0 if it
     * is something else or does not fit. [any-thread] */
    VX3Bool (*toInteger)(const VX3String* text, int64_t* number);

    /* Reads the whole text as a number with a point and perhaps an exponent; 0 if it is
     * something else or does not fit. [any-thread] */
    VX3Bool (*toFloat)(const VX3String* text, double* number);
} VX3TextServices;

VX3_STATIC_ASSERT(sizeof(VX3TextServices) == 24 * sizeof(void*), "laid out without gaps");

#endif
